// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothuuid.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qbytearrayview.h>
#include <QtCore/qlist.h>

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

    virtual void servicesKnown(const QList<QBluetoothUuid> & /*services*/) { }
    virtual void noUsableService() { }
    virtual void characteristicsMissing() { }
    virtual void subscriptionTimedOut() { }
    virtual void controllerFailed(QLowEnergyController::Error /*error*/) { }
    virtual void serviceFailed(QLowEnergyService::ServiceError /*error*/) { }

    virtual void written(QByteArrayView /*bytes*/) { }
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
