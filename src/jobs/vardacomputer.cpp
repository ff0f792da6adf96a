// SPDX-License-Identifier: MIT
#include <varda/vardacomputer.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qdebug.h>
#include <QtCore/qthread.h>

#include <tuple>
#include <utility>

#include <varda/vardadata.h>

#include "jobs/jobengine_p.h"
#include "jobs/searchjob_p.h"
#include "jobs/work/download_p.h"
#include "jobs/work/firmware_p.h"
#include "jobs/work/readings_p.h"
#include "session/computername_p.h"
#include "transport/deletelater_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** Parent of the jobs: goes when the computer and all of its jobs are gone. */
class JobHome final : public QObject
{
public:
    void leave()
    {
        m_left = true;
        // The event loop may have ended before the last job is deleted.
        if (auto *const application = QCoreApplication::instance();
            application && application->thread() == thread())
            setParent(application);
        goIfEmpty();
    }

protected:
    void childEvent(QChildEvent *event) override
    {
        if (event->removed())
            goIfEmpty();
    }

private:
    void goIfEmpty()
    {
        if (m_left && children().isEmpty())
            DeleteLater()(this);
    }

    bool m_left = false;
};

// ATT's header of 3 bytes, the frame's of 8 and the command's code.
constexpr int kAroundPayload = 12;

/** Whether a request of that payload surely does not fit in one write. */
bool isTooLong(qsizetype payload, const SessionDoor &door)
{
    return door.mtu() > 0 && payload + kAroundPayload > door.mtu();
}

Request writing(QString what, TidemarCommand::TidemarCommandIn end,
                std::function<void(VardaSession &)> start)
{
    return {.what = std::move(what),
            .end = end,
            .send =
                [start = std::move(start)](VardaSession &session, SessionDoor &) {
                    start(session);
                    return Reason::None;
                },
            .writes = true};
}

Request once(Request request)
{
    request.repeatable = false;
    return request;
}

/** @p empty forgets what an earlier reading has left. */
Request emptied(Request request, std::function<void(SessionDoor &)> empty)
{
    request.send = [send = std::move(request.send), empty = std::move(empty)](VardaSession &session,
                                                                              SessionDoor &door) {
        empty(door);
        return send(session, door);
    };
    return request;
}

QVariant nothing(VardaSession &, SessionDoor &, const Exchange &)
{
    return {};
}

VardaSensors sensorsOf(const VardaSession &session)
{
    return {session.psurf(), session.pamb(), session.dstop(), session.density()};
}

QList<Request> sensorRequests()
{
    return {Requests::command(u"surface pressure"_s, TidemarCommand::SimulParams),
            Requests::command(u"sensors"_s, TidemarCommand::Sensors)};
}

Request gasTable(std::uint8_t number)
{
    return {.what = u"gas table %1"_s.arg(number + 1),
            .end = TidemarCommand::GetGases,
            .send = [number](VardaSession &session, SessionDoor &door) {
                BleConfig &config = door.data().config;
                (number == 0 ? config.gasTable1 : config.gasTable2) = {};
                session.startGetGases(number);
                return Reason::None;
            }};
}

