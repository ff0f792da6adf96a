// SPDX-License-Identifier: MIT
#include "jobs/vardacomputer_p.h"
#include "jobs/work/firmware_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

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
    Request request = Requests::command(std::move(what), end);
    request.writes = true;
    request.send = [start = std::move(start)](VardaSession &session, SessionDoor &) {
        start(session);
        return Reason::None;
    };
    return request;
}

Request once(Request request)
{
    request.repeatable = false;
    return request;
}

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

VardaReply<QString> *VardaComputer::writeOwner(const QString &owner)
{
    Request request = Requests::command(u"owner"_s, TidemarCommand::Set_owner);
    request.writes = true;
    request.send = [owner](VardaSession &session, SessionDoor &door) {
        if (isTooLong(owner.toUtf8().size(), door))
            return Reason::TooLong;
        session.setOwner(owner);
        return Reason::None;
    };
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
    Request request = Requests::command(u"surface pressure"_s, TidemarCommand::Set_sensors);
    request.writes = true;
    request.send = [pressure](VardaSession &session, SessionDoor &door) {
        door.forgetPressure();
        session.startSetPressure(pressure);
        return Reason::None;
    };
    const auto take = [](VardaSession &session, SessionDoor &, const Exchange &) {
        return QVariant::fromValue(sensorsOf(session));
    };
    QList<Request> requests = Requests::sensors();
    requests.prepend(request);
    return d->list<VardaReply<VardaSensors>>(u"surface pressure"_s, requests, take);
}

VardaJob *VardaComputer::writeSettings(const MarloSettings &settings)
{
    return d->list(
        u"settings"_s,
        writing(u"settings"_s, TidemarCommand::MarloSet,
                [settings](VardaSession &session) { session.startMarloSettings(settings); }),
        ListWork::nothing);
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
        ListWork::nothing);
}

VardaJob *VardaComputer::removeLayout(std::uint8_t index)
{
    const QString name = u"layout %1"_s.arg(index);
    return d->list(
        name,
        once(writing(name, TidemarCommand::LayoutRemove,
                     [index](VardaSession &session) { session.startLayoutRemove(index); })),
        ListWork::nothing);
}

VardaJob *VardaComputer::removeAllLayouts()
{
    return d->list(u"layouts"_s,
                   once(writing(u"layouts"_s, TidemarCommand::LayoutRemoveAll,
                                [](VardaSession &session) { session.startLayoutRemoveAll(); })),
                   ListWork::nothing);
}

VardaJob *VardaComputer::activateLayout(std::uint8_t diveMode, std::int8_t index)
{
    const QString name = u"layout %1"_s.arg(index);
    return d->list(name,
                   writing(name, TidemarCommand::LayoutActiveSet,
                           [diveMode, index](VardaSession &session) {
                               session.startLayoutActiveSet(diveMode, index);
                           }),
                   ListWork::nothing);
}

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
    return d->list(u"restart"_s, request, ListWork::nothing);
}
