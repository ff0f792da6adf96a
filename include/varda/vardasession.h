// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <ratio>

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/bledeviceinfo.h>
#include <varda/blemode.h>
#include <varda/computermodel.h>
#include <varda/connectcontrollerstatus.h>
#include <varda/createcontrollerstatus.h>
#include <varda/currentmode.h>
#include <varda/deletedivesresult.h>
#include <varda/divesample.h>
#include <varda/exchangeerror.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemarcommand.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaexport.h>

/**
 * The floor below VardaComputer: finds one diving computer, connects, runs jobs on it, keeps what
 * it answered, and reports every step with a one-line message and a status signal.
 *
 * After connectControllerStatus(Connected) start one job at a time and wait for its endCommand() or
 * exchangeError(); there is no queue. If the computer does not answer within 5 s, the session
 * disconnects. A slot may start the next job, disconnect, or delete the session.
 *
 * Everything runs on the thread that owns the session.
 */
class VARDA_EXPORT VardaSession : public QObject
{
    Q_OBJECT

public:
    /** Ticks of 100 ns. */
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

    explicit VardaSession(QObject *parent = nullptr);
    ~VardaSession() override;

    /** Scans for 30 s and connects to the first computer of a known name. */
    Q_INVOKABLE void autoConnect(BleMode mode = BleMode::Gatt);
    /** autoConnect() to a computer with a transparent UART. */
    Q_INVOKABLE void createController();
    /** Connects to a known computer without a scan. */
    Q_INVOKABLE void connectTo(BleDeviceInfo device, BleMode mode = BleMode::Gatt);
    /**
     * Connects to the last computer again; a link that is up is dropped first, without a signal.
     */
    Q_INVOKABLE void controllerConnect();
    /** controllerDisconnect(), for the user interface. */
    Q_INVOKABLE void controllerDisConnect();

    // Jobs; without a link they do nothing

    /** Sends a command without arguments; Logbook empties the list of dive headers first. */
    Q_INVOKABLE void startCommand(TidemarCommand::TidemarCommandIn command);
    /**
     * Reads the headers of the dives that are not in @p existingDiveIds into diveHeaders().
     *
     * The list is sent in one write. Linux refuses a write longer than the link's MTU - 3 or than
     * 512 bytes, so pass only the newest (MTU - 12) / 2 numbers and no more than 251, and skip the
     * headers of other dives that you know.
     * Asking in parts does not help: each part brings the dives of the others again.
     */
    Q_INVOKABLE void startGetLogbook(QList<uint16_t> existingDiveIds);
    /** Reads the samples of the dive of that number into diveSamples(). */
    Q_INVOKABLE void startGetDiveSamples(uint16_t diveName);
    /**
     * Sets the surface pressure, in millibar.
     *
     * @return false if the computer has not answered the previous one, or without a link
     */
    Q_INVOKABLE bool startSetPressure(uint32_t pressure);
    /** Sets the computer's clock to this machine's local wall-clock time. */
    Q_INVOKABLE void startSetTime();
    /** Writes the owner; owner() changes when the computer has confirmed it. */
    Q_INVOKABLE void setOwner(QString owner);
    /** Reads a gas table into config(): 0 is the first, any other number the second. */
    Q_INVOKABLE void startGetGases(uint8_t gasType);
    Q_INVOKABLE void startMarloSettings(MarloSettings settings);
    /** Enters or leaves super-user mode; the computer's answer is not reported. */
    Q_INVOKABLE void startSuperUserMode(bool activate);
    /** Stops a running scan; does not cancel a command. */
    Q_INVOKABLE void stopJob();
    /** Reads the list of screen layouts into layouts(). */
    Q_INVOKABLE void startLayoutList();
    /** Reads one screen layout into layoutBlob(). */
    Q_INVOKABLE void startLayoutGet(uint8_t index);
    /** Writes a screen layout, in as many steps as its size needs. */
    Q_INVOKABLE void startLayoutAdd(QByteArray blob);
    Q_INVOKABLE void startLayoutRemove(uint8_t index);
    Q_INVOKABLE void startLayoutRemoveAll();
    /** Reads which layout each dive mode uses into activeLayouts(). */
    Q_INVOKABLE void startLayoutActiveGet();
    Q_INVOKABLE void startLayoutActiveSet(uint8_t diveMode, int8_t index);

    // For the user interface

    Q_INVOKABLE bool qmlConnected() const;
    /** Name of the enumerator: "Unknown", "Normal" or "BootLoader". */
    Q_INVOKABLE QString qmlCurrentMode() const;
    /** Name of the enumerator: "Unknown", "Varda", "Tidemar", "VSKM" or "ThirdParty". */
    Q_INVOKABLE QString qmlComputerModel() const;
    Q_INVOKABLE QString qmlGetSerialNumber() const;
    Q_INVOKABLE QString qmlGetFirmwareVersionStr() const;
    Q_INVOKABLE QString qmlGetOwner() const;
    Q_INVOKABLE QString qmlGetMessage() const;
    /** VardaBleProtocol::controllerErrorString(). */
    Q_INVOKABLE QString qmlControllerError(QLowEnergyController::Error error) const;
    /** startGetLogbook(); each number is cut to 16 bits. */
    Q_INVOKABLE void qmlStartGetLogbook(QList<int> existingDiveIds);

    /** Reads the battery history into batteryInfo(). */
    void startGetBatteryInformation();

