// SPDX-License-Identifier: MIT
#include "jobs/doctor/vardadoctor_p.h"

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtCore/qdatetime.h>
#include <QtCore/qmetaobject.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

#include "jobs/doctor/radioswitches_p.h"
#include "jobs/link/bluetoothwatch_p.h"
#include "jobs/vardajob_p.h"
#include "session/computername_p.h"
#include "transport/closinglink_p.h"
#include "transport/permission_p.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

/** An advertisement comes every second or so. */
constexpr std::chrono::milliseconds kSearchTime = 10s;
/** A computer that accepts the link and then is silent costs 30 s, twice. */
constexpr auto kConnectTime = 90s;
/** Of the computer's clock; it has no seconds on its own screen. */
constexpr std::int64_t kClockSeconds = 120;
/** Single answers are longer, and are not put together. */
constexpr int kSmallestMtu = 23;
// The entries about the battery in the system log
constexpr int kBatteryAtStart = 0;
constexpr int kBatteryChecked = 1;

constexpr int kSubjects = int(VardaCheck::Subject::Battery) + 1;

QVersionNumber oldestService()
{
    return {5, 42}; // Qt asks the kernel instead of an older one, and needs root then
}

/** What is looked at only on Linux. */
bool isOfLinux(VardaCheck::Subject subject)
{
    using Subject = VardaCheck::Subject;
    switch (subject) {
    case Subject::Bus:
    case Subject::BluetoothService:
    case Subject::ServiceVersion:
    case Subject::RadioBlock:
    case Subject::Adapter:
    case Subject::OtherProgram:
        return true;
    default:
        return false;
    }
}

/** What is known by now makes some remedies plainer than those of a job. */
QString remedyFor(Reason reason)
{
    switch (reason) {
    case Reason::NoAdapter:
        return VardaDoctor::tr("Plug in a Bluetooth adapter.");
    case Reason::ServiceGone:
        return VardaDoctor::tr("Start it. (systemctl start bluetooth)");
    case Reason::Silent:
        return VardaDoctor::tr("Switch the computer on, choose its Bluetooth mode, keep it near.");
    case Reason::LinkFailed:
    case Reason::ConnectLimit:
        return VardaDoctor::tr("Restart the computer, keep it near, and end its connection to a "
                               "phone.");
    case Reason::NoService:
        return VardaDoctor::tr("Choose a diving computer; if this is one, restart it.");
    case Reason::NoAnswer:
        return VardaDoctor::tr("Restart the computer, and keep it near.");
    case Reason::SmallMtu:
        return VardaDoctor::tr("Use another Bluetooth adapter, with Bluetooth 4.2 or newer.");
    default:
        return remedyOf(reason);
    }
}

QString listOf(const QList<SystemLook::Adapter> &adapters)
{
    QStringList names;
    for (const SystemLook::Adapter &each : adapters)
        names.append(each.name + (each.isOn ? u" on"_s : u" off"_s));
    return names.join(u", "_s);
}

} // namespace

VardaDoctorPrivate::VardaDoctorPrivate(VardaDoctor &doctor, VardaComputer &examined)
    : q(doctor), m_computer(&examined)
{
    connect(&m_search, &DeviceSearch::seen, this, &VardaDoctorPrivate::onSeen);
    connect(&m_search, &DeviceSearch::finished, this, &VardaDoctorPrivate::onNotSeen);
    connect(&m_search, &DeviceSearch::failed, this, &VardaDoctorPrivate::onSearchFailed);
    connect(&examined, &QObject::destroyed, this, [this] {
        m_search.stop();
        m_stopped = true;
        q.fail(VardaJob::Cancelled, Reason::ComputerDeleted,
               textOf({VardaJob::Cancelled, Reason::ComputerDeleted}, u"examination"_s, {}));
    });
    QMetaObject::invokeMethod(this, &VardaDoctorPrivate::begin, Qt::QueuedConnection);
}

VardaDoctorPrivate::~VardaDoctorPrivate()
{
    if (m_job)
        m_job->cancel();
}

void VardaDoctorPrivate::stop(bool atOnce)
{
    m_stopped = true;
    m_search.stop();
    if (m_job && atOnce)
        m_job->abort();
    else if (m_job)
        m_job->cancel();
    else
        leave();
}

// What is found

