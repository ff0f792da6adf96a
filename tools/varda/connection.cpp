// SPDX-License-Identifier: MIT
#include "connection.h"

#include "bluetooth.h"
#include "step.h"
#include "terminal.h"
#include "text.h"

#include <varda/bledevice.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qdeadlinetimer.h>
#include <QtCore/qscopeguard.h>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeout = 60s;
// The library gives up on an answer after 5 s, and bluetoothd takes 2 to 3 more to drop a link.
constexpr auto kQuiet = 10s;
constexpr auto kDropTime = 5s;
// Less than after what the library takes silence for a reason to drop the link.
constexpr auto kShortWait = 2s;
constexpr int kProgressMs = 100;
// The session takes an answer after a second of quiet. What comes just then counts as late: better
// an answer that is asked for once more than one that lacks a part.
constexpr auto kSessionQuiet = 990ms;
constexpr auto kSilence = 5s; // as the library's own
// bluetoothd sends the copies of a notification at once, one behind the other.
constexpr auto kMoment = 30ms;

constexpr auto kRefusedWrite = "BLE error: Service error: 2"_L1; // CharacteristicWriteError
// What the link says of a computer with the other kind of serial service.
constexpr auto kOtherKind = "Characteristics not found in service"_L1;

QString secondsText(std::chrono::seconds time)
{
    return u"%1 s"_s.arg(time.count());
}

/** The session's message without the kind of failure that the sentence around it tells. */
QString reasonIn(QString message)
{
    constexpr auto kPrefix = "BLE error: "_L1;
    if (message.startsWith(kPrefix))
        message.remove(0, kPrefix.size());
    return message;
}

QString refusalText(ExchangeError::ExchangeErrorIn error)
{
    switch (error) {
    case ExchangeError::BeginProgramError:
        return u"the computer refused it at the beginning"_s;
    case ExchangeError::ProgramError:
        return u"the computer refused a block of it"_s;
    case ExchangeError::EndProgramError:
        return u"the computer has all of it and refused it at the end"_s;
    default:
        return u"the computer refused"_s;
    }
}

} // namespace

Connection::Connection(const Options &options, Purpose purpose)
{
    watchSession();
    auto failed = qScopeGuard([this] { letGo(); });
    open(options, purpose);
    failed.dismiss();
}

Connection::~Connection()
{
    letGo();
    clearStatus();
}

/** Also after an interruption: who does not want to wait for the computer sends another one. */
void Connection::letGo()
{
    m_session.disconnect(this);
    m_session.controllerDisconnect();
    if (m_linkEnd.isDown())
        return;
    showStatus(u"Disconnecting"_s);
    m_linkEnd.wait(kDropTime);
}