    /**
     * Uploads a firmware or bootloader image; uploadFirmwareProgress() reports how far it is, and
     * endCommand(End_program) or exchangeError() how it ended.
     *
     * An image with an update header (a known word at byte 512) contains its version; for an image
     * without one, @p fileName gives name and version, "NAME.1.2.3.a.bin".
     *
     * @param force  upload it even if the computer has this version already
     * @return the image's size in bytes; 0 for an empty image; or, with nothing sent,
     *         -1: the word at byte 512 is unknown,
     *         -2: a bootloader of the version that the computer has,
     *         -3: a firmware of the version that the computer has,
     *         -4: a firmware, and the version of the computer's bootloader is not known
     */
    int uploadFirmware(const QByteArray &data, const QString &fileName, bool force);
    /** The same for a file; 0 if it cannot be read. */
    int uploadFirmware(const QString &path, bool force);
    /** Duration of the last upload that succeeded; 0 before the first. */
    [[nodiscard]] Ticks uploadElapsed() const;

    /** Disconnects from the computer and forgets it; does nothing without one. */
    void controllerDisconnect();

    /** Whether the link is up. Jobs may start after connectControllerStatus(Connected) only. */
    [[nodiscard]] bool isConnected() const;
    /** The last message to the user. */
    [[nodiscard]] QString message() const;
    /**
     * The last computer, also after the session has disconnected from it. With autoConnect() it is
     * set after createControllerStatus(Created).
     */
    [[nodiscard]] BleDeviceInfo lastDevice() const;
    /** "Varda", "Tidemar", "VSKM", "ThirdParty" or "Unknown". */
    [[nodiscard]] QString computerModelStr() const;

    // What the computer reported; see VardaData for meanings and units

    [[nodiscard]] uint8_t recordVersion() const;
    [[nodiscard]] const QString &serialNumber() const;
    [[nodiscard]] uint32_t bootloaderVersion() const;
    [[nodiscard]] const QString &bootloaderVersionStr() const;
    [[nodiscard]] uint32_t firmwareVersion() const;
    [[nodiscard]] const QString &firmwareVersionStr() const;
    [[nodiscard]] CurrentMode::CurrentModeIn currentMode() const;
    [[nodiscard]] ComputerModel::ComputerModelIn computerModel() const;
    [[nodiscard]] const BleConfig &config() const;
    [[nodiscard]] const BleComputer &computer() const;
    [[nodiscard]] const QList<TidemarDiveHeader> &diveHeaders() const;
    /** The first header of that dive number, or null; valid until the list changes. */
    [[nodiscard]] const TidemarDiveHeader *diveHeader(uint16_t diveNumber) const;
    [[nodiscard]] const QList<DiveSample> &diveSamples() const;
    [[nodiscard]] const QString &syslog() const;
    [[nodiscard]] const QList<SyslogBinRecord> &syslogBin() const;
    [[nodiscard]] const QList<BatteryInfoRecord> &batteryInfo() const;
    [[nodiscard]] int64_t computerTime() const;
    [[nodiscard]] const std::array<float, 16> &diverN2() const;
    [[nodiscard]] const std::array<float, 16> &diverHe() const;
    [[nodiscard]] float diverCns() const;
    [[nodiscard]] uint32_t psurf() const;
    [[nodiscard]] uint32_t pamb() const;
    [[nodiscard]] uint16_t density() const;
    [[nodiscard]] uint16_t dstop() const;
    [[nodiscard]] const QString &owner() const;
    [[nodiscard]] const DeleteDivesResult &deleteResult() const;
    [[nodiscard]] bool lastEraseFlashSuccess() const;
    [[nodiscard]] const QList<LayoutEntry> &layouts() const;
    /** The layout that each dive mode uses; -1 if it is not known. */
    [[nodiscard]] const std::array<int8_t, 5> &activeLayouts() const;
    [[nodiscard]] const QByteArray &layoutBlob() const;
    /** Whether the last layout that was written, removed or activated was accepted. */
    [[nodiscard]] bool layoutCommandSuccess() const;

Q_SIGNALS:
    void createControllerStatus(CreateControllerStatus::CreateControllerStatusIn status);
    void connectControllerStatus(ConnectControllerStatus::ConnectControllerStatusIn status);
    /** A link that was up has gone down. */
    void disconnectController();
    /** Not emitted: message() and a status report errors of the controller. */
    void errorController(QLowEnergyController::Error error);
    /** Not emitted: message() and a status report errors of the service. */
    void serviceError(QLowEnergyService::ServiceError error);
    /** A job is complete. */
    void endCommand(TidemarCommand::TidemarCommandIn command);
    /** The computer refused a job, or its answer was damaged. */
    void exchangeError(TidemarCommand::TidemarCommandIn command,
                       ExchangeError::ExchangeErrorIn error);
    /**
     * @param bytesSent    may exceed the image's size with the last block; 0 at the very end
     * @param percentDone  may exceed 100 with the last block; 100 at the very end
     */
    void uploadFirmwareProgress(int bytesSent, int percentDone);
    /** There is a new message(), perhaps with the same text. */
    void messageChanged();

private Q_SLOTS:
    void onDeviceFound(BleDeviceInfo device);
    void onScanFinished();
    void onScanError(QString message);
    void onBleConnected();
    void onBleDisconnected();
    void onBleServicesDiscovered();
    void onBleError(QString message);
    void onResponseReceived(TidemarCommand::TidemarCommandIn command, QByteArray payload,
                            uint16_t payloadLength);
    void onProtocolError(TidemarCommand::TidemarCommandIn command,
                         ExchangeError::ExchangeErrorIn error);
    void onReceiveTimeout(TidemarCommand::TidemarCommandIn command);

private:
    friend class SessionDoor;
    class Private;
    std::unique_ptr<Private> d;
};
