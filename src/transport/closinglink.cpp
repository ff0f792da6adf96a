// SPDX-License-Identifier: MIT
#include "transport/closinglink_p.h"

#include <QtBluetooth/qbluetoothaddress.h>
#include <QtBluetooth/qbluetoothuuid.h>
#include <QtCore/qtimer.h>

#include "transport/deletelater_p.h"

namespace {

/** Those of this thread, a chain from the youngest on. */
thread_local ClosingLink *youngest = nullptr;

} // namespace

void ClosingLink::close(QLowEnergyController *controller)
{
    if (controller->state() == QLowEnergyController::UnconnectedState) {
        DeleteLater()(controller);
        return;
    }
    // Not its owner's child any more: it may be in the middle of a signal when that is deleted.
    controller->setParent(watch(controller));
    if (controller->state() != QLowEnergyController::ClosingState)
        controller->disconnectFromDevice();
}

ClosingLink *ClosingLink::watch(QLowEnergyController *controller)
{
    ClosingLink *link = youngest;
    while (link && link->m_controller != controller)
        link = link->m_older;
    return link ? link : new ClosingLink(controller);
}

ClosingLink *ClosingLink::sameComputer(const QLowEnergyController *controller)
{
    ClosingLink *link = youngest;
    // macOS and iOS tell no address but a UUID.
    while (link
           && (link->m_controller->remoteAddress() != controller->remoteAddress()
               || link->m_controller->remoteDeviceUuid() != controller->remoteDeviceUuid()))
        link = link->m_older;
    return link;
}

ClosingLink *ClosingLink::toDevice(const QBluetoothDeviceInfo &device)
{
    ClosingLink *link = youngest;
    while (link
           && (link->m_controller->remoteAddress() != device.address()
               || link->m_controller->remoteDeviceUuid() != device.deviceUuid()))
        link = link->m_older;
    return link;
}

// Without a parent: where the event loop has ended already, the process is about to, and the
// system closes the link by itself.
ClosingLink::ClosingLink(QLowEnergyController *controller)
    : m_controller(controller), m_older(youngest)
{
    youngest = this;
    connect(controller, &QLowEnergyController::stateChanged, this,
            [this](QLowEnergyController::ControllerState state) {
                if (state == QLowEnergyController::UnconnectedState)
                    finish();
            });
    QTimer::singleShot(kLongestWaitMs, this, &ClosingLink::finish);
}

void ClosingLink::finish()
{
    ClosingLink **link = &youngest;
    while (*link && *link != this)
        link = &(*link)->m_older;
    if (!*link)
        return;
    *link = m_older;
    DeleteLater()(this);
    Q_EMIT closed();
}
