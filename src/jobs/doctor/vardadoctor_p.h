// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>

#include <chrono>
#include <functional>
#include <optional>

#include <varda/vardacomputer.h>
#include <varda/vardadoctor.h>

#include "jobs/doctor/systemlook_p.h"
#include "jobs/jobend_p.h"
#include "transport/devicesearch_p.h"

/**
 * One look after the other, each in the order of VardaCheck::Subject. A fault that leaves nothing to
 * look at behind it ends the examination.
 */
class VardaDoctorPrivate : public QObject
{
    Q_OBJECT

public:
    VardaDoctorPrivate(VardaDoctor &doctor, VardaComputer &examined);
    ~VardaDoctorPrivate() override;
    Q_DISABLE_COPY_MOVE(VardaDoctorPrivate)

    void stop(bool atOnce);

    QList<VardaCheck> checks;

private:
    using Subject = VardaCheck::Subject;
    using State = VardaCheck::State;

    void begin();
    [[nodiscard]] bool lookAtQt();
#ifndef VARDA_HAS_DBUS
    [[nodiscard]] bool lookAtPermission();
#endif
    void onSystem(const SystemLook &look);
    [[nodiscard]] bool lookAtService(const SystemLook &look);
    void onVersion(const QVersionNumber &version);
    [[nodiscard]] bool lookAtAdapters(const SystemLook &look);
    void lookAtOtherProgram();
    void searchComputer();
    void onSeen(const BleDeviceInfo &device);
    void onNotSeen();
    void onSearchFailed(DeviceSearch::Failure failure);
    void connectComputer();
    void onConnection(const JobEnd &end);
    void onNoService(const JobEnd &end, const SystemLook &look);
    void onLink(const SystemLook &look);
    void lookAtMtu(int mtu);
    void askComputer();
    void onIdentity(const JobEnd &end, const VardaIdentity &identity);
    void onClock(const JobEnd &end, std::int64_t time);
    void onLog(const JobEnd &end, const QList<SyslogBinRecord> &log);

    /** Whether the computer is linked to this program, by what it is examined with. */
    [[nodiscard]] bool isOurs() const;
    /** The one that is looked for, as the system has it; null if it does not. */
    [[nodiscard]] const SystemLook::Device *known() const;
    [[nodiscard]] bool isWanted(const QString &address, const QString &name) const;

    void add(const VardaCheck &check);
    void addOk(Subject subject, const QString &lookedAt, const QString &text);
    /** The words are those of the reason. */
    void addFault(Subject subject, const QString &lookedAt, const JobEnd &end);
    void skipTo(int subject);
    void append(const VardaCheck &check);
    /** There is nothing more to look at: lets go what it has taken, and ends. */
    void leave();
    void end();
    /** Runs a job of the computer within the limits of this one; then @p ended, unless it was this one that was cancelled. */
    template <typename Job>
    void run(Job *job, int retries, std::function<void(const JobEnd &, Job &)> ended);

    VardaDoctor &q;
    QPointer<VardaComputer> m_computer;
    SystemView m_system;
    DeviceSearch m_search;
    std::chrono::milliseconds m_searchTime{};
    SystemLook m_look; ///< before the computer was connected
    QString m_seen;    ///< address of the computer that is on the air
    QPointer<VardaJob> m_job;
    QString m_asked;         ///< name of the last job
    bool m_connects = false; ///< the link is this one's, so it drops it
    bool m_stopped = false;
};
