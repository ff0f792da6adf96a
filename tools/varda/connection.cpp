// SPDX-License-Identifier: MIT
#include "connection.h"

#include "bluetooth.h"
#include "step.h"
#include "terminal.h"

#include <varda/bledevice.h>

#include <QtBluetooth/qbluetoothaddress.h>
#include <QtCore/qscopeguard.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeout = 60s;
constexpr auto kScanTime = 30s; // as the library's own
// The library gives up on an answer after 5 s, and bluetoothd takes 2 to 3 more to drop a link.
constexpr auto kQuiet = 10s;
constexpr auto kDropTime = 5s;
// Less than after what the library takes silence for a reason to drop the link.
constexpr auto kShortWait = 2s;
constexpr int kProgressMs = 100;

QString secondsText(std::chrono::seconds time)
{
    return u"%1 s"_s.arg(time.count());
}

/** The session's message without the kind of failure that the sentence around it tells. */
QString reasonIn(QString message)
{
    for (const auto prefix : {"BLE error: "_L1, "Scan error: "_L1}) {
        if (message.startsWith(prefix))
            message.remove(0, prefix.size());
    }
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

/** The command that a notification answers, below 0 where that is not to be seen. */
int commandOf(const QByteArray &notification)
{
    constexpr qsizetype kCommandAt = 8;
    return notification.size() > kCommandAt ? quint8(notification.at(kCommandAt)) : -1;
}

Failure notFound(const QString &who, std::chrono::seconds searched)
{
    return {
        ExitCode::NotFound, u"%1 found within %2"_s.arg(who, secondsText(searched)),
        u"Is it switched on, in its Bluetooth mode and near? \"varda scan --all\" lists what is "
        "in reach."_s};
}

} // namespace

Connection::Connection(const Options &options) : m_mode(options.mode)
{
    watchSession();
    open(options);
}

Connection::~Connection()
{
    letGo();
    m_session.disconnect(this);
    clearStatus();
}

/**
 * bluetoothd takes its time to drop a link, and a command that is started before it has done so
 * would connect to the link that is about to go.
 */
void Connection::letGo()
{
    if (!m_link || !m_session.isConnected())
        return;
    try {
        Step step;
        connect(&m_session, &VardaSession::disconnectController, &step, &Step::end);
        showStatus(u"Disconnecting"_s);
        m_link->disconnect();
        std::ignore = step.wait(kDropTime);
    } catch (const Failure &) {
        // Interrupted: then bluetoothd sees to it when this process is gone.
        return;
    }
}

void Connection::watchSession()
{
    connect(&m_session, &VardaSession::messageChanged, this, &Connection::onMessage);
    connect(&m_session, &VardaSession::createControllerStatus, this, &Connection::onSearchEnded);
    connect(&m_session, &VardaSession::connectControllerStatus, this, &Connection::onConnectStatus);
    connect(&m_session, &VardaSession::disconnectController, this, &Connection::onLinkDown);
    connect(&m_session, &VardaSession::endCommand, this, &Connection::onJobEnded);
    connect(&m_session, &VardaSession::exchangeError, this,
            [this](auto, ExchangeError::ExchangeErrorIn error) { onRefused(error); });
}

void Connection::open(const Options &options)
{
    const auto timeout = options.timeout.value_or(kTimeout);
    const QDeadlineTimer deadline(timeout);
    BleDeviceInfo wanted;
    if (!options.device.isEmpty())
        wanted = findAddress(options, deadline);
    m_found = wanted.isValid();

    Step step;
    m_step = &step;
    const auto over = qScopeGuard([this] { m_step = nullptr; });
    if (m_found)
        m_session.connectTo(wanted, options.mode);
    else
        m_session.autoConnect(options.mode);
    if (!step.wait(std::chrono::milliseconds(deadline.remainingTime()))) {
        if (!m_found)
            throw notFound(u"no computer"_s, timeout);
        throw Failure{ExitCode::TimedOut,
                      u"%1 was found, but not connected within %2"_s.arg(computerName(),
                                                                         secondsText(timeout)),
                      u"Is it still on, and not connected to something else?"_s};
    }

    // The session tells nothing while an answer comes in; the link does.
    m_link = m_session.findChild<BleDevice *>(QString(), Qt::FindDirectChildrenOnly);
    connect(m_link, &BleDevice::notificationReceived, this, &Connection::onNotification);
}

