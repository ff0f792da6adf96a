// SPDX-License-Identifier: MIT
#include "radio/peripheral.h"

#include "device/scenario/gatttable.h"

#include <QtBluetooth/qbluetoothlocaldevice.h>
#include <QtBluetooth/qlowenergyadvertisingdata.h>
#include <QtBluetooth/qlowenergyadvertisingparameters.h>
#include <QtBluetooth/qlowenergycharacteristicdata.h>
#include <QtBluetooth/qlowenergydescriptordata.h>
#include <QtBluetooth/qlowenergyservicedata.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

// Generic Access and Generic Attribute belong to the system that owns the adapter.
bool isOfTheSystem(const ServiceSpec &service)
{
    return service.uuid.startsWith("00001800-"_L1) || service.uuid.startsWith("00001801-"_L1);
}

QBluetoothUuid uuidOf(const QString &text)
{
    return QBluetoothUuid(QUuid(text));
}

QLowEnergyCharacteristic::PropertyTypes propertiesOf(const QStringList &flags)
{
    constexpr std::pair<const char *, QLowEnergyCharacteristic::PropertyType> kProperties[] = {
        {"broadcast", QLowEnergyCharacteristic::Broadcasting},
        {"read", QLowEnergyCharacteristic::Read},
        {"write-without-response", QLowEnergyCharacteristic::WriteNoResponse},
        {"write", QLowEnergyCharacteristic::Write},
        {"notify", QLowEnergyCharacteristic::Notify},
        {"indicate", QLowEnergyCharacteristic::Indicate},
        {"authenticated-signed-writes", QLowEnergyCharacteristic::WriteSigned},
        {"extended-properties", QLowEnergyCharacteristic::ExtendedProperty},
    };
    QLowEnergyCharacteristic::PropertyTypes properties;
    for (const auto &[flag, property] : kProperties)
        properties.setFlag(property, flags.contains(QLatin1String(flag)));
    return properties;
}

QLowEnergyCharacteristicData dataOf(const CharacteristicSpec &spec)
{
    QLowEnergyCharacteristicData data;
    data.setUuid(uuidOf(spec.uuid));
    data.setProperties(propertiesOf(spec.flags));
    data.setValue(spec.value);
    for (const DescriptorSpec &descriptor : spec.descriptors) {
        const QBluetoothUuid uuid = uuidOf(descriptor.uuid);
        const bool isCccd = uuid
                            == QBluetoothUuid(
                                QBluetoothUuid::DescriptorType::ClientCharacteristicConfiguration);
        data.addDescriptor({uuid, isCccd ? QByteArray(2, '\0') : descriptor.value});
    }
    return data;
}

QLowEnergyServiceData dataOf(const ServiceSpec &spec)
{
    QLowEnergyServiceData data;
    data.setUuid(uuidOf(spec.uuid));
    data.setType(spec.primary ? QLowEnergyServiceData::ServiceTypePrimary
                              : QLowEnergyServiceData::ServiceTypeSecondary);
    for (const CharacteristicSpec &each : spec.characteristics)
        data.addCharacteristic(dataOf(each));
    return data;
}

// The rest happens inside the system's Bluetooth, or to it.
bool canHappen(const Fault &fault)
{
    return (fault.step == Step::Answer || fault.step == Step::Notification)
           && !isCalamity(fault.kind);
}

QString adapterList()
{
    QStringList texts;
    const QList<QBluetoothHostInfo> adapters = QBluetoothLocalDevice::allDevices();
    for (const QBluetoothHostInfo &each : adapters)
        texts.append(u"%1 (%2)"_s.arg(each.address().toString(), each.name()));
    return texts.join(u", "_s);
}

} // namespace

Peripheral::Peripheral(const DeviceScenario &scenario, Recorder &recorder, QObject *parent)
    : QObject(parent),
      m_scenario(scenario),
      m_recorder(recorder),
      m_faults(scenario.faults),
      m_serial(scenario, m_faults)
{
    connect(&m_serial, &SerialLink::notification, this, &Peripheral::notify);
    connect(&m_serial, &SerialLink::linkDropped, this,
            [this] { m_controller->disconnectFromDevice(); });
    connect(&m_serial, &SerialLink::credits, this,
            [this](const QString &event, int granted, qsizetype waiting) {
                record(event, {{u"granted"_s, granted}, {u"waiting"_s, waiting}});
            });
}

Peripheral::~Peripheral() = default;

QString Peripheral::problemWith(const Scenario &scenario)
{
    if (scenario.devices.size() != 1) {
        return u"devices: there are %1, but an adapter can be only one computer"_s.arg(
            scenario.devices.size());
    }
    if (!scenario.adapter.present || !scenario.adapter.powered)
        return u"adapter: a scenario cannot switch off a real adapter"_s;
    const DeviceScenario &device = scenario.devices.first();
    if (device.radio != Radio::LowEnergy)
        return u"devices[0].type: only \"le\" can be on the air"_s;
    for (qsizetype i = 0; i < device.faults.size(); ++i) {
        if (!canHappen(device.faults[i])) {
            return u"devices[0].faults[%1]: %2 is not possible on the air"_s.arg(i).arg(
                nameOf(device.faults[i]));
        }
    }
    return {};
}

