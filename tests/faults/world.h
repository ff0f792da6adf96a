// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qprocess.h>

#include <functional>

#include "bluez/privatebus.h"

/** What a test can do to the other end while a link is up. */
struct Deed {
    enum Kind {
        Notify,        ///< bytes as one notification
        Wait,          ///< ms, on the fast clock
        Drop,          ///< the peripheral ends the link
        AdapterOff,    ///< somebody switches Bluetooth off
        RemoveAdapter, ///< somebody pulls the adapter
        RemoveDevice,  ///< somebody makes the system forget the computer
        Freeze,        ///< the daemon answers nothing for ms
        Kill,          ///< the daemon is gone
        Restart,       ///< the daemon is gone, and back at once with no memory
        Stream,        ///< bytes as notifications, again and again until the case ends
        Load,          ///< bytes as the daemon's scenario
        Call,          ///< what the application does
    };
    Kind kind = Wait;
    QByteArray bytes = {};
    int ms = 0;
    std::function<void()> call = {};
};

/** The nth event of a name (and command, for "frame") from now on, and what is done there. */
struct Moment {
    QString event;
    int command = -1;
    int nth = 1;
    QList<Deed> deeds;
};

/** One request that arrived at the computer, and the notifications that answered it. */
struct Exchange {
    quint8 command = 0;
    QList<QByteArray> notifications;
};

/** A bus with a daemon on it that can be lost and replaced. One in a process. */
class World : public QObject
{
    Q_OBJECT

public:
    /** Before anything that looks at D-Bus. */
    explicit World(QObject *parent = nullptr);
    ~World() override;

    void load(const QByteArray &scenario);
    /** Brings the daemon back if it is gone, and the adapter on; whether a scenario must be loaded */
    bool heal();
    /** Ends all that is still to be done. */
    void forget();
    /** Everything that was sent up to now has arrived. */
    void settle();
    [[nodiscard]] QList<Exchange> exchanges();
    [[nodiscard]] QJsonObject state();

    /** At the nth event of this name (and command, for "frame") from now on, these deeds. */
    void at(const QString &event, int command, int nth, const QList<Deed> &deeds);
    /** Once those are begun, these at a moment from then on. */
    void then(const Moment &moment);
    void perform(const QList<Deed> &deeds);
    /** Whether all deeds are done; a stream is never. */
    [[nodiscard]] bool isDone() const
    {
        return m_struck && m_moments.isEmpty() && m_deeds.isEmpty();
    }

    /** Handles events until @p done, or for so long on the fast clock; whether it was done. */
    static bool wait(const std::function<bool()> &done, int ms);

private Q_SLOTS:
    void onRecorded(const QString &json);

private:
    void startDaemon();
    void killDaemon();
    static void ping();
    void next();
    void doNow(const Deed &deed);

    simulator::PrivateBus m_bus;
    QProcess m_daemon;
    bool m_lost = false;

    QList<Moment> m_moments; ///< still to come, in this order
    bool m_struck = false;
    QList<Deed> m_deeds;
    bool m_waits = false;
    quint64 m_generation = 0;
};
