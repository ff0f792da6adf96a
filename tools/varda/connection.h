// SPDX-License-Identifier: MIT
#pragma once

#include "answercheck.h"
#include "failure.h"
#include "finding.h"
#include "linkend.h"
#include "options.h"

#include <varda/bledeviceinfo.h>
#include <varda/tidemarcommand.h>
#include <varda/vardasession.h>

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>

#include <chrono>
#include <functional>
#include <optional>

class BleDevice;
class Step;

/** One job on a computer. */
struct Job {
    QString name;                         ///< "owner": it is read, or whatever the verb says
    TidemarCommand::TidemarCommandIn end; ///< the command whose end is the job's
    std::function<void(VardaSession &)> start;
    QString verb = QStringLiteral("Reading the");
    std::chrono::minutes limit{5}; ///< whatever it still sends
    /** Called while the answer comes in, not too often; it may show the status. */
    std::function<void()> progress = nullptr;
};

/**
 * The link to one computer, up as long as this lives. Every wait on it has a deadline, since the
 * library is silent about an answer that is no answer, and Bluetooth about a daemon that has died.
 */
class Connection : public QObject
{
    Q_OBJECT

public:
    /** Finds the computer and connects to it. @throws Failure */
    explicit Connection(const Options &options, Purpose purpose = Purpose::Reading);
    ~Connection() override;
    Q_DISABLE_COPY_MOVE(Connection)

    /** Runs a job to its end. @throws Failure, and the link is down after some of them */
    void run(const Job &job);
    /**
     * Runs a job whose end the library does not tell, and waits a moment for the answer.
     *
     * @return whether there was one
     */
    bool tell(const Job &job);
    /** Runs a job that ends the link. */
    void runLast(const Job &job);
    /** A job without arguments. */
    void read(TidemarCommand::TidemarCommandIn command, const QString &name);
    /**
     * A job to do without where the link cuts its answer: then there is a message.
     *
     * @return whether it was done
     */
    bool readIfWhole(TidemarCommand::TidemarCommandIn command, const QString &name);

    /** What has been read, so far. */
    [[nodiscard]] const VardaSession &session() const { return m_session; }
    [[nodiscard]] BleDeviceInfo device() const { return m_session.lastDevice(); }
    /** The line above the result where something was written: into which computer. */
    [[nodiscard]] QString heading() const;
    [[nodiscard]] QString computerName() const;
    /** The link's; not above 0 where it is not known. */
    [[nodiscard]] int mtu() const;
    /** Bytes received by the job that runs or ran last. */
    [[nodiscard]] qint64 received() const { return m_received; }
    /** Whether another job makes sense after one that has failed. */
    [[nodiscard]] bool isUsable() const { return !m_linkFailure; }

private:
    void watchSession();
    void open(const Options &options, Purpose purpose);
    bool connectInOtherMode();
    void onMessage();
    void onCreateStatus(CreateControllerStatus::CreateControllerStatusIn status);
    void onConnectStatus(ConnectControllerStatus::ConnectControllerStatusIn status);
    void onJobEnded(TidemarCommand::TidemarCommandIn command);
    void onRefused(ExchangeError::ExchangeErrorIn error);
    void onLinkDown();
    void onNotification(const QByteArray &data);
    void start(const Job &job, Step &step);
    void stop();
    void runOnce(const Job &job);
    void blameJobBefore();
    void judge();
    void onSilence();
    [[nodiscard]] bool isAnswerUsable() const;
    [[nodiscard]] Failure answerFailure() const;
    [[nodiscard]] Failure comesMoreThanOnce() const;
    void failJob();
    void fail(const Failure &failure);
    void letGo();
    [[nodiscard]] Failure notConnected() const;
    [[nodiscard]] Failure noAnswer() const;

    std::optional<BleMode> m_otherMode; ///< to connect in if the computer has not the first one
    QPointer<BleDevice> m_link;
    Step *m_step = nullptr; ///< the one that is waited for
    std::optional<Failure> m_linkFailure;
    const Job *m_job = nullptr; ///< the one that runs
    QString m_jobName;
    enum class Ending { EndCommand, AnyAnswer, LinkDown } m_ending = Ending::EndCommand;
    QElapsedTimer m_sinceProgress;
    bool m_silent = false; ///< the library has waited in vain for an answer
    qint64 m_received = 0;
    AnswerCheck m_answer{TidemarCommand::Sync};
    bool m_over = false; ///< the session has ended the job
    QTimer m_quiet;      ///< fires when the session takes what there is
    QTimer m_silence;    ///< fires when nothing more of an answer is to be expected
    QTimer m_moment;     ///< fires when the second copy of a last notification would have come
    bool m_refusedWrite = false;
    VardaSession m_session; // last: what it still has to say finds the rest in place
    LinkEnd m_linkEnd{&m_session};
};