void Connection::watchSession()
{
    connect(&m_session, &VardaSession::messageChanged, this, &Connection::onMessage);
    connect(&m_session, &VardaSession::createControllerStatus, this, &Connection::onCreateStatus);
    connect(&m_session, &VardaSession::connectControllerStatus, this, &Connection::onConnectStatus);
    connect(&m_session, &VardaSession::disconnectController, this, &Connection::onLinkDown);
    connect(&m_session, &VardaSession::endCommand, this, &Connection::onJobEnded);
    connect(&m_session, &VardaSession::exchangeError, this,
            [this](auto, ExchangeError::ExchangeErrorIn error) { onRefused(error); });

    for (QTimer *timer : {&m_quiet, &m_silence, &m_moment}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    m_quiet.setInterval(kSessionQuiet);
    m_silence.setInterval(kSilence);
    connect(&m_quiet, &QTimer::timeout, this, [this] {
        m_answer.onQuiet();
        judge();
    });
    connect(&m_silence, &QTimer::timeout, this, &Connection::onSilence);
    connect(&m_moment, &QTimer::timeout, this, &Connection::judge);
}

void Connection::open(const Options &options, Purpose purpose)
{
    const auto timeout = options.timeout.value_or(kTimeout);
    QDeadlineTimer deadline(timeout);
    const BleDeviceInfo computer = findComputer(options, purpose, deadline);

    Step step;
    m_step = &step;
    const auto over = qScopeGuard([this] { m_step = nullptr; });
    if (!options.mode)
        m_otherMode = BleMode::Sps;
    m_session.connectTo(computer, options.mode.value_or(BleMode::Gatt));
    if (!step.wait(std::chrono::milliseconds(deadline.remainingTime()))) {
        throw Failure{ExitCode::TimedOut,
                      u"%1 was found, but not connected within %2"_s.arg(computerName(),
                                                                         secondsText(timeout)),
                      u"Is it still on, and not connected to something else?"_s};
    }

    // The session tells nothing while an answer comes in; the link does.
    m_link = m_session.findChild<BleDevice *>(QString(), Qt::FindDirectChildrenOnly);
    connect(m_link, &BleDevice::notificationReceived, this, &Connection::onNotification);
}

void Connection::start(const Job &job, Step &step)
{
    blameJobBefore();
    if (m_linkFailure)
        throw Failure(*m_linkFailure);
    m_step = &step;
    m_job = &job;
    m_jobName = job.name;
    m_received = 0;
    m_answer = AnswerCheck(job.end, m_answer);
    m_over = false;
    m_sinceProgress.start();
    showStatus(job.verb + u' ' + job.name);
    job.start(m_session);
}

void Connection::stop()
{
    m_step = nullptr;
    m_job = nullptr;
    m_ending = Ending::EndCommand;
    for (QTimer *timer : {&m_quiet, &m_silence, &m_moment})
        timer->stop();
}

void Connection::run(const Job &job)
{
    runOnce(job);
    if (m_answer.finding() != AnswerCheck::Finding::Doubtful)
        return;
    const quint64 first = m_answer.digest();
    runOnce(job);
    if (m_answer.finding() == AnswerCheck::Finding::Doubtful && m_answer.digest() != first)
        throw comesMoreThanOnce();
}

void Connection::runOnce(const Job &job)
{
    Step step;
    const auto over = qScopeGuard([this] { stop(); });
    start(job, step);
    if (step.wait(kQuiet, job.limit))
        return;
    m_session.controllerDisconnect();
    throw Failure{ExitCode::TimedOut,
                  u"%1: the computer's answer has no end, the link was dropped"_s.arg(job.name),
                  u"Try again, nearer to the computer; --verbose shows what it sends."_s};
}

bool Connection::tell(const Job &job)
{
    Step step;
    const auto over = qScopeGuard([this] { stop(); });
    m_ending = Ending::AnyAnswer;
    start(job, step);
    return step.wait(kShortWait);
}

void Connection::runLast(const Job &job)
{
    Step step;
    const auto over = qScopeGuard([this] { stop(); });
    m_ending = Ending::LinkDown;
    start(job, step);
    if (!step.wait(kQuiet))
        throw noAnswer();
}

void Connection::read(TidemarCommand::TidemarCommandIn command, const QString &name)
{
    run({.name = name, .end = command, .start = [command](VardaSession &session) {
             session.startCommand(command);
         }});
}

bool Connection::readIfWhole(TidemarCommand::TidemarCommandIn command, const QString &name)
{
    try {
        read(command, name);
        return true;
    } catch (const Failure &failure) {
        if (m_answer.finding() != AnswerCheck::Finding::InPieces)
            throw;
        printError({failure.code, failure.what, u"It is left out."_s});
        return false;
    }
}

void Connection::onMessage()
{
    // Nor from a write that the system has refused, which ends the link as well.
    if (m_session.message().startsWith(kRefusedWrite))
        m_refusedWrite = true;
    // No signal tells a time-out from other reasons for a link to go down.
    if (m_session.message() == "Receive timeout"_L1)
        m_silent = true;
    showStatus(m_session.message());
}

void Connection::onCreateStatus(CreateControllerStatus::CreateControllerStatusIn status)
{
    if (status == CreateControllerStatus::NotCreated && !connectInOtherMode())
        fail(notConnected());
}

bool Connection::connectInOtherMode()
{
    if (!m_otherMode || reasonIn(m_session.message()) != kOtherKind)
        return false;
    m_session.connectTo(device(), *std::exchange(m_otherMode, std::nullopt));
    return true;
}

void Connection::onConnectStatus(ConnectControllerStatus::ConnectControllerStatusIn status)
{
    if (status != ConnectControllerStatus::Connected) {
        fail(notConnected());
    } else if (m_step && !m_job) {
        m_step->end();
    }
}

Failure Connection::notConnected() const
{
    const QString reason = reasonIn(m_session.message());
    QString advice = u"Is it still on and near?"_s;
    if (reason == kOtherKind)
        advice = u"Is it a computer? Then --mode, if it is given, is not its kind of link."_s;
    return {ExitCode::LinkFailed, u"could not connect to %1: %2"_s.arg(computerName(), reason),
            advice};
}

void Connection::onJobEnded(TidemarCommand::TidemarCommandIn command)
{
    if (!m_step || !m_job || m_ending != Ending::EndCommand || m_job->end != command)
        return;
    m_over = true;
    m_answer.onQuiet();
    // Where it is not collected, the last notification is still on its way to the check.
    m_moment.start(m_answer.hasEnd() ? kMoment : 0ms);
}

void Connection::onRefused(ExchangeError::ExchangeErrorIn error)
{
    if (!m_step || !m_job)
        return;
    if (error == ExchangeError::InvalidCrc) {
        m_answer.onQuiet();
        m_moment.start(kMoment);
        return;
    }
    m_step->fail({ExitCode::JobFailed, m_jobName + u": "_s + refusalText(error), {}});
}

Failure Connection::noAnswer() const
{
    return {ExitCode::TimedOut, u"%1: no answer from %2"_s.arg(m_jobName, computerName()),
            u"Is it still on and near? Its firmware may not know this request."_s};
}

void Connection::onLinkDown()
{
    if (m_silent) {
        fail(noAnswer());
    } else if (m_step && m_ending == Ending::LinkDown) {
        m_step->end();
    } else if (m_refusedWrite) {
        fail({ExitCode::JobFailed, u"%1: the system refused to send the request"_s.arg(m_jobName),
              u"It may be longer than the link allows: try with less."_s});
    } else {
        fail({ExitCode::LinkFailed, u"the link to %1 was lost"_s.arg(computerName()),
              u"Is it still on and near?"_s});
    }
}

void Connection::onNotification(const QByteArray &data)
{
    m_received += data.size();
    m_answer.add(data);
    if (!m_step)
        return;
    m_quiet.start();
    m_silence.start();
    m_step->goOn();
    if (m_ending == Ending::AnyAnswer)
        m_step->end();
    if (m_job && m_job->progress && m_sinceProgress.elapsed() >= kProgressMs) {
        m_sinceProgress.start();
        m_job->progress();
    }
}

/** Of an answer that is damaged the rest is waited for, or it would become the next job's. */
void Connection::judge()
{
    if (!m_step || !m_job || m_ending != Ending::EndCommand)
        return;
    if (!isAnswerUsable()) {
        if (m_over || m_answer.isOver())
            failJob();
    } else if (m_over) {
        m_step->end();
    }
}

void Connection::onSilence()
{
    if (m_step && m_job && !isAnswerUsable())
        failJob();
}

/** What has come since the job ended belongs to no other one. */
void Connection::blameJobBefore()
{
    QCoreApplication::processEvents();
    if (!m_over || isAnswerUsable())
        return;
    const Failure failure = answerFailure();
    m_over = false;
    throw Failure(failure);
}

int Connection::mtu() const
{
    return m_link ? m_link->mtu() : 0;
}

bool Connection::isAnswerUsable() const
{
    const auto finding = m_answer.finding();
    return finding == AnswerCheck::Finding::Sound || finding == AnswerCheck::Finding::Doubtful;
}

void Connection::failJob()
{
    m_over = false;
    if (m_answer.finding() == AnswerCheck::Finding::Repeated)
        fail(comesMoreThanOnce()); // as all else will
    else
        m_step->fail(answerFailure());
}

/**
 * bluetoothd tells all its clients of a notification as often as there are subscriptions, and a
 * program keeps its own as long as it lives, also when it has let go of the computer.
 */
Failure Connection::comesMoreThanOnce() const
{
    return {ExitCode::JobFailed, u"what %1 says comes more than once"_s.arg(computerName()),
            u"Another program here is connected to it, or was: close that first."_s};
}

Failure Connection::answerFailure() const
{
    using Finding = AnswerCheck::Finding;
    const auto because = [this](const QString &reason, const QString &advice) -> Failure {
        return {ExitCode::JobFailed, m_jobName + u": the computer's answer "_s + reason, advice};
    };
    const QString again = u"Try again, nearer to the computer."_s;
    switch (m_answer.finding()) {
    case Finding::BeginningLost:
        return because(u"is too long, its beginning is lost"_s,
                       u"No more than 4096 packets can be taken at once."_s);
    case Finding::Incomplete:
        return because(u"lacks a part, which came too late or not at all"_s, again);
    case Finding::InPieces:
        return because(u"came in pieces and could not be put together"_s,
                       u"The link's packets are too small for it."_s);
    case Finding::LeftOver:
        return because(u"was damaged on the way, some of it makes no sense"_s, again);
    case Finding::WrongChecksum:
        return because(u"was damaged on the way, its checksum is wrong"_s, again);
    case Finding::Sound:
    case Finding::Doubtful:
    case Finding::Repeated:
        break;
    }
    return comesMoreThanOnce();
}

void Connection::fail(const Failure &failure)
{
    // What comes after the first failure is only its consequence.
    if (!m_linkFailure)
        m_linkFailure = failure;
    if (m_step && m_over && isAnswerUsable())
        m_step->end(); // its job was done before
    else if (m_step)
        m_step->fail(*m_linkFailure);
}

QString Connection::heading() const
{
    return safeText(computerName()) + u":\n"_s;
}

QString Connection::computerName() const
{
    return nameOf(device());
}