QStringList Peripheral::limits(const DeviceScenario &scenario)
{
    QStringList texts{
        u"the address is the adapter's, and the adapter decides on the MTU and when to send"_s,
        u"the adapter's own services are visible too, and the adapter takes the computer's name"_s,
        u"it cannot refuse a connection or a subscription, and drops a link slowly"_s,
    };
    if (scenario.name.value_or(QString()).toUtf8().size() > 26)
        texts.append(u"a name this long is advertised in part or not at all"_s);
    return texts;
}

void Peripheral::start(const QString &adapterAddress)
{
    const QBluetoothAddress wanted(adapterAddress);
    const QBluetoothLocalDevice used(wanted); // the first one for a null address
    if (!used.isValid() || (wanted.isNull() && !adapterAddress.isEmpty())) {
        const QString others = adapterList();
        Q_EMIT failed(
            others.isEmpty()
                ? u"no Bluetooth adapter found; is there one, and is the Bluetooth "
                  "service running?"_s
                : u"no Bluetooth adapter %1; this machine has: %2"_s.arg(adapterAddress, others));
        return;
    }
    if (used.hostMode() == QBluetoothLocalDevice::HostPoweredOff) {
        Q_EMIT failed(u"the Bluetooth adapter %1 is switched off"_s.arg(used.address().toString()));
        return;
    }
    m_adapter = used.address();
    if (m_scenario.name)
        m_adapterName = std::make_unique<AdapterName>(m_adapter.toString(), *m_scenario.name);
    m_controller.reset(QLowEnergyController::createPeripheral(m_adapter));
    connect(m_controller.get(), &QLowEnergyController::connected, this, &Peripheral::linkUp);
    connect(m_controller.get(), &QLowEnergyController::disconnected, this, &Peripheral::linkDown);
    connect(m_controller.get(), &QLowEnergyController::errorOccurred, this, &Peripheral::fail);
    connect(m_controller.get(), &QLowEnergyController::mtuChanged, &m_serial,
            &SerialLink::setLinkMtu);
    // Queued, for an error that comes with it takes it back.
    connect(
        m_controller.get(), &QLowEnergyController::stateChanged, this,
        [this](QLowEnergyController::ControllerState state) {
            if (state == QLowEnergyController::AdvertisingState && state == m_controller->state())
                Q_EMIT onAir(m_adapter.toString());
        },
        Qt::QueuedConnection);
    advertise();
}

void Peripheral::advertise()
{
    addServices();
    QLowEnergyAdvertisingData data;
    data.setDiscoverability(QLowEnergyAdvertisingData::DiscoverabilityGeneral);
    data.setLocalName(m_scenario.name.value_or(QString()));
    m_controller->startAdvertising({}, data);
}

// Qt forgets them with each link.
void Peripheral::addServices()
{
    m_dataService = nullptr;
    m_data = {};
    m_services.clear();
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &spec : table) {
        if (isOfTheSystem(spec))
            continue;
        std::unique_ptr<QLowEnergyService> service(m_controller->addService(dataOf(spec)));
        if (!service) {
            Q_EMIT failed(u"cannot offer the service %1"_s.arg(spec.uuid));
            return;
        }
        connect(service.get(), &QLowEnergyService::characteristicChanged, this,
                [this, at = service.get()](const QLowEnergyCharacteristic &characteristic,
                                           const QByteArray &bytes) {
                    if (roleOf(characteristic) == Role::Data) {
                        m_dataService = at;
                        m_data = characteristic;
                    }
                    wrote(characteristic, bytes);
                });
        m_services.push_back(std::move(service));
    }
}

Role Peripheral::roleOf(const QLowEnergyCharacteristic &characteristic) const
{
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &service : table) {
        for (const CharacteristicSpec &each : service.characteristics) {
            if (uuidOf(each.uuid) == characteristic.uuid())
                return each.role;
        }
    }
    return Role::None;
}

void Peripheral::wrote(const QLowEnergyCharacteristic &characteristic, const QByteArray &bytes)
{
    switch (roleOf(characteristic)) {
    case Role::Data:
        record(u"frame"_s, {{u"hex"_s, QString::fromLatin1(bytes.toHex())}});
        m_serial.written(bytes);
        break;
    case Role::Credits:
        m_serial.creditsGranted(bytes);
        break;
    case Role::None:
        break;
    }
}

void Peripheral::notify(const QByteArray &bytes)
{
    record(u"notification"_s, {{u"hex"_s, QString::fromLatin1(bytes.toHex())}});
    if (m_dataService)
        m_dataService->writeCharacteristic(m_data, bytes);
}

void Peripheral::linkUp()
{
    m_serial.reset();
    record(u"connected"_s, {{u"by"_s, m_controller->remoteAddress().toString()}});
}

void Peripheral::linkDown()
{
    m_serial.reset();
    m_serial.setLinkMtu(m_scenario.mtu);
    record(u"disconnected"_s);
    advertise();
}

void Peripheral::fail()
{
    m_controller->disconnect(this); // it may say so twice
    QString text = u"the system refused to put it on the air: "_s + m_controller->errorString();
    if (m_controller->error() == QLowEnergyController::AdvertisingError)
        text += u"; may this user advertise, and is the adapter able to?"_s;
    Q_EMIT failed(text);
}

void Peripheral::record(const QString &event, QJsonObject details)
{
    details.insert(u"address"_s, m_adapter.toString());
    m_recorder.add(event, details);
}

} // namespace simulator