QStringList linesOf(const QString &log)
{
    QStringList lines = log.split(u'\n');
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace

class VardaComputerPrivate
{
public:
    explicit VardaComputerPrivate(VardaComputer *computer)
        : q(computer), engine(new JobEngine(computer))
    {
    }
    ~VardaComputerPrivate()
    {
        delete engine; // ends the jobs
        if (!home)
            return;
        const auto searches = home->findChildren<SearchJob *>(Qt::FindDirectChildrenOnly);
        for (SearchJob *search : searches)
            static_cast<SearchJobPrivate &>(VardaJobPrivate::of(*search))
                .finish({VardaJob::Cancelled, Reason::ComputerDeleted});
        home->leave();
    }
    Q_DISABLE_COPY_MOVE(VardaComputerPrivate)

    template <typename Job> Job *adopt(VardaJobPrivate *d)
    {
        if (!home) // not before: the computer may have been moved since it was made
            home = new JobHome;
        Job *const job = create<Job>(d);
        job->setParent(home);
        return job;
    }

    template <typename Job> Job *queue(QString name, std::unique_ptr<Work> work)
    {
        Job *const job = adopt<Job>(new VardaJobPrivate(engine, std::move(name), std::move(work)));
        engine->add(job);
        return job;
    }

    template <typename Job = VardaJob>
    Job *list(const QString &name, QList<Request> requests, ListWork::Take take,
              bool needsIdentity = false, bool isLong = false)
    {
        auto work = std::make_unique<ListWork>(std::move(requests), std::move(take));
        work->needsIdentity = needsIdentity;
        work->isLong = isLong;
        return queue<Job>(name, std::move(work));
    }

    template <typename Job = VardaJob>
    Job *list(const QString &name, const Request &request, ListWork::Take take,
              bool needsIdentity = false, bool isLong = false)
    {
        QList<Request> requests;
        requests.append(request);
        return list<Job>(name, std::move(requests), std::move(take), needsIdentity, isLong);
    }

    template <typename Job> static Job *create(VardaJobPrivate *d) { return new Job(d); }

    VardaComputer *q;
    JobEngine *engine;
    JobHome *home = nullptr;
};

template <> VardaJob *VardaComputerPrivate::create<VardaJob>(VardaJobPrivate *d);

namespace {

/** A job without a face of its own. */
class PlainJob final : public VardaJob
{
public:
    explicit PlainJob(VardaJobPrivate *job) : VardaJob(job) { }
};

} // namespace

template <> VardaJob *VardaComputerPrivate::create<VardaJob>(VardaJobPrivate *d)
{
    return new PlainJob(d);
}

VardaComputer::VardaComputer(QObject *parent)
    : QObject(parent), d(std::make_unique<VardaComputerPrivate>(this))
{
    qRegisterMetaType<BleDeviceInfo>("BleDeviceInfo");
    connect(d->engine, &JobEngine::stateChanged, this, &VardaComputer::stateChanged);
    connect(d->engine, &JobEngine::deviceChanged, this, &VardaComputer::deviceChanged);
    connect(d->engine, &JobEngine::currentJobChanged, this, &VardaComputer::currentJobChanged);
    connect(d->engine, &JobEngine::linkLost, this, &VardaComputer::linkLost);
}

VardaComputer::~VardaComputer()
{
    d->engine->disconnect(this);
}

VardaComputer::State VardaComputer::state() const
{
    return d->engine->state();
}

BleDeviceInfo VardaComputer::device() const
{
    return d->engine->device();
}

void VardaComputer::setDevice(const BleDeviceInfo &device)
{
    d->engine->setDevice(device);
}

void VardaComputer::setLinkMode(std::optional<BleMode> mode)
{
    d->engine->setMode(mode);
}

void VardaComputer::setLinger(std::chrono::milliseconds time)
{
    d->engine->setLinger(time);
}

int VardaComputer::mtu() const
{
    return qMax(0, d->engine->mtu());
}

VardaIdentity VardaComputer::identity() const
{
    return d->engine->identity();
}

bool VardaComputer::isComputerName(const QString &name)
{
    return ::isComputerName(name);
}

VardaJob *VardaComputer::currentJob() const
{
    return d->engine->currentJob();
}

QList<VardaJob *> VardaComputer::waitingJobs() const
{
    return d->engine->waitingJobs();
}

SearchJob *VardaComputer::search(std::chrono::seconds time, bool allDevices)
{
    return d->adopt<SearchJob>(new SearchJobPrivate(time, allDevices));
}

VardaJob *VardaComputer::connectToComputer()
{
    return d->list(u"connection"_s, QList<Request>(), nothing);
}

VardaJob *VardaComputer::connectToOnlyComputer()
{
    auto work = std::make_unique<ListWork>(QList<Request>(), nothing);
    work->writes = true;
    return d->queue<VardaJob>(u"connection"_s, std::move(work));
}

VardaJob *VardaComputer::disconnectFromComputer()
{
    auto *const job = d->adopt<VardaJob>(
        new VardaJobPrivate(d->engine, u"disconnection"_s, nullptr));
    d->engine->disconnectLink(job, Reason::ByDisconnect);
    return job;
}

// Jobs that read

VardaReply<VardaIdentity> *VardaComputer::readIdentity()
{
    return d->queue<VardaReply<VardaIdentity>>(u"identification"_s,
                                               std::make_unique<IdentityWork>());
}

VardaReply<VardaConfiguration> *VardaComputer::readConfiguration(bool basic)
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(VardaConfiguration{session.config(), session.computer()});
    };
    return d->list<VardaReply<VardaConfiguration>>(u"configuration"_s,
                                                   Requests::configuration(basic), take, true);
}

VardaReply<VardaGasTables> *VardaComputer::readGasTables()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(
            VardaGasTables{session.config().gasTable1, session.config().gasTable2});
    };
    return d->list<VardaReply<VardaGasTables>>(u"gas tables"_s, {gasTable(0), gasTable(1)}, take);
}

VardaReply<QString> *VardaComputer::readOwner()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant(session.owner());
    };
    return d->list<VardaReply<QString>>(u"owner"_s,
                                        Requests::command(u"owner"_s, TidemarCommand::Owner), take);
}

