// SPDX-License-Identifier: MIT
#include "device/replay/replayscenario.h"

#include "device/replay/replay.h"
#include "device/replay/tracefile.h"

#include <QtCore/qjsonarray.h>
#include <QtCore/qregularexpression.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kCccd = u"00002902-0000-1000-8000-00805f9b34fb"_s;
constexpr int kSmallestMtu = 23;
constexpr int kLargestMtu = 517;
constexpr int kAttHeader = 3;
/** Longer than anybody waits for a service that does not answer. */
constexpr int kFreezeMs = 8000;

/** Goes through the events of a trace once and builds its world. */
class Builder
{
public:
    void add(const TraceEvent &event);
    [[nodiscard]] Scenario finish();

private:
    /** How far the link has come. */
    enum class Stage { None, Connecting, Up, Resolved, Subscribing, Ready };

    void connect(const TraceEvent &event);
    void characteristics(const QJsonObject &fields);
    void services(const QJsonArray &uuids);
    void write(const TraceEvent &event);
    void down(const TraceEvent &event, FaultKind kind);
    void bluetooth(const TraceEvent &event);
    void fault(Step step, FaultKind kind, int nth);
    void end();

    Scenario m_scenario;
    DeviceScenario m_device;
    QList<RecordedRequest> m_requests;
    QString m_dataCharacteristic;
    Stage m_stage = Stage::None;
    double m_writtenMs = 0;
    bool m_hasRequest = false; ///< on this link
    bool m_ended = true;       ///< why the link goes is known
    int m_connections = 0;
    int m_discoveries = 0;
    int m_subscriptions = 0;
    int m_writes = 0;
    int m_longest = 0;
    int m_mtu = 0;
};

void Builder::add(const TraceEvent &event)
{
    const QString &name = event.name;
    if (name == "connect"_L1) {
        connect(event);
    } else if (name == "up"_L1) {
        m_stage = Stage::Up;
        ++m_discoveries;
    } else if (name == "services"_L1) {
        m_stage = Stage::Resolved;
        services(event.fields.value("uuids"_L1).toArray());
    } else if (name == "characteristics"_L1) {
        characteristics(event.fields);
    } else if (name == "subscribe"_L1) {
        m_stage = Stage::Subscribing;
        ++m_subscriptions;
        m_dataCharacteristic = event.fields.value("characteristic"_L1).toString();
    } else if (name == "subscribed"_L1) {
        m_stage = Stage::Ready;
        m_mtu = std::max(m_mtu, event.fields.value("mtu"_L1).toInt());
    } else if (name == "write"_L1) {
        write(event);
    } else if (name == "notification"_L1) {
        m_longest = std::max(m_longest, int(event.bytes.size()));
        if (m_hasRequest)
            m_requests.last().notifications.append({event.ms - m_writtenMs, event.bytes});
    } else if (name == "failure"_L1) {
        const QString what = event.fields.value("what"_L1).toString();
        // Qt reports a link that came and went before its services were known.
        const bool came = event.fields.value("error"_L1).toString() == "ConnectionError"_L1;
        if (what == "controller"_L1 || what == "service"_L1)
            down(event, came ? FaultKind::Drop : FaultKind::Refuse);
        else if (what == "subscription"_L1)
            down(event, FaultKind::Silent);
    } else if (name == "down"_L1) {
        down(event, FaultKind::Drop);
    } else if (name == "disconnect"_L1) {
        end();
    } else if (name == "bluetooth"_L1) {
        bluetooth(event);
    }
}

void Builder::connect(const TraceEvent &event)
{
    end();
    static const QRegularExpression kAddress(u"^([0-9A-F]{2}:){5}[0-9A-F]{2}$"_s);
    const QString address = event.fields.value("address"_L1).toString().toUpper();
    // Some systems have no addresses but numbers of their own.
    m_device.address = kAddress.match(address).hasMatch() ? address : u"00:AA:01:01:00:01"_s;
    const QString advertised = event.fields.value("name"_L1).toString();
    if (!advertised.isEmpty())
        m_device.name = advertised;
    m_stage = Stage::Connecting;
    m_ended = m_hasRequest = false;
    ++m_connections;
}

void Builder::services(const QJsonArray &uuids)
{
    if (uuids.isEmpty()) {
        fault(Step::Discover, FaultKind::Empty, m_discoveries);
        return;
    }
    m_device.hasOwnTable = true;
    for (const auto &each : uuids) {
        const QString uuid = each.toString();
        const auto known = [&uuid](const ServiceSpec &service) { return service.uuid == uuid; };
        if (std::ranges::none_of(m_device.services, known))
            m_device.services.append({uuid, true, {}});
    }
}

void Builder::characteristics(const QJsonObject &fields)
{
    QList<CharacteristicSpec> specs;
    const QJsonArray list = fields.value("characteristics"_L1).toArray();
    for (const auto &each : list) {
        CharacteristicSpec spec;
        spec.uuid = each["uuid"_L1].toString();
        const QJsonArray flags = each["flags"_L1].toArray();
        for (const auto &flag : flags)
            spec.flags.append(flag.toString());
        if (each["cccd"_L1].toBool())
            spec.descriptors.append({kCccd, {}});
        specs.append(spec);
    }
    const QString uuid = fields.value("service"_L1).toString();
    for (ServiceSpec &service : m_device.services) {
        if (service.uuid == uuid)
            service.characteristics = specs;
    }
}

