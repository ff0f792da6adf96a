// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstringlist.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include <varda/batteryinforecord.h>
#include <varda/bledeviceinfo.h>
#include <varda/blemode.h>
#include <varda/deletedivesresult.h>
#include <varda/divesample.h>
#include <varda/downloadjob.h>
#include <varda/firmwarejob.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/searchjob.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaconfiguration.h>
#include <varda/vardagastables.h>
#include <varda/vardaidentity.h>
#include <varda/vardajob.h>
#include <varda/vardareply.h>
#include <varda/vardasensors.h>
#include <varda/vardatissues.h>
#include <varda/vardatrace.h>

class VardaComputerPrivate;

/**
 * A diving computer with a queue of jobs. Every call makes a job, which waits for its turn,
 * connects if need be, and ends once. No call returns null; a job that cannot run gives the reason.
 *
 * If no device is set, a job that reads takes the first computer found. A job that writes keeps
 * looking for 3 s after the first one, and ends with Ambiguous if there are more.
 *
 * Use it on the thread that made it; to move it, call moveToThread() before the first job. Use only
 * one for each device: the jobs of a second one end with InUse until the first has disconnected.
 */
class VARDA_EXPORT VardaComputer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(BleDeviceInfo device READ device WRITE setDevice NOTIFY deviceChanged)
    Q_PROPERTY(VardaJob *currentJob READ currentJob NOTIFY currentJobChanged)

public:
    enum State {
        Unconnected,
        Searching,
        Connecting,
        Connected,
        Settling,      ///< the answer to a cancelled or deleted job is still under way
        Disconnecting, ///< until the system has ended the link, 5 s at most
    };
    Q_ENUM(State)

    explicit VardaComputer(QObject *parent = nullptr);
    /** Jobs that are left end afterwards, from the event loop, with Cancelled. */
    ~VardaComputer() override;

    [[nodiscard]] State state() const;
    /** The device that was set; if none was set, the one that was found, once it is connected. */
    [[nodiscard]] BleDeviceInfo device() const;
    /**
     * Sets the device for all later jobs. If its address is another one, all jobs and the link end
     * as with disconnectFromComputer(). After an invalid device the next job searches again.
     */
    void setDevice(const BleDeviceInfo &device);
    /** Insists on a kind of link. By default the services decide. */
    void setLinkMode(std::optional<BleMode> mode);
    /** Drops the link this long after the last job; 0: at once; negative (the default): never. */
    void setLinger(std::chrono::milliseconds time);
    /**
     * Writes down everything from now on, as docs/traces.md describes it; null ends that. A device
     * that does not take what is written ends it too, with traceFailed().
     *
     * @param device  open for writing; not owned, may be deleted first
     */
    void setTrace(QIODevice *device, VardaTrace::Content content = VardaTrace::Redacted);

    /** The link's MTU in bytes; 0 without a link, or if the system does not report it. */
    [[nodiscard]] int mtu() const;
    /** What the connected computer is; empty until it has been asked. */
    [[nodiscard]] VardaIdentity identity() const;
    [[nodiscard]] VardaJob *currentJob() const;
    [[nodiscard]] QList<VardaJob *> waitingJobs() const;
    /** Whether a device with this advertised name is a computer. */
    [[nodiscard]] static bool isComputerName(const QString &name);

    // Jobs on the link itself

    /** Lists the computers in reach as they are found; does not wait in the queue. */
    SearchJob *search(std::chrono::seconds time = std::chrono::seconds(10),
                      bool allDevices = false);
    /** Connects before there is work; value() is invalid. */
    VardaJob *connectToComputer();
    /** The same before work that writes; with no device set, there must be only one computer. */
    VardaJob *connectToOnlyComputer();
    /**
     * Ends all running and waiting jobs with Cancelled, in their order, and itself when the link is
     * down. Jobs that you ask for afterwards, also in slots of those jobs, connect again.
     */
    VardaJob *disconnectFromComputer();

    // Jobs that read

    VardaReply<VardaIdentity> *readIdentity();
    /** @param basic  without the extended section, which old firmware does not know */
    VardaReply<VardaConfiguration> *readConfiguration(bool basic = false);
    VardaReply<VardaGasTables> *readGasTables();
    VardaReply<QString> *readOwner();
    /** The computer's clock in seconds since 1970, as if it showed UTC. */
    VardaReply<std::int64_t> *readClock();
    VardaReply<VardaSensors> *readSensors();
    VardaReply<VardaTissues> *readTissues();
    /** The text log, one entry per line; only what this job has read. */
    VardaReply<QStringList> *readLog();
    VardaReply<QList<SyslogBinRecord>> *readBinaryLog();
    VardaReply<QList<BatteryInfoRecord>> *readBatteryHistory();
    /** Headers of all dives but @p known, a list of any length; each once, sorted by number. */
    VardaReply<QList<TidemarDiveHeader>> *readLogbook(const QList<std::uint16_t> &known = {});
    /** The samples of the dive with this number. */
    VardaReply<QList<DiveSample>> *readSamples(std::uint16_t number);
    /** All dives but @p known, one after the other, the oldest first. */
    DownloadJob *downloadDives(const QList<std::uint16_t> &known = {});
    VardaReply<QList<LayoutEntry>> *readLayouts();
    /** The bytes of a screen layout; empty if there is none with this index. */
    VardaReply<QByteArray> *readLayout(std::uint8_t index);
    /** The layout that each dive mode uses; -1 for none. */
    VardaReply<std::array<std::int8_t, 5>> *readActiveLayouts();

    // Jobs that write

    /** value() is the owner that was written. Computers keep at most 32 bytes of UTF-8. */
    VardaReply<QString> *writeOwner(const QString &owner);
    /** Sets the clock to this machine's local time when it is sent; value() as with readClock(). */
    VardaReply<std::int64_t> *setClock();
    /** @param pressure  millibar; value() is what readSensors() would give afterwards */
    VardaReply<VardaSensors> *writeSurfacePressure(std::uint32_t pressure);
    VardaJob *writeSettings(const MarloSettings &settings);
    /** value(): whether the computer acknowledged it within 2 s, which is not its consent. */
    VardaReply<bool> *setSuperUserMode(bool on);
    VardaJob *addLayout(const QByteArray &layout);
    VardaJob *removeLayout(std::uint8_t index);
    VardaJob *removeAllLayouts();
    /** @param diveMode  0 to 4;  @param index  of the layout, or -1 for none */
    VardaJob *activateLayout(std::uint8_t diveMode, std::int8_t index);
    VardaReply<DeleteDivesResult> *deleteLastDive();
    VardaReply<DeleteDivesResult> *eraseDives();
    /**
     * @param fileName  "NAME.1.2.3.a.bin", which gives the version of an image without a header
     * @param force     upload it even if the computer has this version already
     */
    FirmwareJob *uploadFirmware(const QByteArray &image, const QString &fileName,
                                bool force = false);
    /** Ends when the link has gone down. */
    VardaJob *restart();

Q_SIGNALS:
    void stateChanged();
    void deviceChanged();
    void currentJobChanged();              ///< comes before finished() of the job that ends
    void traceFailed(const QString &text); ///< the trace has ended before its time
    void linkLost(); ///< the link went down unexpectedly; not after a restart or an upload

private:
    friend class VardaComputerPrivate;
    std::unique_ptr<VardaComputerPrivate> d;
};
