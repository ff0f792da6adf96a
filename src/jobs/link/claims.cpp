// SPDX-License-Identifier: MIT
#include "jobs/link/claims_p.h"

#include <QtCore/qhash.h>
#include <QtCore/qmutex.h>

#include <deque>

namespace {

// Computers may live on several threads.
QMutex mutex;
QHash<QString, const QObject *> owners;

struct Waiting {
    QObject *who;
    std::function<void()> go;
    bool called = false;
};
std::deque<Waiting> turns;

/** The mutex is held. */
void callFirst()
{
    if (turns.empty() || turns.front().called)
        return;
    turns.front().called = true;
    // Who is deleted meanwhile has released its turn before, and gets no such call.
    QMetaObject::invokeMethod(turns.front().who, turns.front().go, Qt::QueuedConnection);
}

} // namespace

bool Claims::claim(const QString &address, const QObject *owner)
{
    const QMutexLocker lock(&mutex);
    const QObject *const now = owners.value(address);
    if (now && now != owner)
        return false;
    owners.removeIf([owner](const auto &entry) { return entry.value() == owner; });
    owners.insert(address, owner);
    return true;
}

void Claims::release(const QObject *owner)
{
    const QMutexLocker lock(&mutex);
    owners.removeIf([owner](const auto &entry) { return entry.value() == owner; });
}

bool Claims::isOthers(const QString &address, const QObject *owner)
{
    const QMutexLocker lock(&mutex);
    const QObject *const now = owners.value(address);
    return now && now != owner;
}

void ConnectingTurn::ask(QObject *who, std::function<void()> go)
{
    const QMutexLocker lock(&mutex);
    turns.push_back({who, std::move(go)});
    callFirst();
}

void ConnectingTurn::release(const QObject *who)
{
    const QMutexLocker lock(&mutex);
    std::erase_if(turns, [who](const Waiting &each) { return each.who == who; });
    callFirst();
}
