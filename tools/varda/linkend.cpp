// SPDX-License-Identifier: MIT
#include "linkend.h"

#include "servicewatch.h"

#include <QtBluetooth/qlowenergycontroller.h>
#include <QtCore/qcoreevent.h>
#include <QtCore/qeventloop.h>
#include <QtCore/qtimer.h>

#include <algorithm>

namespace {

bool isLink(const QObject *part)
{
    const auto *const controller = qobject_cast<const QLowEnergyController *>(part);
    return controller && controller->state() != QLowEnergyController::UnconnectedState;
}

} // namespace

LinkEnd::LinkEnd(QObject *session) : m_session(session)
{
    session->installEventFilter(this);
}

// A session makes its devices, and they make their controllers, whenever it connects; a child that
// is added is no more than a QObject yet.
bool LinkEnd::eventFilter(QObject *parent, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded) {
        QObject *const child = static_cast<QChildEvent *>(event)->child();
        if (parent == m_session)
            child->installEventFilter(this);
        else
            m_parts.append(child);
    }
    return false;
}

bool LinkEnd::isDown() const
{
    return std::none_of(m_parts.cbegin(), m_parts.cend(),
                        [](const QPointer<QObject> &part) { return isLink(part); });
}

void LinkEnd::wait(std::chrono::milliseconds longest)
{
    const ServiceWatch *const service = ServiceWatch::instance();
    if (isDown() || (service && service->hasEnded()))
        return;
    QEventLoop loop;
    const auto look = [this, &loop] {
        if (isDown())
            loop.quit();
    };
    for (const QPointer<QObject> &part : std::as_const(m_parts)) {
        if (!isLink(part))
            continue;
        const auto *const controller = qobject_cast<QLowEnergyController *>(part);
        connect(controller, &QLowEnergyController::stateChanged, &loop, look);
        connect(controller, &QObject::destroyed, &loop, look, Qt::QueuedConnection);
    }
    if (service)
        connect(service, &ServiceWatch::ended, &loop, &QEventLoop::quit);
    QTimer::singleShot(longest, &loop, &QEventLoop::quit);
    loop.exec();
}
