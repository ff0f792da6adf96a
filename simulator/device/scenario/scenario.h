// SPDX-License-Identifier: MIT
#pragma once

#include "device/dives/logbook.h"
#include "device/memory/configuration.h"
#include "device/memory/eventlog.h"
#include "device/memory/firmwarestore.h"
#include "device/memory/layoutstore.h"
#include "device/scenario/faults.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qhash.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>

#include <array>
#include <memory>
#include <optional>

namespace simulator {

class Replay;

enum class Model { None, Varda, Tidemar, Vskm, ThirdParty };

enum class LinkMode { Gatt, Sps, Both, None };

enum class Radio { LowEnergy, Classic, Dual };

/** What a characteristic is for the computer behind it. */
enum class Role { None, Data, Credits };

struct DescriptorSpec {
    QString uuid;
    QByteArray value;
};

struct CharacteristicSpec {
    QString uuid;
    QStringList flags;
    QByteArray value;
    QList<DescriptorSpec> descriptors;
    Role role = Role::None;
};

struct ServiceSpec {
    QString uuid;
    bool primary = true;
    QList<CharacteristicSpec> characteristics;
};

/** How the service that carries the data differs from a healthy one. */
struct DataServiceSpec {
    QString uuid;
    QString characteristic;
    QStringList flags;
    bool present = true;
    bool characteristicPresent = true;
    bool creditsPresent = true;
    bool cccd = true;
};

struct Advertisement {
    int after = 0; ///< ms after the start of a discovery
    int rssi = -60;
    std::optional<QString> name;
};

/** The exact answer to one command. */
struct Response {
    bool raw = false; ///< parts are notifications, not payloads
    QList<QByteArray> parts;
};

struct BatteryWords {
    quint32 first = 0;
    quint32 second = 0;
};

struct DeviceScenario {
    // On the air
    std::optional<QString> name;
    std::optional<QString> alias;
    QString address;
    QString addressType;
    Radio radio = Radio::LowEnergy;
    quint32 deviceClass = 0;
    bool known = false;
    QList<Advertisement> advertise;

    // The link
    LinkMode mode = LinkMode::Gatt;
    int mtu = 247;
    int split = 0;
    bool merge = false;
    int paceMs = 0;
    int paceCount = 1;
    bool countCredits = false;
    bool hasOwnTable = false;
    QList<ServiceSpec> services;
    QList<ServiceSpec> extraBefore;
    QList<ServiceSpec> extraAfter;
    DataServiceSpec dataService;
    QList<Fault> faults;
    QHash<quint8, Response> responses;
    std::shared_ptr<Replay> replay; ///< instead of a computer; the same for all its copies

    // The computer
    Model model = Model::Varda;
    int recordVersion = 1;
    quint32 firmware = 0;
    quint32 bootloader = 0;
    QByteArray serial;
    QString owner;
    qint64 clock = 0;
    bool clockRuns = false;
    quint32 psurf = 1013;
    quint32 pamb = 1013;
    quint16 dstop = 0;
    quint16 density = 1030;
    std::array<float, 16> tissueN2{};
    std::array<float, 16> tissueHe{};
    float cns = 0;
    QList<BatteryWords> battery;
    LogbookScenario logbook;
    EventLog log;
    LayoutScenario layouts;
    FirmwareScenario firmwareUpload;
    Configuration configuration;
};

/** As they are in a diver who has not dived for a while. */
void restTissues(DeviceScenario &device);

struct AdapterScenario {
    QString address;
    bool powered = true;
    bool present = true;
};

struct Scenario {
    AdapterScenario adapter;
    int disconnectDelay = 0;
    int temporaryTimeout = 30000;
    bool recordTraffic = true;
    bool isReplay = false;
    QList<DeviceScenario> devices;

    /** Values given on the command line, which stand over those of every Low Energy device. */
    struct Overrides {
        QString model;
        QString mode;
    };

    /** The scenario, or nothing and an error that says where and what. */
    static std::optional<Scenario> parse(const QByteArray &json, QString *error,
                                         const Overrides &overrides = {});
};

} // namespace simulator
