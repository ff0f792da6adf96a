// SPDX-License-Identifier: MIT
#include "jobcase.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qjsondocument.h>

#include <algorithm>

#include "matrix.h"

using namespace Qt::StringLiterals;

namespace {

// More than all limits of a job together.
constexpr int kLong = 420'000;

} // namespace

/** Follows one job to its end, and whatever it does behind that. */
class JobRunner::Watch : public QObject
{
public:
    Watch(VardaJob *watched, std::shared_ptr<Report> shared)
        : job(watched), m_report(std::move(shared))
    {
        connect(watched, &VardaJob::finished, this, [this](VardaJob *finished) {
            ++ends;
            outcome = {finished->error(), finished->reason(), finished->outcomeUnknown(),
                       *m_report};
            if (finished->state() != VardaJob::Finished)
                wrong += u"finished in another state"_s;
            if (finished->errorText().isEmpty() != (finished->error() == VardaJob::NoError))
                wrong += u"its text does not fit its error"_s;
        });
        connect(watched, &VardaJob::progressed, this, [this](qint64 done, qint64 total) {
            if (ends > 0 || done < m_done || (total >= 0 && done > total))
                wrong += u"its progress is %1 of %2 after %3"_s.arg(done).arg(total).arg(m_done);
            m_done = done;
        });
    }

    [[nodiscard]] bool wait()
    {
        return World::wait([this] { return ends > 0 || !job; }, kLong);
    }

    QPointer<VardaJob> job;
    int ends = 0;
    JobOutcome outcome;
    QStringList wrong;

private:
    std::shared_ptr<Report> m_report;
    qint64 m_done = 0;
};

JobRunner::JobRunner(World &world, const Setting &setting) : m_world(world), m_setting(setting) { }

JobRunner::~JobRunner() = default;

void JobRunner::load(const QByteArray &keys, const QByteArray &faults)
{
    m_world.load(m_setting.scenario(keys, faults));
}

std::unique_ptr<JobRunner::Watch> JobRunner::ask()
{
    auto report = std::make_shared<Report>();
    VardaJob *const job = m_setting.job->computer.ask(*m_computer, report);
    m_job = job;
    return std::make_unique<Watch>(job, report);
}

void JobRunner::renewComputer()
{
    m_computer = std::make_unique<VardaComputer>();
    m_computer->setDevice(m_setting.device());
}

bool JobRunner::connectComputer()
{
    Watch connection(m_computer->connectToComputer(), std::make_shared<Report>());
    return connection.wait() && connection.outcome.error == VardaJob::NoError;
}