void Builder::write(const TraceEvent &event)
{
    ++m_writes;
    if (event.fields.contains("characteristic"_L1))
        return;
    RecordedRequest request;
    request.line = event.line;
    request.bytes = event.bytes;
    m_requests.append(request);
    m_writtenMs = event.ms;
    m_hasRequest = true;
}

/** The link goes, by what the system reports. */
void Builder::down(const TraceEvent &event, FaultKind kind)
{
    if (m_ended)
        return;
    m_ended = true;
    switch (m_stage) {
    case Stage::None:
        break;
    case Stage::Connecting:
        fault(Step::Connect, kind, m_connections);
        break;
    case Stage::Up:
        // The services are not known yet, so there has been no discovery.
        fault(Step::Connect, FaultKind::Drop, m_connections);
        --m_discoveries;
        break;
    case Stage::Resolved:
        if (event.name == "down"_L1)
            fault(Step::Discover, FaultKind::Drop, m_discoveries);
        break;
    case Stage::Subscribing:
        fault(Step::Subscribe, kind, m_subscriptions);
        break;
    case Stage::Ready:
        if (m_hasRequest && kind == FaultKind::Refuse
            && event.fields.value("what"_L1).toString() == "service"_L1)
            fault(Step::Write, kind, m_writes);
        else if (m_hasRequest)
            m_requests.last().linkDownMs = event.ms - m_writtenMs;
        break;
    }
}

/** The link is given up by this side: what it had waited for never came. */
void Builder::end()
{
    if (m_ended)
        return;
    m_ended = true;
    if (m_stage == Stage::Connecting)
        fault(Step::Connect, FaultKind::Silent, m_connections);
    else if (m_stage == Stage::Up)
        fault(Step::Discover, FaultKind::Silent, m_discoveries);
    else if (m_stage == Stage::Subscribing)
        fault(Step::Subscribe, FaultKind::Silent, m_subscriptions);
}

void Builder::bluetooth(const TraceEvent &event)
{
    constexpr std::pair<const char *, FaultKind> kKinds[] = {
        {"NoAdapter", FaultKind::AdapterGone}, {"AdapterRemoved", FaultKind::AdapterGone},
        {"AdapterOff", FaultKind::PowerOff},   {"ServiceGone", FaultKind::DaemonGone},
        {"ServiceFrozen", FaultKind::Freeze},
    };
    const QString reason = event.fields.value("reason"_L1).toString();
    const auto *const kind = std::ranges::find_if(
        kKinds, [&reason](const auto &each) { return reason == QLatin1String(each.first); });
    if (kind == std::end(kKinds))
        return;
    if (m_connections == 0) {
        m_scenario.adapter.present = m_scenario.adapter.present
                                     && kind->second != FaultKind::AdapterGone;
        m_scenario.adapter.powered = m_scenario.adapter.powered
                                     && kind->second != FaultKind::PowerOff;
    } else if (m_hasRequest && !m_ended) {
        m_ended = true;
        RecordedRequest &request = m_requests.last();
        request.calamity.kind = kind->second;
        request.calamity.ms = kind->second == FaultKind::Freeze ? kFreezeMs : 0;
        // A frozen service is noticed late.
        request.calamityMs = kind->second == FaultKind::Freeze ? 0 : event.ms - m_writtenMs;
    } else if (!m_ended && m_stage == Stage::Connecting) {
        m_ended = true;
        fault(Step::Connect, kind->second, m_connections);
        m_device.faults.last().ms = kind->second == FaultKind::Freeze ? kFreezeMs : 0;
    }
}

void Builder::fault(Step step, FaultKind kind, int nth)
{
    Fault fault;
    fault.step = step;
    fault.kind = kind;
    fault.nth = nth;
    fault.times = 1;
    fault.errorName = u"org.bluez.Error.Failed"_s;
    fault.errorMessage = u"as it was recorded"_s;
    m_device.faults.append(fault);
}

Scenario Builder::finish()
{
    end();
    m_scenario.adapter.address = u"00:AA:01:00:00:00"_s;
    m_scenario.isReplay = true;
    if (m_connections == 0)
        return m_scenario; // it was not found
    m_device.addressType = u"public"_s;
    m_device.advertise.append(Advertisement{10, -60, std::nullopt});
    m_device.mtu = m_mtu > 0 ? m_mtu : m_device.mtu;
    m_device.mtu = std::clamp(std::max(m_device.mtu, m_longest + kAttHeader), kSmallestMtu,
                              kLargestMtu);
    for (ServiceSpec &service : m_device.services) {
        for (CharacteristicSpec &each : service.characteristics) {
            if (each.uuid == m_dataCharacteristic)
                each.role = Role::Data;
        }
    }
    m_device.replay = std::make_shared<Replay>(m_requests);
    m_scenario.devices.append(m_device);
    return m_scenario;
}

} // namespace

std::optional<Scenario> scenarioOfTrace(const QByteArray &trace, QString *error)
{
    const std::optional<QList<TraceEvent>> events = readTrace(trace, error);
    if (!events)
        return std::nullopt;
    Builder builder;
    for (const TraceEvent &event : *events)
        builder.add(event);
    return builder.finish();
}

} // namespace simulator
