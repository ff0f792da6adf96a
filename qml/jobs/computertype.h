// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include <varda/syncjob.h>
#include <varda/vardacomputer.h>
#include <varda/vardadoctor.h>

#include "storetype.h"

/**
 * What QML sees of a computer beyond VardaComputer itself: its calls. Each returns a job, which stays
 * as long as it runs or QML refers to it. A number that is out of range ends the job with Rejected;
 * nothing is sent.
 */
class ComputerExtension : public QObject
{
    Q_OBJECT
    /** A BleMode to insist on, or undefined: the services decide. */
    Q_PROPERTY(QVariant linkMode READ linkMode WRITE setLinkMode NOTIFY linkModeChanged)
    // For the jobs that are asked for afterwards, in milliseconds; undefined: as by default
    Q_PROPERTY(QVariant idleLimit MEMBER m_idleLimit NOTIFY limitsChanged)
    Q_PROPERTY(QVariant connectLimit MEMBER m_connectLimit NOTIFY limitsChanged)
    Q_PROPERTY(QVariant totalLimit MEMBER m_totalLimit NOTIFY limitsChanged)
    /** How often a failed part is repeated; undefined: as by default. */
    Q_PROPERTY(QVariant retries MEMBER m_retries NOTIFY limitsChanged)
    /** Milliseconds from the last job until the link is dropped; negative: never. */
    Q_PROPERTY(int linger READ linger WRITE setLinger NOTIFY lingerChanged)
    /** The link's MTU in bytes; 0 without a link, or if the system does not report it. */
    Q_PROPERTY(int mtu READ mtu NOTIFY changed)
    Q_PROPERTY(VardaIdentity identity READ identity NOTIFY changed)
    Q_PROPERTY(int waitingJobs READ waitingJobs NOTIFY changed)

public:
    explicit ComputerExtension(QObject *computer);

    [[nodiscard]] QVariant linkMode() const { return m_linkMode; }
    void setLinkMode(const QVariant &mode);
    [[nodiscard]] int linger() const { return m_linger; }
    void setLinger(int time);
    [[nodiscard]] int mtu() const;
    [[nodiscard]] VardaIdentity identity() const;
    [[nodiscard]] int waitingJobs() const;

    /** A computer that is remembered, to set it as device without a search. */
    Q_INVOKABLE static BleDeviceInfo deviceFromAddress(const QString &address,
                                                       const QString &name = {});

    // On the link itself

    Q_INVOKABLE SearchJob *search(int seconds = 10, bool allDevices = false);
    Q_INVOKABLE VardaJob *connectToComputer();
    Q_INVOKABLE VardaJob *connectToOnlyComputer();
    Q_INVOKABLE VardaJob *disconnectFromComputer();
    /** Finds out what keeps the computer away; checked() comes for each look. */
    Q_INVOKABLE VardaDoctor *examine();

    // Jobs that read

    Q_INVOKABLE VardaJob *readIdentity();
    Q_INVOKABLE VardaJob *readConfiguration(bool basic = false);
    Q_INVOKABLE VardaJob *readGasTables();
    Q_INVOKABLE VardaJob *readOwner();
    Q_INVOKABLE VardaJob *readClock();
    Q_INVOKABLE VardaJob *readSensors();
    Q_INVOKABLE VardaJob *readTissues();
    Q_INVOKABLE VardaJob *readLog();
    Q_INVOKABLE VardaJob *readBinaryLog();
    Q_INVOKABLE VardaJob *readBatteryHistory();
    Q_INVOKABLE VardaJob *readLogbook(const QList<int> &known = {});
    Q_INVOKABLE VardaJob *readSamples(double number);
    Q_INVOKABLE DownloadJob *downloadDives(const QList<int> &known = {});
    /** Downloads what the store does not have, and keeps each dive as soon as it is whole. */
    Q_INVOKABLE SyncJob *sync(StoreType *store);
    Q_INVOKABLE VardaJob *readLayouts();
    Q_INVOKABLE VardaJob *readLayout(double index);
    Q_INVOKABLE VardaJob *readActiveLayouts();

    // Jobs that write

    Q_INVOKABLE VardaJob *writeOwner(const QString &owner);
    Q_INVOKABLE VardaJob *setClock();
    Q_INVOKABLE VardaJob *writeSurfacePressure(double pressure);
    Q_INVOKABLE VardaJob *writeSettings(const QVariant &settings);
    Q_INVOKABLE VardaJob *setSuperUserMode(bool on);
    Q_INVOKABLE VardaJob *addLayout(const QByteArray &layout);
    Q_INVOKABLE VardaJob *removeLayout(double index);
    Q_INVOKABLE VardaJob *removeAllLayouts();
    Q_INVOKABLE VardaJob *activateLayout(double diveMode, double index);
    Q_INVOKABLE VardaJob *deleteLastDive();
    Q_INVOKABLE VardaJob *eraseDives();
    Q_INVOKABLE FirmwareJob *uploadFirmware(const QByteArray &image, const QString &fileName,
                                            bool force = false);
    Q_INVOKABLE VardaJob *restart();

Q_SIGNALS:
    void linkModeChanged();
    void lingerChanged();
    void limitsChanged();
    void changed();

private:
    template <typename Job> Job *limited(Job *job) const;
    template <typename Job> Job *give(Job *job);
    VardaJob *reject();

    VardaComputer *m_computer;
    QVariant m_linkMode;
    QVariant m_idleLimit;
    QVariant m_connectLimit;
    QVariant m_totalLimit;
    QVariant m_retries;
    int m_linger = -1;
};

struct ComputerType {
    Q_GADGET
    QML_FOREIGN(VardaComputer)
    QML_NAMED_ELEMENT(VardaComputer)
    QML_EXTENDED(ComputerExtension)
};

/** A device in reach, or one that is remembered: see DeviceInfo. */
struct DeviceType {
    Q_GADGET
    QML_FOREIGN(BleDeviceInfo)
    QML_VALUE_TYPE(bleDeviceInfo)
};