/** What a job that writes has left; the clock goes on by itself. */
QByteArray JobRunner::writtenState()
{
    QJsonObject state = m_world.state();
    for (const auto *key : {"clock", "connected", "subscribed", "resets"})
        state.remove(QLatin1String(key));
    return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

std::optional<Healthy> JobRunner::healthy(QString *error)
{
    m_world.heal();
    load();
    renewComputer();
    if (!connectComputer()) {
        *error = u"no connection"_s;
        return std::nullopt;
    }
    const auto owner = std::make_shared<QString>();
    auto *const reading = m_computer->readOwner();
    Watch first(reading, std::make_shared<Report>());
    QObject::connect(reading, &VardaJob::finished, reading, [=] { *owner = reading->result(); });
    if (!first.wait() || owner->isEmpty()) {
        *error = u"the owner cannot be read"_s;
        return std::nullopt;
    }
    const qsizetype before = m_world.exchanges().size();
    const auto watch = ask();
    if (!watch->wait() || watch->outcome.error != VardaJob::NoError || !watch->wrong.isEmpty()) {
        *error = u"the job fails: %1 %2"_s.arg(nameOf(watch->outcome.error, watch->outcome.reason),
                                               watch->wrong.join(u"; "_s));
        return std::nullopt;
    }
    m_world.settle();
    Healthy healthy{m_world.exchanges().mid(before), {}, watch->outcome.report, *owner};
    if (m_setting.job->computer.writes)
        healthy.report.data += writtenState();
    m_computer.reset();
    return healthy;
}

QStringList JobRunner::run(const Case &each, const Healthy &healthy, bool /*watched*/)
{
    m_computer = std::make_unique<VardaComputer>();
    QStringList wrong = runFaulty(each, healthy);
    wrong += recover(each, healthy);
    m_computer.reset();
    return wrong;
}

QStringList JobRunner::runFaulty(const Case &each, const Healthy &healthy)
{
    load(each.device, each.faults);
    if (!each.scan)
        m_computer->setDevice(m_setting.device());
    switch (each.stage) {
    case Case::BeforeConnection:
        m_world.perform(each.deeds);
        break;
    case Case::Connection:
        if (!each.event.isEmpty())
            m_world.at(each.event, each.command, each.nth, each.deeds);
        break;
    case Case::BetweenJobs:
        if (!connectComputer())
            return {u"no connection"_s};
        m_world.perform(each.deeds);
        World::wait([&] { return m_world.isDone(); }, each.patience);
        World::wait([] { return false; }, 200);
        break;
    case Case::DuringJob:
        if (!connectComputer())
            return {u"no connection"_s};
        m_world.at(each.event, each.command, each.nth, each.deeds);
        break;
    }
    if (each.then)
        m_world.then(*each.then);

    const auto watch = ask();
    if (!each.retries && watch->job)
        watch->job->setRetries(0);
    if (!watch->wait())
        return {u"does not end"_s};
    QStringList wrong;
    const bool deleted = each.kind == "delete"_L1 && m_world.isDone();
    if (each.isOwnDeed)
        m_world.forget();
    if (watch->ends == 0 && deleted)
        return readOwner(healthy);
    if (m_setting.job->computer.writes && watch->outcome.error == VardaJob::NoError)
        watch->outcome.report.data += writtenState();
    if (const QString complaint = judge(each, m_setting, healthy, watch->outcome);
        !complaint.isEmpty())
        wrong += complaint;
    // What nobody waits for any more must not end it again.
    World::wait([] { return false; }, 100);
    if (watch->ends != 1)
        wrong += u"ended %1 times"_s.arg(watch->ends);
    if (each.isOwnDeed)
        wrong += readOwner(healthy);
    return wrong + watch->wrong;
}

QStringList JobRunner::readOwner(const Healthy &healthy)
{
    if (!m_computer)
        renewComputer();
    auto *const reading = m_computer->readOwner();
    QString owner;
    QObject::connect(reading, &VardaJob::finished, reading,
                     [&, reading] { owner = reading->result(); });
    Watch watch(reading, std::make_shared<Report>());
    if (!watch.wait())
        return {u"the next job does not end"_s};
    if (watch.outcome.error != VardaJob::NoError)
        return {u"the next job ends with "_s + nameOf(watch.outcome.error, watch.outcome.reason)};
    if (owner != healthy.owner)
        return {u"the next job has another result: "_s + owner};
    return {};
}

/** Through the same object, as an application goes on. */
QStringList JobRunner::recover(const Case &each, const Healthy &healthy)
{
    if (m_world.heal() || each.newWorld || m_setting.job->consumes) {
        load();
        // The link went with the old world.
        World::wait(
            [&] { return !m_computer || m_computer->state() == VardaComputer::Unconnected; }, 1000);
    }
    // What a computer said of itself is believed until the link goes.
    if (!m_computer || isOtherAnswer(each, healthy))
        renewComputer();
    const auto watch = ask();
    if (!watch->wait())
        return {u"does not end afterwards"_s};
    if (m_setting.job->computer.writes && watch->outcome.error == VardaJob::NoError)
        watch->outcome.report.data += writtenState();
    if (watch->outcome.error != VardaJob::NoError)
        return {u"ends afterwards with "_s + nameOf(watch->outcome.error, watch->outcome.reason)};
    const QString differs = difference(watch->outcome.report, healthy.report, true);
    if (!differs.isEmpty() && !m_setting.job->computer.mayBeSilent)
        return {u"has another result afterwards: "_s + differs};
    return watch->wrong;
}

QList<Case> JobRunner::cases(const Healthy &healthy)
{
    QList<Case> cases;
    const QList<Case> matrix = allCases(m_setting, healthy);
    for (Case each : matrix) {
        // A service that comes back knows the computer again.
        for (qsizetype i = 0; i < each.deeds.size(); ++i) {
            if (each.deeds[i].kind == Deed::Restart)
                each.deeds.insert(++i, {Deed::Load, m_setting.scenario({}, {})});
        }
        cases += each;
        each.retries = false;
        each.name.prepend(u"once/"_s);
        cases += each;
    }
    addSecondFaults(healthy, cases);
    addDeeds(healthy, cases);
    return cases;
}

/** A second fault while the first is being recovered from. */
void JobRunner::addSecondFaults(const Healthy &healthy, QList<Case> &cases) const
{
    if (!QStringList{u"Owner"_s, u"Dives"_s, u"Firmware"_s}.contains(m_setting.job->name))
        return;
    const auto fault = [](const char *step, const char *kind, int nth) {
        return QByteArray(R"({"step":")") + step + R"(","kind":")" + kind + R"(","nth":)"
               + QByteArray::number(nth) + '}';
    };
    for (int i = 0; i < int(healthy.exchanges.size()); ++i) {
        // Frames are counted from the connection on, whatever they ask for.
        const auto first = [&](const char *one, const char *second) {
            Case each;
            each.name = u"%1:%2/%3/then/%4"_s.arg(i)
                            .arg(healthy.exchanges[i].command)
                            .arg(QLatin1String(one), QLatin1String(second));
            each.kind = QString::fromLatin1(second).section(u'/', -1);
            each.request = i;
            each.isSecond = true;
            if (qstrcmp(one, "drop") == 0) {
                each.faults = fault("answer", "silent", i + 1);
                each.event = u"frame"_s;
                each.nth = i + 1;
                each.deeds = {{Deed::Drop}};
            } else {
                each.faults = fault("answer", one, i + 1);
            }
            return each;
        };
        const auto add = [&](const char *one, const char *step, const char *kind, int nth) {
            Case each = first(one,
                              qPrintable(u"%1/%2"_s.arg(QLatin1String(step), QLatin1String(kind))));
            each.faults += ',' + fault(step, kind, nth);
            cases += each;
        };
        for (const auto *one : {"drop", "wrongCrc"}) {
            for (const auto *kind : {"silent", "wrongCrc", "drop", "truncate", "garbage"})
                add(one, "answer", kind, i + 2);
        }
        for (const auto *kind : {"refuse", "drop"})
            add("drop", "connect", kind, 2);
        for (const auto *kind : {"empty", "drop"})
            add("drop", "discover", kind, 2);
        for (const auto *kind : {"refuse", "silent", "drop"})
            add("drop", "subscribe", kind, 2);

        const QList<std::pair<const char *, QList<Deed>>> deeds{
            {"drop", {{Deed::Drop}}},
            {"adapterOff", {{Deed::AdapterOff}}},
            {"adapterRemoved", {{Deed::RemoveAdapter}}},
            {"deviceRemoved", {{Deed::RemoveDevice}}},
            {"daemonGone", {{Deed::Kill}}},
            {"daemonRestarted", {{Deed::Restart}, {Deed::Load, m_setting.scenario({}, {})}}},
            {"frozenShortly", {{Deed::Freeze, {}, 1000}}},
        };
        for (const auto &[kind, what] : deeds) {
            for (const auto *event : {"Connect", "cccd", "frame"}) {
                Case each = first("drop", qPrintable(u"at%1/%2"_s.arg(QLatin1String(event),
                                                                      QLatin1String(kind))));
                each.then = Moment{QString::fromLatin1(event), -1, 1, what};
                cases += each;
            }
        }
    }
}

/** What the application does at every request, every notification, and on the way to the link. */
void JobRunner::addDeeds(const Healthy &healthy, QList<Case> &cases)
{
    static const QStringList kJobs{u"Identification"_s, u"Owner"_s,   u"Dives"_s,     u"Firmware"_s,
                                   u"LayoutAdd"_s,      u"Sensors"_s, u"SuperUser"_s, u"Reset"_s};
    if (!kJobs.contains(m_setting.job->name))
        return;
    const std::pair<const char *, std::function<void()>> deeds[] = {
        {"cancel",
         [this] {
             if (m_job)
                 m_job->cancel();
         }},
        {"abort",
         [this] {
             if (m_job)
                 m_job->abort();
         }},
        {"delete", [this] { delete m_job; }},
        {"deleteComputer", [this] { m_computer.reset(); }},
    };
    const auto add = [&](Case::Stage stage, const char *event, int nth) {
        for (const auto &[kind, call] : deeds) {
            Case each;
            each.name = u"at%1%2/%3"_s.arg(QLatin1String(event)).arg(nth).arg(QLatin1String(kind));
            each.kind = QLatin1String(kind);
            each.stage = stage;
            each.event = QLatin1String(event);
            each.nth = nth;
            each.deeds = {{Deed::Call, {}, 0, call}};
            each.isOwnDeed = true;
            cases += each;
        }
    };
    for (const auto *event : {"StartDiscovery", "Connect", "connected", "StartNotify", "cccd"})
        add(Case::Connection, event, 1);
    int notifications = 0;
    for (int i = 0; i < int(healthy.exchanges.size()); ++i) {
        add(Case::DuringJob, "frame", i + 1);
        for (qsizetype k = 0; k < healthy.exchanges[i].notifications.size(); ++k)
            add(Case::DuringJob, "notification", ++notifications);
    }
}
