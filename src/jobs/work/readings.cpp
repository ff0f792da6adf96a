// SPDX-License-Identifier: MIT
#include "jobs/work/readings_p.h"

#include <algorithm>
#include <set>

#include <varda/tidemardiveheader.h>
#include <varda/vardadata.h>

#include "jobs/exchange_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

// ATT's header of 3 bytes, the frame's of 8 and the command's code; two bytes a number.
constexpr int kBeforeNumbers = 12;
constexpr int kUsualMtu = 131;
constexpr int kSmallestMtu = 23;
constexpr int kLargestMtu = 515; // no write is longer than 512 bytes, whatever the link's MTU

} // namespace

const Request *ListWork::next()
{
    return m_at < m_requests.size() ? &m_requests.at(m_at) : nullptr;
}

void ListWork::done(VardaSession &session, Exchange &exchange)
{
    ++m_at;
    if (m_at < m_requests.size())
        return;
    SessionDoor door(session);
    m_result = m_take(session, door, exchange);
}

IdentityWork::IdentityWork()
{
    enter(Stage::Identification);
}

void IdentityWork::enter(Stage stage)
{
    m_stage = stage;
    switch (stage) {
    case Stage::Identification:
        m_request = Requests::identification();
        break;
    case Stage::SerialNumber:
        m_request = Requests::serialNumber();
        break;
    case Stage::Bootloader:
        m_request = Requests::bootloaderVersion();
        m_request.optional = true;
        break;
    case Stage::Complete:
        break;
    }
}

const Request *IdentityWork::next()
{
    return &m_request;
}

void IdentityWork::done(VardaSession &session, Exchange & /*exchange*/)
{
    m_identity = identityOf(session);
    if (m_stage == Stage::Identification)
        enter(Stage::SerialNumber);
    else if (m_stage == Stage::SerialNumber && m_identity.bootloaderVersion == 0)
        enter(Stage::Bootloader);
    else // some models report it with their identification
        enter(Stage::Complete);
}

bool IdentityWork::failed(const JobEnd & /*end*/)
{
    if (m_stage == Stage::Identification)
        return false;
    const bool askForBootloader = m_stage == Stage::SerialNumber
                                  && m_identity.bootloaderVersion == 0;
    enter(askForBootloader ? Stage::Bootloader : Stage::Complete);
    return true;
}

LogbookWork::LogbookWork(const QList<std::uint16_t> &known)
    : m_known(known), m_request(Requests::logbook(m_known))
{
    needsIdentity = true;
    isLong = true;
}

void LogbookWork::done(VardaSession &session, Exchange & /*exchange*/)
{
    m_complete = true;
    m_headers = oldestFirst(session.diveHeaders());
    m_headers.removeIf(
        [this](const TidemarDiveHeader &header) { return m_known.contains(header.diveNumber); });
}

bool LogbookWork::interrupted(const JobEnd &end)
{
    if (end.reason == Reason::WriteFailed)
        m_known.expectSmallestMtu();
    return false;
}

VardaIdentity identityOf(const VardaSession &session)
{
    VardaIdentity identity;
    identity.model = session.computerModel();
    identity.mode = session.currentMode();
    identity.recordVersion = session.recordVersion();
    identity.firmwareVersion = session.firmwareVersion();
    identity.bootloaderVersion = session.bootloaderVersion();
    identity.firmwareVersionStr = session.firmwareVersionStr();
    if (identity.bootloaderVersion != 0)
        identity.bootloaderVersionStr = VardaData::firmwareVersionToString(
            identity.bootloaderVersion);
    identity.serialNumber = session.serialNumber();
    return identity;
}

VardaSensors sensorsOf(const VardaSession &session)
{
    return {session.psurf(), session.pamb(), session.dstop(), session.density()};
}

Request Requests::identification()
{
    Request request = command(u"identification"_s, TidemarCommand::Identification);
    request.send = [](VardaSession &session, SessionDoor &door) {
        VardaData &data = door.data();
        data.firmwareVersion = data.bootloaderVersion = 0;
        data.firmwareVersionStr.clear();
        data.bootloaderVersionStr.clear();
        data.serialNumber.clear();
        session.startCommand(TidemarCommand::Identification);
        return Reason::None;
    };
    return request;
}

Request Requests::bootloaderVersion()
{
    return command(u"bootloader version"_s, TidemarCommand::BootloaderVersion);
}

Request Requests::samples(std::uint16_t number)
{
    Request request = command(u"dive %1"_s.arg(number), TidemarCommand::Fullsamples);
    request.send = [number](VardaSession &session, SessionDoor &) {
        session.startGetDiveSamples(number);
        return Reason::None;
    };
    return request;
}

QList<Request> Requests::sensors()
{
    QList<Request> requests;
    requests.append(command(u"surface pressure"_s, TidemarCommand::SimulParams));
    requests.append(command(u"sensors"_s, TidemarCommand::Sensors));
    return requests;
}

Request Requests::command(QString what, TidemarCommand::TidemarCommandIn command)
{
    return {.what = std::move(what),
            .end = command,
            .send = [command](VardaSession &session, SessionDoor &) {
                session.startCommand(command);
                return Reason::None;
            }};
}

Request Requests::serialNumber()
{
    Request request = command(u"serial number"_s, TidemarCommand::Serialnumber);
    request.optional = true;
    return request;
}

Request Requests::configuration(bool basic)
{
    const auto code = basic ? TidemarCommand::Computer : TidemarCommand::Computer_new;
    Request request = command(u"configuration"_s, code);
    request.send = [code](VardaSession &session, SessionDoor &door) {
        door.data().config = {};
        door.data().computer = {};
        session.startCommand(code);
        return Reason::None;
    };
    return request;
}

Request Requests::logbook(const KnownDives &known)
{
    Request request = command(u"logbook"_s, TidemarCommand::Logbook);
    request.send = [&known](VardaSession &session, SessionDoor &door) {
        session.startGetLogbook(known.newest(door.mtu()));
        return Reason::None;
    };
    return request;
}

void KnownDives::replace(QList<std::uint16_t> numbers)
{
    m_sorted = std::move(numbers);
    std::sort(m_sorted.begin(), m_sorted.end());
    m_sorted.erase(std::unique(m_sorted.begin(), m_sorted.end()), m_sorted.end());
}

bool KnownDives::contains(std::uint16_t number) const
{
    return std::binary_search(m_sorted.cbegin(), m_sorted.cend(), number);
}

QList<std::uint16_t> KnownDives::newest(int mtu) const
{
    const int real = m_smallest ? kSmallestMtu : mtu > 0 ? mtu : kUsualMtu;
    const qsizetype most = std::max(0, (std::min(real, kLargestMtu) - kBeforeNumbers) / 2);
    return m_sorted.last(std::min(m_sorted.size(), most));
}

QList<TidemarDiveHeader> oldestFirst(const QList<TidemarDiveHeader> &headers)
{
    QList<TidemarDiveHeader> sorted = headers;
    // The later of two is another dive, or the same again; the computer's order decides.
    std::set<std::uint16_t> taken;
    sorted.removeIf([&taken](const TidemarDiveHeader &header) {
        return !taken.insert(header.diveNumber).second;
    });
    std::sort(sorted.begin(), sorted.end(),
              [](const auto &one, const auto &other) { return one.diveNumber < other.diveNumber; });
    return sorted;
}