VardaReply<std::int64_t> *VardaComputer::readClock()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.computerTime());
    };
    return d->list<VardaReply<std::int64_t>>(
        u"clock"_s, Requests::command(u"clock"_s, TidemarCommand::Time), take);
}

VardaReply<VardaSensors> *VardaComputer::readSensors()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(sensorsOf(session));
    };
    return d->list<VardaReply<VardaSensors>>(u"sensors"_s, sensorRequests(), take);
}

VardaReply<VardaTissues> *VardaComputer::readTissues()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(
            VardaTissues{session.diverN2(), session.diverHe(), session.diverCns()});
    };
    return d->list<VardaReply<VardaTissues>>(
        u"tissues"_s, Requests::command(u"tissues"_s, TidemarCommand::Diver), take);
}

VardaReply<QStringList> *VardaComputer::readLog()
{
    const Request request = emptied(Requests::command(u"log"_s, TidemarCommand::Syslog),
                                    [](SessionDoor &door) { door.data().syslog.clear(); });
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant(linesOf(session.syslog()));
    };
    return d->list<VardaReply<QStringList>>(u"log"_s, request, take, false, true);
}

VardaReply<QList<SyslogBinRecord>> *VardaComputer::readBinaryLog()
{
    const Request request = emptied(Requests::command(u"log"_s, TidemarCommand::SyslogBin),
                                    [](SessionDoor &door) { door.data().syslogBin.clear(); });
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.syslogBin());
    };
    return d->list<VardaReply<QList<SyslogBinRecord>>>(u"log"_s, request, take, false, true);
}

VardaReply<QList<BatteryInfoRecord>> *VardaComputer::readBatteryHistory()
{
    Request request = Requests::command(u"battery history"_s, TidemarCommand::BatteryInformation);
    request.send = [](VardaSession &session, SessionDoor &) {
        session.startGetBatteryInformation();
        return Reason::None;
    };
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.batteryInfo());
    };
    return d->list<VardaReply<QList<BatteryInfoRecord>>>(u"battery history"_s, request, take);
}

VardaReply<QList<TidemarDiveHeader>> *VardaComputer::readLogbook(const QList<std::uint16_t> &known)
{
    return d->queue<VardaReply<QList<TidemarDiveHeader>>>(u"logbook"_s,
                                                          std::make_unique<LogbookWork>(known));
}

VardaReply<QList<DiveSample>> *VardaComputer::readSamples(std::uint16_t number)
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.diveSamples());
    };
    return d->list<VardaReply<QList<DiveSample>>>(u"dive %1"_s.arg(number),
                                                  Requests::samples(number), take, true);
}

DownloadJob *VardaComputer::downloadDives(const QList<std::uint16_t> &known)
{
    return d->queue<DownloadJob>(u"dives"_s, std::make_unique<DownloadWork>(known));
}

VardaReply<QList<LayoutEntry>> *VardaComputer::readLayouts()
{
    Request request = Requests::command(u"list of layouts"_s, TidemarCommand::LayoutList);
    request.send = [](VardaSession &session, SessionDoor &) {
        session.startLayoutList();
        return Reason::None;
    };
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.layouts());
    };
    return d->list<VardaReply<QList<LayoutEntry>>>(u"list of layouts"_s, request, take);
}

VardaReply<QByteArray> *VardaComputer::readLayout(std::uint8_t index)
{
    Request request = Requests::command(u"layout %1"_s.arg(index), TidemarCommand::LayoutGet);
    request.send = [index](VardaSession &session, SessionDoor &) {
        session.startLayoutGet(index);
        return Reason::None;
    };
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant(session.layoutBlob());
    };
    return d->list<VardaReply<QByteArray>>(request.what, request, take);
}

VardaReply<std::array<std::int8_t, 5>> *VardaComputer::readActiveLayouts()
{
    Request request = Requests::command(u"active layouts"_s, TidemarCommand::LayoutActiveGet);
    request.send = [](VardaSession &session, SessionDoor &door) {
        door.clearActiveLayouts();
        session.startLayoutActiveGet();
        return Reason::None;
    };
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.activeLayouts());
    };
    return d->list<VardaReply<std::array<std::int8_t, 5>>>(u"active layouts"_s, request, take);
}

// Jobs that write

VardaReply<QString> *VardaComputer::writeOwner(const QString &owner)
{
    const Request request{.what = u"owner"_s,
                          .end = TidemarCommand::Set_owner,
                          .send =
                              [owner](VardaSession &session, SessionDoor &door) {
                                  if (isTooLong(owner.toUtf8().size(), door))
                                      return Reason::TooLong;
                                  session.setOwner(owner);
                                  return Reason::None;
                              },
                          .writes = true};
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant(session.owner());
    };
    return d->list<VardaReply<QString>>(u"owner"_s, request, take);
}

