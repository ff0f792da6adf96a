// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothuuid.h>
#include <QtBluetooth/qlowenergycharacteristic.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qbytearrayview.h>
#include <QtCore/qlist.h>

class BleDeviceInfo;

/**
 * Sees what passes on a link, each thing before anybody else hears of it: what the public signals
 * tell in texts, or not at all.
 *
 * It only takes notes: from inside these calls the link is neither used nor dropped nor deleted.
 */
class LinkObserver
{
public:
    virtual ~LinkObserver() = default;
    /** For a link that nobody observes. */
    [[nodiscard]] static LinkObserver *nobody();

    virtual void connecting(const BleDeviceInfo & /*device*/) { }
    /** Up, but its services are not known yet. */
    virtual void linkUp() { }
    virtual void linkDown() { }
    /** By this end. */
    virtual void disconnecting() { }

    virtual void servicesKnown(const QList<QBluetoothUuid> & /*services*/) { }
    virtual void noUsableService() { }
    /** Those of the service that carries the data. */
    virtual void characteristicsKnown(const QBluetoothUuid & /*service*/,
                                      const QList<QLowEnergyCharacteristic> & /*all*/)
    {
    }
    virtual void subscribing(const QBluetoothUuid & /*characteristic*/, QByteArrayView /*value*/) {
    }
    /** The computer has acknowledged it; the MTU is as the system reports it. */
    virtual void subscribed(int /*mtu*/) { }
    virtual void characteristicsMissing() { }
    virtual void subscriptionTimedOut() { }
    virtual void controllerFailed(QLowEnergyController::Error /*error*/) { }
    virtual void serviceFailed(QLowEnergyService::ServiceError /*error*/) { }

    virtual void written(QByteArrayView /*bytes*/) { }
    /** To another characteristic than the one that carries the data. */
    virtual void writtenBeside(const QBluetoothUuid & /*characteristic*/, QByteArrayView /*bytes*/)
    {
    }
    virtual void notified(QByteArrayView /*bytes*/) { }

    virtual void frameReceived(quint8 /*code*/, QByteArrayView /*frame*/) { }
    virtual void wrongChecksum() { }
    /** Bytes that make no whole frame were discarded, at the end of what had arrived. */
    virtual void leftOver(QByteArrayView /*bytes*/) { }
    /** More notifications than one answer may hold; what had arrived of it is gone. */
    virtual void tooManyNotifications() { }
    /** All that had arrived has been looked at. */
    virtual void answerProcessed() { }
    /** No answer, or no end of it. */
    virtual void receiveTimedOut() { }
};
