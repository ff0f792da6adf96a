// SPDX-License-Identifier: MIT
#pragma once

#include "device/computer.h"
#include "device/replay/replay.h"
#include "device/scenario/faults.h"
#include "device/scenario/scenario.h"
#include "device/wire/frame.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qobject.h>
#include <QtCore/qqueue.h>
#include <QtCore/qtimer.h>

#include <functional>

namespace simulator {

/**
 * The radio module between the computer and the air: bytes written by the host become requests,
 * answers become notifications, and whatever a scenario wants to go wrong with them goes wrong.
 */
class SerialLink : public QObject
{
    Q_OBJECT

public:
    SerialLink(const DeviceScenario &scenario, FaultPlan &faults, QObject *parent = nullptr);

    void written(const QByteArray &bytes);
    void creditsGranted(const QByteArray &bytes);
    /** The link is new or gone: nothing that was under way is sent any more. */
    void reset();
    /** What the link carries, where that is less than the scenario's. */
    void setLinkMtu(int mtu);

    const Computer &computer() const { return m_computer; }

Q_SIGNALS:
    void notification(const QByteArray &bytes);
    void linkDropped();
    /** Something happens to more than this link. */
    void calamity(const simulator::Fault &fault);
    void credits(const QString &event, int granted, qsizetype waiting);

private:
    struct Chunk {
        QByteArray bytes;
        quint8 command = 0;
        bool heldBack = false; ///< its turn came before, its fault is spent
    };

    void handle(const Frame &request);
    void replay(const QByteArray &request);
    QList<QByteArray> answerTo(const Frame &request, const std::optional<Fault> &fault);
    QList<QByteArray> cut(const QList<QByteArray> &frames) const;
    void send(quint8 command, const QList<QByteArray> &notifications);
    void pump();
    bool sendFirst();
    bool holdUp(const Fault &fault, const Chunk &chunk);
    void repeatEndlessly();
    void later(int ms, const std::function<void()> &what);
    void schedule(double ms, const std::function<void()> &what);
    void runDue();

    const DeviceScenario m_scenario;
    FaultPlan &m_faults;
    Computer m_computer;
    FrameAssembler m_assembler;
    QQueue<Chunk> m_queue;
    QTimer m_pause;
    QList<Chunk> m_endless; ///< sent again and again, until the link ends
    QTimer m_repetition;
    int m_mtu;
    int m_sentInPace = 0;
    int m_credits = 0;
    bool m_toldExhausted = false;
    quint64 m_generation = 0;

    // Of a replay: what happens when, in this order
    struct Planned {
        qint64 due;
        std::function<void()> what;
    };
    QList<Planned> m_planned;
    QElapsedTimer m_replayClock;
    QTimer m_replayTimer;
};

} // namespace simulator