BleDeviceInfo Connection::findAddress(const Options &options, const QDeadlineTimer &deadline)
{
    showStatus(u"Looking for %1"_s.arg(options.device));
    const auto left = std::chrono::milliseconds(deadline.remainingTime());
    const auto searched = std::min(std::chrono::ceil<std::chrono::seconds>(left), kScanTime);
    const BleDeviceInfo found = scanFor(searched, [&options](const BleDeviceInfo &device) {
        return device.address().compare(options.device, Qt::CaseInsensitive) == 0;
    });
    if (!found.isValid())
        throw notFound(options.device + u" was not"_s, searched);
    return found;
}

void Connection::start(const Job &job, Step &step)
{
    if (m_linkFailure)
        throw Failure(*m_linkFailure);
    m_step = &step;
    m_job = &job;
    m_jobName = job.name;
    m_received = 0;
    if (commandOf(m_latest) == job.end)
        m_latest.clear(); // it may well say the same again
    m_before = m_latest;
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
}

void Connection::run(const Job &job)
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

void Connection::onMessage()
{
    // No signal tells a time-out from other reasons for a link to go down.
    if (m_session.message() == "Receive timeout"_L1)
        m_silent = true;
    showStatus(m_session.message());
}

void Connection::onSearchEnded(CreateControllerStatus::CreateControllerStatusIn status)
{
    switch (status) {
    case CreateControllerStatus::Created:
        m_found = true;
        break;
    case CreateControllerStatus::NotFound:
        fail(notFound(u"no computer"_s, kScanTime));
        break;
    case CreateControllerStatus::Error:
        fail(scanFailure(reasonIn(m_session.message())));
        break;
    case CreateControllerStatus::NotCreated:
        fail(notConnected());
        break;
    }
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
    const bool otherService = reason == "Characteristics not found in service"_L1;
    const auto otherMode = m_mode == BleMode::Gatt ? "sps"_L1 : "gatt"_L1;
    return {ExitCode::LinkFailed, u"could not connect to %1: %2"_s.arg(computerName(), reason),
            otherService ? u"Does it want --mode %1?"_s.arg(otherMode)
                         : u"Is it still on and near?"_s};
}

void Connection::onJobEnded(TidemarCommand::TidemarCommandIn command)
{
    if (!m_step || !m_job || m_ending != Ending::EndCommand || m_job->end != command)
        return;
    m_over = true;
    m_step->end();
}

void Connection::onRefused(ExchangeError::ExchangeErrorIn error)
{
    if (!m_step || !m_job)
        return;
    if (error == ExchangeError::InvalidCrc) {
        m_step->fail({ExitCode::JobFailed,
                      u"%1: the computer's answer was damaged on the way"_s.arg(m_jobName),
                      u"Try again, nearer to the computer."_s});
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
    } else {
        fail({ExitCode::LinkFailed, u"the link to %1 was lost"_s.arg(computerName()),
              u"Is it still on and near?"_s});
    }
}

void Connection::onNotification(const QByteArray &data)
{
    m_received += data.size();
    checkTold(data);
    m_latest = data;
    if (!m_step)
        return;
    m_step->goOn();
    if (m_ending == Ending::AnyAnswer)
        m_step->end();
    if (m_job && m_job->progress && m_sinceProgress.elapsed() >= kProgressMs) {
        m_sinceProgress.start();
        m_job->progress();
    }
}

/**
 * bluetoothd tells all its clients of a notification as often as there are subscriptions, and a
 * program keeps its own as long as it lives, also when it has let go of the computer.
 */
void Connection::checkTold(const QByteArray &notification)
{
    if (notification != (m_over ? m_latest : m_before))
        return;
    fail({ExitCode::JobFailed, u"what %1 says comes more than once"_s.arg(computerName()),
          u"Another program here is connected to it, or was: close that first."_s});
}

void Connection::fail(const Failure &failure)
{
    // What comes after the first failure is only its consequence.
    if (!m_linkFailure)
        m_linkFailure = failure;
    if (m_step)
        m_step->fail(*m_linkFailure);
}

QString Connection::computerName() const
{
    return u"%1 (%2)"_s.arg(device().name(), device().address());
}
