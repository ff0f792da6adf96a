// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include <varda/dive.h>
#include <varda/vardasession.h>

/** What QML sees of a session beyond VardaSession itself: what the computer reported, as properties. */
class SessionExtension : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool connected READ connected NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(BleDeviceInfo lastDevice READ lastDevice NOTIFY changed)
    /** A ComputerModel. */
    Q_PROPERTY(int computerModel READ computerModel NOTIFY changed)
    /** A CurrentMode. */
    Q_PROPERTY(int currentMode READ currentMode NOTIFY changed)
    Q_PROPERTY(int recordVersion READ recordVersion NOTIFY changed)
    Q_PROPERTY(QString serialNumber READ serialNumber NOTIFY changed)
    Q_PROPERTY(uint firmwareVersion READ firmwareVersion NOTIFY changed)
    Q_PROPERTY(QString firmwareVersionStr READ firmwareVersionStr NOTIFY changed)
    Q_PROPERTY(uint bootloaderVersion READ bootloaderVersion NOTIFY changed)
    Q_PROPERTY(QString bootloaderVersionStr READ bootloaderVersionStr NOTIFY changed)
    Q_PROPERTY(QString owner READ owner NOTIFY changed)
    Q_PROPERTY(BleConfig config READ config NOTIFY changed)
    Q_PROPERTY(BleComputer computer READ computer NOTIFY changed)
    /** Lists of tidemarDiveHeader, diveSample, syslogBinRecord, batteryInfoRecord and layoutEntry. */
    Q_PROPERTY(QVariantList diveHeaders READ diveHeaders NOTIFY changed)
    Q_PROPERTY(QVariantList diveSamples READ diveSamples NOTIFY changed)
    Q_PROPERTY(QVariantList syslogBin READ syslogBin NOTIFY changed)
    Q_PROPERTY(QVariantList batteryInfo READ batteryInfo NOTIFY changed)
    Q_PROPERTY(QVariantList layouts READ layouts NOTIFY changed)
    Q_PROPERTY(QString syslog READ syslog NOTIFY changed)
    /** Seconds since 1970, as the computer shows them. */
    Q_PROPERTY(double computerTime READ computerTime NOTIFY changed)
    Q_PROPERTY(QList<double> diverN2 READ diverN2 NOTIFY changed)
    Q_PROPERTY(QList<double> diverHe READ diverHe NOTIFY changed)
    Q_PROPERTY(double diverCns READ diverCns NOTIFY changed)
    Q_PROPERTY(uint psurf READ psurf NOTIFY changed)
    Q_PROPERTY(uint pamb READ pamb NOTIFY changed)
    Q_PROPERTY(int density READ density NOTIFY changed)
    Q_PROPERTY(int dstop READ dstop NOTIFY changed)
    Q_PROPERTY(DeleteDivesResult deleteResult READ deleteResult NOTIFY changed)
    Q_PROPERTY(bool lastEraseFlashSuccess READ lastEraseFlashSuccess NOTIFY changed)
    /** The layout that each dive mode uses; -1: unknown. */
    Q_PROPERTY(QList<int> activeLayouts READ activeLayouts NOTIFY changed)
    Q_PROPERTY(QByteArray layoutBlob READ layoutBlob NOTIFY changed)
    Q_PROPERTY(bool layoutCommandSuccess READ layoutCommandSuccess NOTIFY changed)

public:
    explicit SessionExtension(QObject *session);

    [[nodiscard]] bool connected() const { return m_session->isConnected(); }
    [[nodiscard]] QString message() const { return m_session->message(); }
    [[nodiscard]] BleDeviceInfo lastDevice() const { return m_session->lastDevice(); }
    [[nodiscard]] int computerModel() const { return m_session->computerModel(); }
    [[nodiscard]] int currentMode() const { return m_session->currentMode(); }
    [[nodiscard]] int recordVersion() const { return m_session->recordVersion(); }
    [[nodiscard]] QString serialNumber() const { return m_session->serialNumber(); }
    [[nodiscard]] uint firmwareVersion() const { return m_session->firmwareVersion(); }
    [[nodiscard]] QString firmwareVersionStr() const { return m_session->firmwareVersionStr(); }
    [[nodiscard]] uint bootloaderVersion() const { return m_session->bootloaderVersion(); }
    [[nodiscard]] QString bootloaderVersionStr() const { return m_session->bootloaderVersionStr(); }
    [[nodiscard]] QString owner() const { return m_session->owner(); }
    [[nodiscard]] BleConfig config() const { return m_session->config(); }
    [[nodiscard]] BleComputer computer() const { return m_session->computer(); }
    [[nodiscard]] QVariantList diveHeaders() const;
    [[nodiscard]] QVariantList diveSamples() const;
    [[nodiscard]] QVariantList syslogBin() const;
    [[nodiscard]] QVariantList batteryInfo() const;
    [[nodiscard]] QVariantList layouts() const;
    [[nodiscard]] QString syslog() const { return m_session->syslog(); }
    [[nodiscard]] double computerTime() const { return double(m_session->computerTime()); }
    [[nodiscard]] QList<double> diverN2() const;
    [[nodiscard]] QList<double> diverHe() const;
    [[nodiscard]] double diverCns() const { return double(m_session->diverCns()); }
    [[nodiscard]] uint psurf() const { return m_session->psurf(); }
    [[nodiscard]] uint pamb() const { return m_session->pamb(); }
    [[nodiscard]] int density() const { return m_session->density(); }
    [[nodiscard]] int dstop() const { return m_session->dstop(); }
    [[nodiscard]] DeleteDivesResult deleteResult() const { return m_session->deleteResult(); }
    [[nodiscard]] bool lastEraseFlashSuccess() const { return m_session->lastEraseFlashSuccess(); }
    [[nodiscard]] QList<int> activeLayouts() const;
    [[nodiscard]] QByteArray layoutBlob() const { return m_session->layoutBlob(); }
    [[nodiscard]] bool layoutCommandSuccess() const { return m_session->layoutCommandSuccess(); }

    Q_INVOKABLE void startGetBatteryInformation() { m_session->startGetBatteryInformation(); }
    /** VardaSession::uploadFirmware(). */
    Q_INVOKABLE int uploadFirmware(const QByteArray &image, const QString &fileName,
                                   bool force = false)
    {
        return m_session->uploadFirmware(image, fileName, force);
    }

Q_SIGNALS:
    void changed();

private:
    VardaSession *m_session;
};

struct SessionType {
    Q_GADGET
    QML_FOREIGN(VardaSession)
    QML_NAMED_ELEMENT(VardaSession)
    QML_EXTENDED(SessionExtension)
};

/** Converts what a session has read into a dive. */
class ConverterType : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(TidemarDiveConverter)
    QML_SINGLETON

public:
    using QObject::QObject;

    /** @param samples  a list of diveSample; what else is in it is left out */
    Q_INVOKABLE static Dive toDive(const TidemarDiveHeader &header, const QVariantList &samples,
                                   const VardaSession *session);
    /** A list of diveGas. */
    Q_INVOKABLE static QVariantList gases(const TidemarDiveHeader &header);
};

/** What of VardaData needs no payload. */
class DataType : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(VardaData)
    QML_SINGLETON

public:
    using QObject::QObject;

    /** A packed version as "1.2.3.a". */
    Q_INVOKABLE static QString firmwareVersionToString(uint version);
};
