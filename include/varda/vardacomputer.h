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

class VardaComputerPrivate;

/**
 * A diving computer with a queue in front of it: every call makes a job, which connects if need be,
 * runs in its turn, and ends once. No call returns null; a job that cannot run ends with the reason.
 *
 * Without a device a reading job takes the first computer found. A writing job goes on looking for
 * 3 s after the first and ends with Ambiguous if there are more.
 *
 * It stays on the thread that made it; moveToThread() only before the first job. Two of them for one
 * device do not work: the jobs of the second end with InUse until the first has let go.
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
        Settling,      ///< the answer to a job that was cancelled or deleted is still under way
        Disconnecting, ///< until the system has ended the link, 5 s at most
    };
    Q_ENUM(State)

    explicit VardaComputer(QObject *parent = nullptr);
    /** What is left ends afterwards, from the event loop, with Cancelled. */
    ~VardaComputer() override;

    [[nodiscard]] State state() const;
    /** The one to talk to; if none was set, the one that was found, once it is connected. */
    [[nodiscard]] BleDeviceInfo device() const;
    /**
     * Another device (by address) ends all jobs and the link, as disconnectFromComputer() does. An
     * invalid one: search again.
     */
    void setDevice(const BleDeviceInfo &device);
    /** To insist on a kind of link; without it, it is found out from the services. */
    void setLinkMode(std::optional<BleMode> mode);
    /** Drops the link so long after the last job; 0 at once, below 0 (the default) never. */
    void setLinger(std::chrono::milliseconds time);

    /** The link's MTU in bytes; 0 without a link or where the system does not say. */
    [[nodiscard]] int mtu() const;
    /** What the computer of this link has said it is; empty before it was asked. */
    [[nodiscard]] VardaIdentity identity() const;
    [[nodiscard]] VardaJob *currentJob() const;
    [[nodiscard]] QList<VardaJob *> waitingJobs() const;
    /** Whether a device of that advertised name is a computer. */
    [[nodiscard]] static bool isComputerName(const QString &name);

    // Jobs on the link itself

    /** Computers in reach, each when it is found; runs beside the queue and needs no device. */
    SearchJob *search(std::chrono::seconds time = std::chrono::seconds(10),
                      bool allDevices = false);
    /** To be connected before there is work; value() is invalid. */
    VardaJob *connectToComputer();
    /** The same for work that writes: with no device set, it makes sure that there is only one. */
    VardaJob *connectToOnlyComputer();
    /**
     * Ends what is running and waiting with Cancelled, in their order, and itself when the link is
     * down. What is asked for afterwards, also in their slots, runs then and connects again.
     */
    VardaJob *disconnectFromComputer();

    // Jobs that read

    VardaReply<VardaIdentity> *readIdentity();
    /** @param basic  without the extended section, which old firmwares do not know */
    VardaReply<VardaConfiguration> *readConfiguration(bool basic = false);
    VardaReply<VardaGasTables> *readGasTables();
    VardaReply<QString> *readOwner();
    /** Seconds on the computer's clock, as if it showed UTC. */
    VardaReply<std::int64_t> *readClock();
    VardaReply<VardaSensors> *readSensors();
    VardaReply<VardaTissues> *readTissues();
    /** The text log, one entry a line; of this reading alone. */
    VardaReply<QStringList> *readLog();
    VardaReply<QList<SyslogBinRecord>> *readBinaryLog();
    VardaReply<QList<BatteryInfoRecord>> *readBatteryHistory();
    /** Headers of the dives not in @p known, which may be of any length; each once, by number. */
    VardaReply<QList<TidemarDiveHeader>> *readLogbook(const QList<std::uint16_t> &known = {});
    /** The samples of the dive of that number. */
    VardaReply<QList<DiveSample>> *readSamples(std::uint16_t number);
    /** All dives but @p known, one after the other, the oldest first. */
    DownloadJob *downloadDives(const QList<std::uint16_t> &known = {});
    VardaReply<QList<LayoutEntry>> *readLayouts();
    /** The bytes of a screen layout; empty where there is none of that index. */
    VardaReply<QByteArray> *readLayout(std::uint8_t index);
    /** Layout in use by dive mode; -1 where there is none. */
    VardaReply<std::array<std::int8_t, 5>> *readActiveLayouts();

    // Jobs that write

    /** value() is the owner that was written. At most 32 bytes in UTF-8 are kept by computers. */
    VardaReply<QString> *writeOwner(const QString &owner);
    /** Sets the clock to this machine's local time at the moment of sending; value() as readClock(). */
    VardaReply<std::int64_t> *setClock();
    /** @param pressure  millibar; value() as readSensors() gives it afterwards */
    VardaReply<VardaSensors> *writeSurfacePressure(std::uint32_t pressure);
    VardaJob *writeSettings(const MarloSettings &settings);
    /** value() is whether the computer acknowledged it within 2 s; what it decided it does not say. */
    VardaReply<bool> *setSuperUserMode(bool on);
    VardaJob *addLayout(const QByteArray &layout);
    VardaJob *removeLayout(std::uint8_t index);
    VardaJob *removeAllLayouts();
    /** @param diveMode  0 to 4;  @param index  of the layout, or -1 for none */
    VardaJob *activateLayout(std::uint8_t diveMode, std::int8_t index);
    VardaReply<DeleteDivesResult> *deleteLastDive();
    VardaReply<DeleteDivesResult> *eraseDives();
    /**
     * @param fileName  "NAME.1.2.3.a.bin": where an image without a header has its version from
     * @param force     also when the computer has that version
     */
    FirmwareJob *uploadFirmware(const QByteArray &image, const QString &fileName,
                                bool force = false);
    /** Ends when the link has gone down. */
    VardaJob *restart();

Q_SIGNALS:
    void stateChanged();
    void deviceChanged();
    void currentJobChanged(); ///< before the finished() of the job that ends
    void linkLost();          ///< nobody asked for it; not after a restart or an upload

private:
    friend class VardaComputerPrivate;
    std::unique_ptr<VardaComputerPrivate> d;
};
