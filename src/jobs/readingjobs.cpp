// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include "jobs/vardacomputer_p.h"
#include "jobs/work/download_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

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
    lines.removeLast(); // behind the end of the last line there is nothing
    return lines;
}

} // namespace

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
    QList<Request> requests;
    requests.append(gasTable(0));
    requests.append(gasTable(1));
    return d->list<VardaReply<VardaGasTables>>(u"gas tables"_s, requests, take);
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
    return d->list<VardaReply<VardaSensors>>(u"sensors"_s, Requests::sensors(), take);
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
