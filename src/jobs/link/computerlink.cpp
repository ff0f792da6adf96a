// SPDX-License-Identifier: MIT
#include "jobs/link/computerlink_p.h"

#include <algorithm>
#include <chrono>

#include "jobs/link/claims_p.h"
#include "logging_p.h"
#include "session/sessiondoor_p.h"
#include "transport/closinglink_p.h"

using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

/** A computer that accepts the link and then says nothing is given up by the system after 30 s. */
constexpr auto kAttemptTime = 31s;
constexpr auto kFirstPause = 1s;
constexpr int kMostDoublings = 2; // 1, 2, 4 s
constexpr int kServicePatience = 15;

std::chrono::seconds pauseAfter(int failures)
{
    return kFirstPause * (1 << std::min(failures - 1, kMostDoublings));
}

} // namespace

bool sameAddress(const BleDeviceInfo &one, const BleDeviceInfo &other)
{
    return one.address().compare(other.address(), Qt::CaseInsensitive) == 0;
}

ComputerLink::ComputerLink(QObject *parent)
    : QObject(parent), m_watch(this), m_search(this), m_timer(this)
{
    m_timer.setSingleShot(true);
    connect(&m_watch, &BluetoothWatch::lost, this, &ComputerLink::onBluetoothLost);
    connect(&m_watch, &BluetoothWatch::back, this, [this] {
        if (m_patience > 0)
            begin();
    });
    connect(&m_search, &DeviceSearch::seen, this, &ComputerLink::onSeen);
    connect(&m_search, &DeviceSearch::finished, this, [this] { post([this] { choose(); }); });
    connect(&m_search, &DeviceSearch::failed, this, [this](DeviceSearch::Failure failure) {
        post([this, failure] { onSearchFailed(failure); });
    });
}

ComputerLink::~ComputerLink()
{
    stopTrying();
    dropSession();
    Claims::release(this);
}

/** From the event loop, unless the attempt that it belongs to is over by then. */
void ComputerLink::post(std::function<void()> function)
{
    QMetaObject::invokeMethod(
        this,
        [this, serial = m_serial, function = std::move(function)] {
            if (serial == m_serial)
                function();
        },
        Qt::QueuedConnection);
}

/** What fails may be the first sign of an adapter that was switched off. */
void ComputerLink::explain(const JobEnd &end, std::function<void(const JobEnd &)> report)
{
    m_watch.findOut([end, report = std::move(report)](Reason reason) {
        report(reason == Reason::None ? end : JobEnd{VardaJob::NoBluetooth, reason});
    });
}

void ComputerLink::setState(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}

int ComputerLink::mtu() const
{
    return m_state == State::Up ? SessionDoor(*m_session).mtu() : 0;
}

void ComputerLink::setTap(LinkTap *tap)
{
    m_tap = tap;
    if (m_session)
        SessionDoor(*m_session).listen(tap);
}

void ComputerLink::open(const Wish &wish)
{
    m_wish = wish;
    m_failures = 0;
    m_patience = wish.serviceMayComeBack ? kServicePatience : 0;
    begin();
}

void ComputerLink::stopTrying()
{
    ++m_serial;
    m_watch.forget();
    m_search.stop();
    m_timer.stop();
    m_timer.disconnect(this);
    ConnectingTurn::release(this);
}

void ComputerLink::begin()
{
    stopTrying();
    setState(State::Searching);
    m_watch.check([this](Reason reason) { onBluetoothKnown(reason); });
}

void ComputerLink::onBluetoothKnown(Reason reason)
{
    if (reason == Reason::None) {
        if (m_tap)
            m_tap->serviceKnown(m_watch.service());
        search();
        return;
    }
    if (m_tap)
        m_tap->bluetoothFailed(int(reason));
    // The service has its name before it has its adapter, and the adapter before it is on.
    if (m_patience > 0 && reason != Reason::PermissionDenied) {
        --m_patience;
        connect(&m_timer, &QTimer::timeout, this, &ComputerLink::begin);
        m_timer.start(1s);
        return;
    }
    fail({VardaJob::NoBluetooth, reason});
}

void ComputerLink::connectTo(const BleDeviceInfo &device)
{
    if (!Claims::claim(device.address(), this)) {
        if (m_wish.device.isValid())
            fail({VardaJob::InUse, Reason::OtherComputer});
        else
            begin(); // somebody has just taken it, so the next search leaves it out
        return;
    }
    // Nothing of the last computer may be taken for this one's.
    if (m_session && !sameAddress(device, m_device))
        dropSession();
    m_device = device;
    if (!m_session)
        makeSession();
    m_notes.clear();
    setState(State::Connecting);
    ConnectingTurn::ask(this, [this, serial = m_serial] {
        if (serial != m_serial)
            return;
        connect(&m_timer, &QTimer::timeout, this, &ComputerLink::onAttemptFailed);
        m_timer.start(kAttemptTime);
        SessionDoor door(*m_session);
        door.liftLimits(!m_mode);
        door.observe(&m_notes);
        m_session->connectTo(m_device, m_mode.value_or(BleMode::Gatt));
    });
}

