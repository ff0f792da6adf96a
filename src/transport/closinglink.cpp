// SPDX-License-Identifier: MIT
#include "transport/closinglink_p.h"

#include <QtBluetooth/qbluetoothaddress.h>
#include <QtBluetooth/qbluetoothuuid.h>
#include <QtCore/qcoreapplication.h>
#include <QtCore/qlist.h>
#include <QtCore/qthread.h>
#include <QtCore/qtimer.h>

#include <algorithm>

namespace {

/** Those of this thread, the youngest last. */
thread_local QList<ClosingLink *> closingLinks;

} // namespace

void ClosingLink::close(QLowEnergyController *controller)
{
    if (controller->state() != QLowEnergyController::UnconnectedState) {
        new ClosingLink(controller);
        return;
    }
    // Not a child any more: it may be in the middle of a signal when its owner is deleted.
    controller->setParent(nullptr);
    controller->deleteLater();
}

ClosingLink *ClosingLink::sameComputer(const QLowEnergyController *controller)
{
    const auto same = [controller](const ClosingLink *link) {
        // macOS and iOS tell no address but a UUID.
        return link->m_controller->remoteAddress() == controller->remoteAddress()
               && link->m_controller->remoteDeviceUuid() == controller->remoteDeviceUuid();
    };
    const auto it = std::find_if(closingLinks.crbegin(), closingLinks.crend(), same);
    return it == closingLinks.crend() ? nullptr : *it;
}

ClosingLink::ClosingLink(QLowEnergyController *controller) : m_controller(controller)
{
    // A child of the application, so that it ends with it when there is no event loop any more.
    if (auto *const application = QCoreApplication::instance();
        application && application->thread() == thread())
        setParent(application);
    controller->setParent(this);
    closingLinks.append(this);

    connect(controller, &QLowEnergyController::stateChanged, this,
            [this](QLowEnergyController::ControllerState state) {
                if (state == QLowEnergyController::UnconnectedState)
                    finish();
            });
    QTimer::singleShot(kLongestWaitMs, this, &ClosingLink::finish);
    if (controller->state() != QLowEnergyController::ClosingState)
        controller->disconnectFromDevice();
}

ClosingLink::~ClosingLink()
{
    closingLinks.removeOne(this);
}

void ClosingLink::finish()
{
    if (!closingLinks.removeOne(this))
        return;
    deleteLater();
    Q_EMIT closed();
}
