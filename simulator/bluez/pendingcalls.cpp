// SPDX-License-Identifier: MIT
#include "bluez/pendingcalls.h"

#include <QtCore/qtimer.h>

#include <algorithm>
#include <utility>

namespace simulator {

PendingCalls::PendingCalls(const QDBusConnection &bus, const Strike &strike)
    : m_bus(bus), m_strike(strike)
{
}

void PendingCalls::reply(const QDBusMessage &call, const QVariant &value)
{
    if (call.isReplyRequired())
        m_bus.send(value.isValid() ? call.createReply(value) : call.createReply());
}

void PendingCalls::refuse(const QDBusMessage &call, const QString &error, const QString &message)
{
    if (call.isReplyRequired())
        m_bus.send(call.createErrorReply(error, message));
}

bool PendingCalls::isWaiting(const QString &member) const
{
    return std::ranges::any_of(
        m_waiting, [&member](const Waiting &each) { return each.call.member() == member; });
}

void PendingCalls::failAll(const QString &message, const QString &error)
{
    const QList<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting &each : waiting)
        refuse(each.call, error, message);
}

void PendingCalls::withFault(const std::optional<Fault> &fault, const QDBusMessage &call,
                             const std::function<void()> &rest)
{
    if (!fault || fault->kind == FaultKind::Freeze) {
        strikes(fault);
        rest();
        return;
    }
    const quint64 id = hold(call);
    if (strikes(fault))
        return;
    switch (fault->kind) {
    case FaultKind::Silent:
        break;
    case FaultKind::Drop:
        dropLater(fault->ms);
        break;
    case FaultKind::Refuse:
        later(fault->ms, [this, id, call, fault] {
            if (release(id))
                refuse(call, fault->errorName, fault->errorMessage);
        });
        break;
    default:
        later(fault->ms, [this, id, rest] {
            if (release(id))
                rest();
        });
        break;
    }
}

// Whether that was the end of the step.
bool PendingCalls::strikes(const std::optional<Fault> &fault)
{
    if (!fault || !isCalamity(fault->kind))
        return false;
    m_strike(*fault);
    return fault->kind != FaultKind::Freeze;
}

void PendingCalls::later(int ms, const std::function<void()> &what)
{
    if (ms == 0) {
        what();
        return;
    }
    QTimer::singleShot(ms, this, [this, generation = m_generation, what] {
        if (generation == m_generation)
            what();
    });
}

void PendingCalls::dropLater(int ms)
{
    later(ms, [this] { Q_EMIT linkDropped(); });
}

quint64 PendingCalls::hold(const QDBusMessage &call)
{
    m_waiting.append({++m_lastWaiting, call});
    return m_lastWaiting;
}

bool PendingCalls::release(quint64 id)
{
    return m_waiting.removeIf([id](const Waiting &each) { return each.id == id; }) > 0;
}

} // namespace simulator