void ComputerLink::makeSession()
{
    m_session = std::make_unique<VardaSession>();
    SessionDoor(*m_session).listen(m_tap);
    connect(m_session.get(), &VardaSession::createControllerStatus, this,
            [this](CreateControllerStatus::CreateControllerStatusIn status) {
                if (status != CreateControllerStatus::Created)
                    post([this] { onLinkDown(); });
            });
    connect(m_session.get(), &VardaSession::connectControllerStatus, this,
            [this](ConnectControllerStatus::ConnectControllerStatusIn status) {
                if (status == ConnectControllerStatus::Connected)
                    post([this] { onConnected(); });
                else
                    post([this] { onLinkDown(); });
            });
    connect(m_session.get(), &VardaSession::disconnectController, this,
            [this] { post([this] { onLinkDown(); }); });
}

void ComputerLink::dropSession()
{
    if (!m_session)
        return;
    SessionDoor(*m_session).observe(LinkObserver::nobody());
    m_session->disconnect(this);
    m_session->controllerDisconnect();
    SessionDoor(*m_session).listen(nullptr);
    // One of its slots may be what leads here.
    DeleteLater()(m_session.release());
}

void ComputerLink::onConnected()
{
    stopTrying();
    setState(State::Up);
    Q_EMIT opened();
}

void ComputerLink::onAttemptFailed()
{
    const JobEnd end = m_notes.attemptEnd(m_mode);
    const bool hopeless = end.reason == Reason::OtherLinkMode
                          || (end.reason == Reason::NoService && m_notes.hasServices());
    m_session->controllerDisconnect();
    tryAgain(end, hopeless);
}

void ComputerLink::tryAgain(const JobEnd &end, bool hopeless)
{
    stopTrying();
    if (hopeless || m_failures >= m_wish.retries) {
        explain(end, [this](const JobEnd &known) { fail(known); });
        return;
    }
    ++m_failures;
    qCInfo(lcSession) << "connection failed, trying again after" << pauseAfter(m_failures).count()
                      << "s";
    connect(&m_timer, &QTimer::timeout, this, &ComputerLink::begin);
    m_timer.start(pauseAfter(m_failures));
}

void ComputerLink::onLinkDown()
{
    if (m_state == State::Connecting) {
        onAttemptFailed();
    } else if (m_state == State::Up) {
        explain(m_notes.lossEnd(), [this](const JobEnd &known) {
            quit();
            Q_EMIT lost(known);
        });
    }
}

void ComputerLink::onBluetoothLost(Reason reason)
{
    const JobEnd end{VardaJob::NoBluetooth, reason};
    if (m_tap && m_state != State::Down && m_state != State::Closing)
        m_tap->bluetoothFailed(int(reason));
    switch (m_state) {
    case State::Down:
    case State::Closing:
        return;
    case State::Up:
        m_session->controllerDisconnect();
        quit();
        Q_EMIT lost(end);
        return;
    case State::Searching:
    case State::Connecting:
        if (m_state == State::Connecting)
            m_session->controllerDisconnect();
        stopTrying();
        if (m_wish.restores && reason == Reason::ServiceGone)
            m_patience = kServicePatience;
        if (m_patience > 0)
            onBluetoothKnown(reason);
        else
            fail(end);
        return;
    }
}

void ComputerLink::fail(const JobEnd &end)
{
    quit();
    Q_EMIT failed(end);
}

/** Down, whatever was tried. The system may still be closing the link: the next one waits for it. */
void ComputerLink::quit()
{
    stopTrying();
    m_patience = 0;
    Claims::release(this);
    setState(State::Down);
}

void ComputerLink::close(const JobEnd &why)
{
    const bool used = m_state == State::Connecting || m_state == State::Up;
    if (m_state == State::Closing)
        return;
    stopTrying();
    m_patience = 0;
    if (used)
        m_session->controllerDisconnect();
    ++m_serial; // what the session has just said is known
    setState(State::Closing);
    const auto end = [this, why] {
        const auto report = [this](const JobEnd &known) {
            quit();
            Q_EMIT closed(known);
        };
        if (why.error == VardaJob::TimedOut)
            explain(why, report);
        else
            report(why);
    };
    if (const ClosingLink *const closing = m_device.isValid()
                                               ? ClosingLink::toDevice(m_device.deviceInfo())
                                               : nullptr)
        connect(closing, &ClosingLink::closed, this, [this, end] { post(end); });
    else
        post(end);
}