void VardaDoctorPrivate::add(const VardaCheck &check)
{
    skipTo(int(check.subject));
    append(check);
}

void VardaDoctorPrivate::append(const VardaCheck &check)
{
    checks.append(check);
    // From the event loop: what slots do must not happen in the middle of a look.
    QMetaObject::invokeMethod(
        this,
        [this, check, done = checks.size()] {
            const QPointer<VardaDoctorPrivate> alive(this);
            q.setProgress(done, kSubjects);
            if (alive)
                Q_EMIT q.checked(check);
        },
        Qt::QueuedConnection);
}

void VardaDoctorPrivate::addOk(Subject subject, const QString &lookedAt, const QString &text)
{
    add({.subject = subject, .state = State::Ok, .lookedAt = lookedAt, .text = text});
}

void VardaDoctorPrivate::addFault(Subject subject, const QString &lookedAt, const JobEnd &end)
{
    add({.subject = subject,
         .state = State::Fault,
         .error = end.error,
         .reason = end.reason,
         .lookedAt = lookedAt,
         .text = textOf(end, m_asked, {}),
         .remedy = remedyFor(end.reason)});
}

/** Those before it, if there is nothing to say about them. */
void VardaDoctorPrivate::skipTo(int subject)
{
    while (checks.size() < subject) {
        const auto next = Subject(checks.size());
        const bool elsewhere = isOfLinux(next) && !SystemView::exists();
        append({.subject = next,
                .state = State::Skipped,
                .text = elsewhere ? VardaDoctor::tr("there is no such thing on this system")
                                  : VardaDoctor::tr("not looked at")});
    }
}

void VardaDoctorPrivate::leave()
{
    // Not while somebody else uses it.
    if (m_connects && m_computer && !m_computer->currentJob()
        && m_computer->waitingJobs().isEmpty()) {
        m_connects = false;
        m_job = m_computer->disconnectFromComputer();
        connect(m_job, &VardaJob::finished, this, [this] { end(); });
    } else {
        end();
    }
}

void VardaDoctorPrivate::end()
{
    if (m_stopped) {
        q.fail(VardaJob::Cancelled, Reason::ByCaller,
               textOf({VardaJob::Cancelled, Reason::ByCaller}, u"examination"_s, {}));
        return;
    }
    skipTo(kSubjects);
    q.finish(QVariant::fromValue(checks));
}

template <typename Job>
void VardaDoctorPrivate::run(Job *job, int retries,
                             std::function<void(const JobEnd &, Job &)> ended)
{
    m_job = job;
    m_asked = VardaJobPrivate::of(*job).name;
    const VardaJobPrivate &wish = VardaJobPrivate::of(q);
    job->setRetries(std::min(retries, wish.retries));
    job->setConnectLimit(wish.connectLimit);
    job->setIdleLimit(wish.idleLimit);
    connect(job, &VardaJob::finished, this, [this, job, ended = std::move(ended)] {
        const JobEnd end = VardaJobPrivate::of(*job).ending();
        m_job.clear();
        if (m_stopped || end.error == VardaJob::Cancelled) {
            m_stopped = true;
            // The job's own slots come first: it is still the computer's current one.
            QMetaObject::invokeMethod(this, &VardaDoctorPrivate::leave, Qt::QueuedConnection);
        } else {
            ended(end, *job);
        }
    });
}

// From this program to the system's Bluetooth

void VardaDoctorPrivate::begin()
{
    if (m_stopped)
        return;
    q.setState(VardaJob::Running);
    if (!lookAtQt()) {
        leave();
        return;
    }
#ifdef VARDA_HAS_DBUS
    m_system.look([this](const SystemLook &look) {
        if (!m_stopped)
            onSystem(look);
    });
#else
    if (lookAtPermission())
        searchComputer();
    else
        leave();
#endif
}

