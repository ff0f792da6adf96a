// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>
#include <QtCore/qset.h>
#include <QtCore/qtimer.h>

#include <functional>
#include <memory>
#include <optional>

#include <varda/bledeviceinfo.h>
#include <varda/blemode.h>
#include <varda/vardasession.h>

#include "jobs/jobend_p.h"
#include "jobs/link/bluetoothwatch_p.h"
#include "jobs/link/linknotes_p.h"
#include "transport/devicesearch_p.h"
#include "transport/linktap_p.h"

[[nodiscard]] bool sameAddress(const BleDeviceInfo &one, const BleDeviceInfo &other);

/**
 * The way to one computer: finds it, connects, tries again, and reports once what became of it.
 *
 * All signals come from the event loop. After close() and giveUp() only closed() comes.
 */
class ComputerLink : public QObject
{
    Q_OBJECT

public:
    enum class State { Down, Searching, Connecting, Up, Closing };
    Q_ENUM(State)

    /** What to connect to, and how hard to try. */
    struct Wish {
        /** Invalid: the first computer found. */
        // GCC wants it where a list of initializers leaves the member out
        BleDeviceInfo device = {}; // NOLINT(readability-redundant-member-init)
        bool onlyOne = false;      ///< without a device: fail if there are several
        int retries = 3;
        bool restores = false;           ///< a link that has just been there
        bool serviceMayComeBack = false; ///< which went with the system's service
    };

    explicit ComputerLink(QObject *parent);
    ~ComputerLink() override;

    void setMode(std::optional<BleMode> mode) { m_mode = mode; }
    /** Sees what happens on a link that is up; nobody() for none. */
    void setObserver(LinkObserver *observer) { m_notes.setObserver(observer); }

    /** Listens in on everything; null for none. Not owned. */
    void setTap(LinkTap *tap);

    void open(const Wish &wish);
    /** Ends the search or the connection; the link if it is up. Reports @p why, or its cause. */
    void close(const JobEnd &why = {});

    /** Whether the system's service is able to send something now. */
    void ping(std::function<void(VardaJob::Reason)> answered) { m_watch.ping(std::move(answered)); }

    [[nodiscard]] State state() const { return m_state; }
    /** The one that is or was connected to last. */
    [[nodiscard]] BleDeviceInfo device() const { return m_device; }
    /** Only while the link is up. */
    [[nodiscard]] VardaSession &session() { return *m_session; }
    [[nodiscard]] int mtu() const;

Q_SIGNALS:
    void stateChanged();
    void opened();
    void failed(const JobEnd &end);
    /** It was up, and nobody here has dropped it. */
    void lost(const JobEnd &end);
    void closed(const JobEnd &why);

private:
    void begin();
    void onBluetoothKnown(VardaJob::Reason reason);
    void search();
    void onSeen(const BleDeviceInfo &device);
    void onSearchFailed(DeviceSearch::Failure failure);
    void choose();
    void connectTo(const BleDeviceInfo &device);
    void makeSession();
    void dropSession();
    void onConnected();
    void onAttemptFailed();
    void onLinkDown();
    void onBluetoothLost(VardaJob::Reason reason);
    void tryAgain(const JobEnd &end, bool hopeless);
    void explain(const JobEnd &end, std::function<void(const JobEnd &)> report);
    void fail(const JobEnd &end);
    void quit();
    void setState(State state);
    void stopTrying();
    void post(std::function<void()> function);

    State m_state = State::Down;
    std::optional<BleMode> m_mode;
    Wish m_wish;
    int m_failures = 0;
    int m_patience = 0; ///< seconds that the service may still take to come back
    BleDeviceInfo m_device;
    QList<BleDeviceInfo> m_candidates;
    bool m_othersSeen = false; ///< a computer that another object of this process has
    std::unique_ptr<VardaSession> m_session;
    LinkNotes m_notes;
    LinkTap *m_tap = nullptr;
    QSet<QString> m_others; ///< seen while looking for the computer, by their addresses
    BluetoothWatch m_watch;
    DeviceSearch m_search;
    QTimer m_timer;
    quint64 m_serial = 0; ///< counts attempts, so that what comes late is known
};
