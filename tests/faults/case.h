// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

#include <memory>
#include <optional>

#include <varda/bledeviceinfo.h>
#include <varda/blemode.h>

#include "expectation.h"
#include "jobs.h"
#include "signallog.h"
#include "world.h"

/** One job on one computer over one kind of link. */
struct Setting {
    QString model;
    BleMode mode = BleMode::Gatt;
    const Job *job = nullptr;

    [[nodiscard]] QString name() const;
    [[nodiscard]] bool ofJobs() const { return bool(job->computer.ask); }
    /** As the simulated computer is called and found. */
    [[nodiscard]] BleDeviceInfo device() const;
    /** The scenario of such a computer, with these further keys and faults. */
    [[nodiscard]] QByteArray scenario(const QByteArray &keys, const QByteArray &faults) const;
};

/** What such a job looks like when all is well. */
struct Healthy {
    QList<Exchange> exchanges;
    QByteArray digest;
    Report report; ///< of a job of the other layer
    QString owner;
};

struct Case {
    enum Stage { BeforeConnection, Connection, BetweenJobs, DuringJob };

    QString name; ///< place and kind
    Stage stage = DuringJob;
    bool scan = false; ///< the road to the computer
    QByteArray device; ///< further keys of the device
    QByteArray faults; ///< of the simulator
    QString event;     ///< the deeds are done at the nth of these
    int command = -1;
    int nth = 1;
    QList<Deed> deeds;
    Expectation expected;  ///< from the begin of the stage on
    int patience = 7000;   ///< how long an application waits for a sign, in ms
    bool newWorld = false; ///< nothing of it can be used afterwards

    // What the layer of jobs makes of it.
    QString kind;                           ///< of the fault
    int request = -1;                       ///< that it is at; -1: none
    std::optional<QList<Arrival>> arrivals; ///< all that answers this request
    bool retries = true;
    bool isSecond = false;      ///< a fault in the recovery from another
    bool isOwnDeed = false;     ///< what the application does, not the other end
    std::optional<Moment> then; ///< a second one, once the first has struck

    /** The fault comes over a link that is up. */
    [[nodiscard]] bool isLinked() const { return stage == BetweenJobs || stage == DuringJob; }
};

/** Runs the cases of one setting. */
class CaseRunner
{
public:
    CaseRunner(World &world, const Setting &setting);

    /** The same as every time, or what is wrong with it. */
    [[nodiscard]] std::optional<Healthy> healthy(QString *error);
    /** What is wrong; empty if nothing is. */
    [[nodiscard]] QStringList run(const Case &each, const Healthy &healthy, bool watched);

private:
    void load(const QByteArray &device = {}, const QByteArray &faults = {});
    void connectTo(VardaSession &session, bool scan) const;
    [[nodiscard]] bool connectAndPrepare(VardaSession &session, SignalLog &log, bool scan);
    [[nodiscard]] QStringList runFaulty(const Case &each, VardaSession &session, SignalLog &log,
                                        bool watched);
    [[nodiscard]] bool awaitOutcome(const Case &each, const SignalLog &log, bool watched) const;
    [[nodiscard]] QStringList letGo(VardaSession &session, SignalLog &log, After after) const;
    [[nodiscard]] QStringList recover(const Case &each, const Healthy &healthy);

    World &m_world;
    const Setting m_setting;
    After m_after = After::Up;
};