bool VardaDoctorPrivate::lookAtQt()
{
    const QString lookedAt = u"Qt Bluetooth"_s;
    const bool isThere = QBluetoothDeviceDiscoveryAgent::supportedDiscoveryMethods().testFlag(
        QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    if (isThere)
        addOk(Subject::QtBluetooth, lookedAt, VardaDoctor::tr("Qt can use Bluetooth Low Energy"));
    else
        add({.subject = Subject::QtBluetooth,
             .state = State::Fault,
             .error = VardaJob::NoBluetooth,
             .reason = Reason::NotSupported,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("this Qt cannot use Bluetooth Low Energy"),
             .remedy = VardaDoctor::tr(
                 "Install a Qt whose Qt Bluetooth is built for this system.")});
    return isThere;
}

#ifndef VARDA_HAS_DBUS
bool VardaDoctorPrivate::lookAtPermission()
{
#    ifdef VARDA_HAS_PERMISSIONS
    QBluetoothPermission permission;
    permission.setCommunicationModes(QBluetoothPermission::Access);
    const QString lookedAt = VardaDoctor::tr("permission of this program");
    switch (qApp->checkPermission(permission)) {
    case Qt::PermissionStatus::Denied:
        addFault(Subject::Permission, lookedAt, {VardaJob::NoBluetooth, Reason::PermissionDenied});
        return false;
    case Qt::PermissionStatus::Undetermined:
        add({.subject = Subject::Permission,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("the system has not asked you yet")});
        return true;
    case Qt::PermissionStatus::Granted:
        addOk(Subject::Permission, lookedAt, VardaDoctor::tr("this program may use Bluetooth"));
        return true;
    }
#    endif
    return true;
}
#endif

void VardaDoctorPrivate::onSystem(const SystemLook &look)
{
    m_look = look;
    if (!lookAtService(look)) {
        leave();
        return;
    }
    onVersion(look.version);
}

bool VardaDoctorPrivate::lookAtService(const SystemLook &look)
{
    const QString bus = VardaDoctor::tr("system bus");
    if (!look.hasBus) {
        add({.subject = Subject::Bus,
             .state = State::Fault,
             .error = VardaJob::NoBluetooth,
             .reason = Reason::ServiceGone,
             .lookedAt = bus,
             .text = VardaDoctor::tr("the system's message bus cannot be reached"),
             .remedy = VardaDoctor::tr("Start D-Bus; in a container, give it the system's bus.")});
        return false;
    }
    addOk(Subject::Bus, bus, VardaDoctor::tr("the system's message bus can be reached"));

    const QString service = u"org.bluez"_s;
    if (look.reason == Reason::PermissionDenied) {
        add({.subject = Subject::Permission,
             .state = State::Fault,
             .error = VardaJob::NoBluetooth,
             .reason = Reason::PermissionDenied,
             .lookedAt = service,
             .text = VardaDoctor::tr("you may not use the system's Bluetooth service"),
             .remedy = VardaDoctor::tr(
                 "Add yourself to the group \"bluetooth\", then log in again; "
                 "in a sandbox, allow org.bluez.")});
        return false;
    }
    addOk(Subject::Permission, service, VardaDoctor::tr("nothing forbids the use of Bluetooth"));

    if (look.reason != Reason::None) {
        addFault(Subject::BluetoothService, service, {VardaJob::NoBluetooth, look.reason});
        return false;
    }
    addOk(Subject::BluetoothService, service,
          VardaDoctor::tr("the system's Bluetooth service runs and answers"));
    return true;
}

void VardaDoctorPrivate::onVersion(const QVersionNumber &version)
{
    const QString lookedAt = VardaDoctor::tr("what the adapter says");
    if (version.isNull()) {
        add({.subject = Subject::ServiceVersion,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("the version of BlueZ could not be found out")});
    } else if (version < oldestService()) {
        add({.subject = Subject::ServiceVersion,
             .state = State::Fault,
             .error = VardaJob::NoBluetooth,
             .reason = Reason::NotSupported,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("BlueZ %1 is too old").arg(version.toString()),
             .remedy = VardaDoctor::tr("Update the system: BlueZ 5.42 or newer is needed.")});
        leave();
        return;
    } else {
        addOk(Subject::ServiceVersion, lookedAt, u"BlueZ "_s + version.toString());
    }
    if (!lookAtAdapters(m_look)) {
        leave();
        return;
    }
    lookAtOtherProgram();
    if (isOurs() || (known() && known()->isConnected))
        connectComputer(); // what has a link does not advertise
    else
        searchComputer();
}

bool VardaDoctorPrivate::lookAtAdapters(const SystemLook &look)
{
    const QList<RadioSwitch> switches = radioSwitches(radioSwitchFolder());
    const auto blocked = std::find_if(switches.cbegin(), switches.cend(),
                                      [](const RadioSwitch &each) { return each.isBlocked(); });
    // Another adapter may not be concerned.
    if (!look.isOn() && blocked != switches.cend()) {
        add({.subject = Subject::RadioBlock,
             .state = State::Fault,
             .error = VardaJob::NoBluetooth,
             .reason = look.adapters.isEmpty() ? Reason::NoAdapter : Reason::AdapterOff,
             .lookedAt = u"rfkill: "_s + blocked->name,
             .text = blocked->byHand ? VardaDoctor::tr("a switch of this machine blocks Bluetooth")
                                     : VardaDoctor::tr("Bluetooth is blocked (airplane mode)"),
             .remedy = blocked->byHand
                           ? VardaDoctor::tr("Use the machine's key or slide for wireless.")
                           : VardaDoctor::tr("End airplane mode. (rfkill unblock bluetooth)")});
        return false;
    }
    addOk(Subject::RadioBlock, u"rfkill"_s, VardaDoctor::tr("no switch blocks Bluetooth"));

    const QString lookedAt = listOf(look.adapters);
    if (look.adapters.isEmpty()) {
        addFault(Subject::Adapter, u"org.bluez"_s, {VardaJob::NoBluetooth, Reason::NoAdapter});
        return false;
    }
    addOk(Subject::Adapter, lookedAt, VardaDoctor::tr("there is a Bluetooth adapter"));
    if (!look.isOn()) {
        addFault(Subject::Power, lookedAt, {VardaJob::NoBluetooth, Reason::AdapterOff});
        return false;
    }
    addOk(Subject::Power, lookedAt, VardaDoctor::tr("Bluetooth is switched on"));
    return true;
}

// From there to the computer

bool VardaDoctorPrivate::isOurs() const
{
    const VardaComputer::State state = m_computer->state();
    return state == VardaComputer::Connected || state == VardaComputer::Settling
           || state == VardaComputer::Disconnecting
           || (m_computer->device().isValid()
               && ClosingLink::toDevice(m_computer->device().deviceInfo()));
}

bool VardaDoctorPrivate::isWanted(const QString &address, const QString &name) const
{
    const BleDeviceInfo device = m_computer ? m_computer->device() : BleDeviceInfo();
    return device.isValid() ? address.compare(device.address(), Qt::CaseInsensitive) == 0
                            : isComputerName(name);
}

const SystemLook::Device *VardaDoctorPrivate::known() const
{
    const SystemLook::Device *found = nullptr;
    for (const SystemLook::Device &each : m_look.devices) {
        if (isWanted(each.address, each.name) && (!found || each.isConnected))
            found = &each;
    }
    return found;
}

void VardaDoctorPrivate::lookAtOtherProgram()
{
    const QString lookedAt = VardaDoctor::tr("links of the Bluetooth service");
    const SystemLook::Device *const device = known();
    // Who has all notifications for itself keeps others from connecting.
    const bool alone = device && device->isAcquired;
    if (!isOurs() && device && device->isConnected)
        add({.subject = Subject::OtherProgram,
             .state = alone ? State::Fault : State::Warning,
             .error = alone ? VardaJob::Repeated : VardaJob::NoError,
             .reason = alone ? Reason::OtherSubscriber : Reason::None,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("another program here is connected to the computer, or was"),
             .remedy = VardaDoctor::tr("Close that program. (bluetoothctl disconnect)")});
    else
        addOk(Subject::OtherProgram, lookedAt,
              VardaDoctor::tr("no other program here is connected to the computer"));
}

void VardaDoctorPrivate::searchComputer()
{
    m_searchTime = std::min(VardaJobPrivate::of(q).connectLimit, kSearchTime);
    m_search.start(m_searchTime);
}

void VardaDoctorPrivate::onSeen(const BleDeviceInfo &device)
{
    // What the system remembers is listed as well, without a signal.
    if (m_stopped || !isWanted(device.address(), device.name())
        || (SystemView::exists() && device.rssi() == 0))
        return;
    m_search.stop();
    m_seen = device.address();
    addOk(Subject::Reach, VardaDoctor::tr("advertisement, %1 dBm").arg(device.rssi()),
          VardaDoctor::tr("the computer is in reach"));
    QMetaObject::invokeMethod(this, &VardaDoctorPrivate::connectComputer, Qt::QueuedConnection);
}

void VardaDoctorPrivate::onNotSeen()
{
    const bool isKnown = known() != nullptr;
    add({.subject = Subject::Reach,
         .state = State::Fault,
         .error = VardaJob::NotFound,
         .reason = Reason::Silent,
         .lookedAt = VardaDoctor::tr("advertisements, for %1 s")
                         .arg(std::chrono::ceil<std::chrono::seconds>(m_searchTime).count()),
         .text = isKnown
                     ? VardaDoctor::tr("the computer is known here, but it is off or too far away")
                     : VardaDoctor::tr("the computer is not in reach"),
         .remedy = isKnown ? VardaDoctor::tr("Switch it on, choose its Bluetooth mode, and end its "
                                             "connection to a phone.")
                           : remedyFor(Reason::Silent)});
    leave();
}

void VardaDoctorPrivate::onSearchFailed(DeviceSearch::Failure failure)
{
    addFault(Subject::Reach, VardaDoctor::tr("search"),
             {VardaJob::NoBluetooth, failureReason(failure)});
    leave();
}

void VardaDoctorPrivate::connectComputer()
{
    if (m_stopped || !m_computer)
        return;
    if (!isOurs())
        m_connects = true;
    run<VardaJob>(m_computer->connectToComputer(), 1,
                  [this](const JobEnd &end, VardaJob &) { onConnection(end); });
}

void VardaDoctorPrivate::onConnection(const JobEnd &end)
{
    const QString lookedAt = VardaDoctor::tr("attempt to connect");
    if (end.isGood() || end.reason == Reason::NoService || end.reason == Reason::OtherLinkMode)
        addOk(Subject::Connection, lookedAt, VardaDoctor::tr("the computer accepts a connection"));
    if (end.isGood()) {
        addOk(Subject::LinkMode, lookedAt,
              VardaDoctor::tr("it has the kind of link that is wanted"));
        m_system.look([this](const SystemLook &look) {
            if (!m_stopped)
                onLink(look);
        });
        return;
    }
    if (end.reason == Reason::OtherLinkMode) {
        addFault(Subject::LinkMode, VardaDoctor::tr("services of the computer"), end);
    } else if (end.reason == Reason::NoService) {
        m_system.look([this, end](const SystemLook &look) {
            if (!m_stopped)
                onNoService(end, look);
        });
        return;
    } else {
        addFault(Subject::Connection, lookedAt, end);
    }
    leave();
}

void VardaDoctorPrivate::onNoService(const JobEnd &end, const SystemLook &look)
{
    const SystemLook::Device *const device = look.device(m_seen);
    if (device && device->services == 0)
        add({.subject = Subject::ComputerService,
             .state = State::Fault,
             .error = end.error,
             .reason = end.reason,
             .lookedAt = VardaDoctor::tr("services of the computer: none"),
             .text = VardaDoctor::tr("the computer accepts a connection and then says nothing"),
             .remedy = remedyFor(Reason::NoAnswer)});
    else
        addFault(Subject::ComputerService, VardaDoctor::tr("services of the computer"), end);
    leave();
}

void VardaDoctorPrivate::onLink(const SystemLook &look)
{
    const SystemLook::Device *const device = look.device(m_computer->device().address());
    addOk(Subject::ComputerService,
          device ? VardaDoctor::tr("services of the computer: %1").arg(device->services)
                 : VardaDoctor::tr("services of the computer"),
          VardaDoctor::tr("it has the service of a diving computer"));
    lookAtMtu(device && device->mtu > 0 ? device->mtu : m_computer->mtu());
    askComputer();
}

void VardaDoctorPrivate::lookAtMtu(int mtu)
{
    const QString lookedAt = VardaDoctor::tr("MTU of the link");
    const bool isSmall = mtu > 0 && mtu <= kSmallestMtu;
    const QString text = mtu <= 0 ? VardaDoctor::tr("the system does not report it")
                         : isSmall
                             ? VardaDoctor::tr("packets of %1 bytes are too small for some answers")
                             : VardaDoctor::tr("packets of %1 bytes");
    add({.subject = Subject::Mtu,
         .state = mtu <= 0  ? State::Unknown
                  : isSmall ? State::Fault
                            : State::Ok,
         .error = isSmall ? VardaJob::Damaged : VardaJob::NoError,
         .reason = isSmall ? Reason::SmallMtu : Reason::None,
         .lookedAt = lookedAt,
         .text = mtu > 0 ? text.arg(mtu) : text,
         .remedy = isSmall ? remedyFor(Reason::SmallMtu) : QString()});
}

// The computer itself

void VardaDoctorPrivate::askComputer()
{
    using Reply = VardaReply<VardaIdentity>;
    run<Reply>(m_computer->readIdentity(), 3,
               [this](const JobEnd &end, Reply &reply) { onIdentity(end, reply.result()); });
}

void VardaDoctorPrivate::onIdentity(const JobEnd &end, const VardaIdentity &identity)
{
    const QString lookedAt = VardaDoctor::tr("answer to the identification");
    if (end.reason == Reason::OtherSubscriber) {
        addFault(Subject::Subscription, lookedAt, end);
        leave();
        return;
    }
    addOk(Subject::Subscription, lookedAt, VardaDoctor::tr("each answer comes once"));
    if (!end.isGood()) {
        addFault(Subject::Answer, lookedAt, end);
        leave();
        return;
    }
    addOk(Subject::Answer, lookedAt, VardaDoctor::tr("the computer answers"));
    if (identity.mode == CurrentMode::BootLoader) {
        add({.subject = Subject::Mode,
             .state = State::Fault,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("the computer waits in its bootloader for firmware"),
             .remedy = VardaDoctor::tr("Install its firmware.")});
        leave();
        return;
    }
    addOk(Subject::Mode, lookedAt, VardaDoctor::tr("it runs its normal program"));
    using Reply = VardaReply<std::int64_t>;
    run<Reply>(m_computer->readClock(), 3,
               [this](const JobEnd &ended, Reply &reply) { onClock(ended, reply.result()); });
}

void VardaDoctorPrivate::onClock(const JobEnd &end, std::int64_t time)
{
    const QString lookedAt = VardaDoctor::tr("clock of the computer");
    if (!end.isGood()) {
        addFault(Subject::Clock, lookedAt, end);
        leave();
        return;
    }
    const QDateTime now = QDateTime::currentDateTime();
    const std::int64_t late = now.toSecsSinceEpoch() + now.offsetFromUtc() - time;
    if (std::abs(late) > kClockSeconds)
        add({.subject = Subject::Clock,
             .state = State::Warning,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("its clock is wrong by more than two minutes"),
             .remedy = VardaDoctor::tr("Set it. (varda time set)")});
    else
        addOk(Subject::Clock, lookedAt, VardaDoctor::tr("its clock is right"));
    using Reply = VardaReply<QList<SyslogBinRecord>>;
    run<Reply>(m_computer->readBinaryLog(), 1,
               [this](const JobEnd &ended, Reply &reply) { onLog(ended, reply.result()); });
}

/** For information: no computer is ill for its log. */
void VardaDoctorPrivate::onLog(const JobEnd &end, const QList<SyslogBinRecord> &log)
{
    const QString lookedAt = VardaDoctor::tr("system log of the computer");
    const auto last = std::find_if(log.crbegin(), log.crend(), [](const SyslogBinRecord &each) {
        return each.type == kBatteryAtStart || each.type == kBatteryChecked;
    });
    if (!end.isGood() || last == log.crend())
        add({.subject = Subject::Battery,
             .lookedAt = lookedAt,
             .text = VardaDoctor::tr("it has no entry about the battery")});
    else
        addOk(Subject::Battery, lookedAt, convertSyslogRecord(*last, true));
    leave();
}

// The job

VardaDoctor::VardaDoctor(VardaComputer &computer)
    : d(std::make_unique<VardaDoctorPrivate>(*this, computer))
{
    setConnectLimit(kConnectTime);
}

VardaDoctor::~VardaDoctor() = default;

VardaDoctor *VardaDoctor::examine(VardaComputer &computer)
{
    qRegisterMetaType<VardaCheck>();
    qRegisterMetaType<QList<VardaCheck>>();
    return new VardaDoctor(computer);
}

QList<VardaCheck> VardaDoctor::checks() const
{
    return d->checks;
}

VardaCheck VardaDoctor::fault() const
{
    const auto it = std::find_if(d->checks.cbegin(), d->checks.cend(), [](const VardaCheck &each) {
        return each.state == VardaCheck::State::Fault;
    });
    return it == d->checks.cend() ? VardaCheck() : *it;
}

void VardaDoctor::stop(bool atOnce)
{
    d->stop(atOnce);
}
