// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qhash.h>
#include <QtCore/qpointer.h>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardadata.h>
#include <varda/vardasession.h>

#include "transport/linktap_p.h"

/**
 * What a session holds and does.
 *
 * A slot of the application may delete the session from inside any signal: after an emission
 * nothing of this object is touched before a look at whether it is still there.
 */
class VardaSession::Private
{
public:
    explicit Private(VardaSession *session) : q(session) { }

    // Lifecycle

    void createBleObjects(BleMode linkMode);
    void createProtocol();
    void dropProtocol();
    /** Forgets the link that there is, on the way to another one in the same mode. */
    void leaveLink();
    void setObserver(LinkObserver *observer);
    void setTap(LinkTap *tap);
    void observeLink();
    [[nodiscard]] LinkObserver *linkObserver() const;
    [[nodiscard]] static BleMode modeOf(const QList<QBluetoothUuid> &services);
    [[nodiscard]] static bool collectsAnswers(TidemarCommand::TidemarCommandIn command);
    void cleanup();
    void connectLink(const BleDeviceInfo &info);
    /**
     * Sets the message and announces it.
     *
     * @return whether to go on: not when a slot has deleted the session or ended this attempt
     */
    [[nodiscard]] bool say(const QString &text);

    // Jobs

    /** Sends a command; false without a link. */
    bool send(const BleCommand &command);
    /** Bytes that one step of an upload may carry. */
    [[nodiscard]] int stepSize() const;
    void sendNextLayoutAddChunk();

    // Answers

    void dispatchResponse(TidemarCommand::TidemarCommandIn command, const QByteArray &payload,
                          quint16 length);
    void endOrRefuse(TidemarCommand::TidemarCommandIn command, bool accepted,
                     ExchangeError::ExchangeErrorIn refusal);
    void onLayoutAdded(bool accepted);
    void onDiveHeader(const VardaData::Payload &answer);

    // Firmware upload

    int uploadFirmware(const QString &fileName, bool force);
    int firmwareBeginProgram(const QString &fileName, bool force);
    void firmwareExecuteProgram();
    void firmwareEndProgram();
    void onFirmwareBegun(const VardaData::Payload &answer);
    void onUpdateBegun(const VardaData::Payload &answer, quint16 length);
    void onFirmwareBlockDone(const VardaData::Payload &answer);
    void onFirmwareEnded(const VardaData::Payload &answer);

    VardaSession *const q;

    BleScanner *scanner = nullptr;
    BleDevice *device = nullptr;
    VardaBleProtocol *protocol = nullptr;
    BleMode mode = BleMode::Gatt; ///< of the link, or of the next one
    bool connected = false;
    bool autoConnecting = false;
    bool found = false;
    bool pressurePending = false;
    bool findsMode = false; ///< the kind of link follows from the services
    bool unlimited = false; ///< answers may be of any length
    QString message;
    VardaData data;
    QHash<quint16, qsizetype> headerRows; ///< the first of data.diveHeaders with that number
    BleDeviceInfo lastDevice;
    quint64 attempt = 0; ///< counts the links that were let go
    LinkObserver *observer = LinkObserver::nobody();
    LinkTap *tap = nullptr; ///< before the observer

    QString pendingOwner;
    QList<LayoutEntry> layouts;
    static constexpr int kDiveModes = 5;
    std::array<int8_t, kDiveModes> activeLayouts{-1, -1, -1, -1, -1};
    QByteArray layoutBlob;
    bool layoutSuccess = false;
    QByteArray layoutUpload;
    qsizetype layoutUploadOffset = 0;
    DeleteDivesResult deleteResult;
    quint64 sendCount = 0; ///< tells whether a slot has started a job

    QByteArray firmwareData;
    bool firmwareUpdateMode = false;
    bool firmwareDone = false;
    bool firmwareEndSent = false;
    qint64 firmwarePosition = 0;
    qint64 firmwareLastPosition = 0;
    int firmwareLastPercent = 0;
    double firmwarePercentFactor = 0.0;
    qint64 firmwareResumedAt = 0;
    Ticks firmwareStartTime{0};
    Ticks firmwareElapsed{0};
};
