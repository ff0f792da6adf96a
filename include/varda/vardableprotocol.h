// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtBluetooth/qbluetoothuuid.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>

#include <memory>

#include <varda/blecommand.h>
#include <varda/blemode.h>
#include <varda/exchangeerror.h>
#include <varda/tidemarcommand.h>
#include <varda/vardaexport.h>

class BleDevice;
class LinkObserver;

/**
 * Sends commands and receives whole frames, over one BleDevice.
 *
 * A frame is 0xDC 0xDC, the body's length L (16 bits), the body's CRC-16, two unused bytes, and the
 * body: the command's code and its payload; all little-endian. Only one command is under way at a
 * time: a new one takes over the buffer and the time-out of the previous one.
 */
class VARDA_EXPORT VardaBleProtocol : public QObject
{
    Q_OBJECT

public:
    /** @param device  the link to use; not owned, may be deleted first */
    explicit VardaBleProtocol(BleDevice *device, BleMode mode, QObject *parent = nullptr);
    ~VardaBleProtocol() override;

    /** Sets up the link with the service and characteristic of the mode; returns its answer. */
    bool setupCharacteristics();
    /**
     * Sends one command as one write without response, whatever its length.
     *
     * @return whether the link took the write; the answer, or receiveTimeout(), follows
     */
    bool sendCommand(const BleCommand &command);
    /**
     * Bytes of payload that fit into a write: (MTU - 12) rounded toward zero to a multiple of 8, or
     * 128 if the MTU is not known. Can be 0 or negative for an MTU below 20.
     */
    [[nodiscard]] int frameSize() const;

    /** English text of a controller error; "Unknown Error" for every other value. */
    [[nodiscard]] static QString controllerErrorString(QLowEnergyController::Error error);
    /** English text of a service error; "Unknown Error" for every other value. */
    [[nodiscard]] static QString serviceErrorString(QLowEnergyService::ServiceError error);
    /** English text of a discovery error; "Unknown Error" for every other value. */
    [[nodiscard]] static QString scanErrorString(QBluetoothDeviceDiscoveryAgent::Error error);
    /** English text of an exchange error; "Unknown Error" for every other value. */
    [[nodiscard]] static QString exchangeErrorString(ExchangeError::ExchangeErrorIn error);

Q_SIGNALS:
    /**
     * One good frame.
     *
     * @param payload        the body without the command's code
     * @param payloadLength  the frame's L, which counts the code: payload.size() + 1
     */
    void responseReceived(TidemarCommand::TidemarCommandIn command, QByteArray payload,
                          unsigned short payloadLength);
    /** A frame whose CRC is wrong; everything received with it is dropped. */
    void protocolError(TidemarCommand::TidemarCommandIn command,
                       ExchangeError::ExchangeErrorIn error);
    /** No answer within 5 s of the command or of the last notification. */
    void receiveTimeout(TidemarCommand::TidemarCommandIn command);
    /** The link can be used; comes 500 ms after the link reported that it is connected. */
    void ready();

private Q_SLOTS:
    void onNotificationReceived(QByteArray chunk);
    void onTimerReceiveTimeout();
    void onCommandTimeout();
    void onBleConnected();

private:
    friend class VardaSession;
    void setObserver(LinkObserver *observer);
    /** Before setupCharacteristics(). */
    void setMode(BleMode mode);
    /** The kind of link that a computer with these services offers. */
    [[nodiscard]] static BleMode modeOf(const QList<QBluetoothUuid> &services);
    /** Allows an answer to have more notifications than the buffer has room for. */
    void setUnlimited();
    [[nodiscard]] static bool collectsAnswers(TidemarCommand::TidemarCommandIn command);
    void processBuffer();
    void resetBuffer();

    class Private;
    std::unique_ptr<Private> d;
};