VardaReply<std::int64_t> *VardaComputer::setClock()
{
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(session.computerTime());
    };
    return d->list<VardaReply<std::int64_t>>(
        u"clock"_s,
        writing(u"clock"_s, TidemarCommand::Set_time,
                [](VardaSession &session) { session.startSetTime(); }),
        take);
}

VardaReply<VardaSensors> *VardaComputer::writeSurfacePressure(std::uint32_t pressure)
{
    // One that was lost on the way must not keep the next from being sent.
    const Request request{.what = u"surface pressure"_s,
                          .end = TidemarCommand::Set_sensors,
                          .send =
                              [pressure](VardaSession &session, SessionDoor &door) {
                                  door.forgetPressure();
                                  session.startSetPressure(pressure);
                                  return Reason::None;
                              },
                          .writes = true};
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(sensorsOf(session));
    };
    return d->list<VardaReply<VardaSensors>>(u"surface pressure"_s,
                                             QList<Request>{request} + sensorRequests(), take);
}

VardaJob *VardaComputer::writeSettings(const MarloSettings &settings)
{
    return d->list(
        u"settings"_s,
        writing(u"settings"_s, TidemarCommand::MarloSet,
                [settings](VardaSession &session) { session.startMarloSettings(settings); }),
        nothing);
}

VardaReply<bool> *VardaComputer::setSuperUserMode(bool on)
{
    Request request = writing(u"super-user mode"_s, TidemarCommand::SuperUserMode,
                              [on](VardaSession &session) { session.startSuperUserMode(on); });
    request.ending = Request::Ending::AnyFrame;
    const auto take = [](VardaSession &, SessionDoor &, const Exchange &exchange) {
        return QVariant(exchange.acknowledged());
    };
    return d->list<VardaReply<bool>>(u"super-user mode"_s, request, take);
}

VardaJob *VardaComputer::addLayout(const QByteArray &layout)
{
    return d->list(
        u"layout"_s,
        once(writing(u"layout"_s, TidemarCommand::LayoutAdd,
                     [layout](VardaSession &session) { session.startLayoutAdd(layout); })),
        nothing);
}

VardaJob *VardaComputer::removeLayout(std::uint8_t index)
{
    const QString name = u"layout %1"_s.arg(index);
    return d->list(
        name,
        once(writing(name, TidemarCommand::LayoutRemove,
                     [index](VardaSession &session) { session.startLayoutRemove(index); })),
        nothing);
}

VardaJob *VardaComputer::removeAllLayouts()
{
    return d->list(u"layouts"_s,
                   once(writing(u"layouts"_s, TidemarCommand::LayoutRemoveAll,
                                [](VardaSession &session) { session.startLayoutRemoveAll(); })),
                   nothing);
}

VardaJob *VardaComputer::activateLayout(std::uint8_t diveMode, std::int8_t index)
{
    const QString name = u"layout %1"_s.arg(index);
    return d->list(name,
                   writing(name, TidemarCommand::LayoutActiveSet,
                           [diveMode, index](VardaSession &session) {
                               session.startLayoutActiveSet(diveMode, index);
                           }),
                   nothing);
}

namespace {

Request deletion(const QString &what, TidemarCommand::TidemarCommandIn command)
{
    // Either is reported as the end of this one.
    Request request = once(
        writing(what, TidemarCommand::DeleteLastDive,
                [command](VardaSession &session) { session.startCommand(command); }));
    request.answer = command;
    return request;
}

QVariant deleteResult(VardaSession &session, SessionDoor &, const Exchange &)
{
    return QVariant::fromValue(session.deleteResult());
}

} // namespace

VardaReply<DeleteDivesResult> *VardaComputer::deleteLastDive()
{
    return d->list<VardaReply<DeleteDivesResult>>(
        u"last dive"_s, {deletion(u"last dive"_s, TidemarCommand::DeleteLastDive)}, deleteResult);
}

VardaReply<DeleteDivesResult> *VardaComputer::eraseDives()
{
    return d->list<VardaReply<DeleteDivesResult>>(
        u"dives"_s, {deletion(u"dives"_s, TidemarCommand::EraseDives)}, deleteResult);
}

FirmwareJob *VardaComputer::uploadFirmware(const QByteArray &image, const QString &fileName,
                                           bool force)
{
    return d->queue<FirmwareJob>(u"firmware"_s,
                                 std::make_unique<FirmwareWork>(image, fileName, force));
}

VardaJob *VardaComputer::restart()
{
    Request request = once(writing(u"restart"_s, TidemarCommand::Reset, [](VardaSession &session) {
        session.startCommand(TidemarCommand::Reset);
    }));
    request.ending = Request::Ending::LinkDown;
    return d->list(u"restart"_s, request, nothing);
}
