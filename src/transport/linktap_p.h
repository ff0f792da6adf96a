// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include "transport/linkobserver_p.h"

/** Listens in on a link: passes on all that it sees to the one who observes it. */
class LinkTap : public LinkObserver
{
public:
    /** nobody() for none. */
    void setNext(LinkObserver *next) { m_next = next; }

    /** The system's Bluetooth service, as it names itself. */
    virtual void serviceKnown(const QString & /*name*/) { }
    /** It cannot be used; the reason is one of VardaJob::Reason. */
    virtual void bluetoothFailed(int /*reason*/) { }
    /** A search is over that has seen so many devices besides the one that is looked for. */
    virtual void othersSeen(int /*count*/) { }

    void connecting(const BleDeviceInfo &device) override { m_next->connecting(device); }
    void linkUp() override { m_next->linkUp(); }
    void linkDown() override { m_next->linkDown(); }
    void disconnecting() override { m_next->disconnecting(); }
    void servicesKnown(const QList<QBluetoothUuid> &services) override
    {
        m_next->servicesKnown(services);
    }
    void noUsableService() override { m_next->noUsableService(); }
    void characteristicsKnown(const QBluetoothUuid &service,
                              const QList<QLowEnergyCharacteristic> &all) override
    {
        m_next->characteristicsKnown(service, all);
    }
    void subscribing(const QBluetoothUuid &characteristic, QByteArrayView value) override
    {
        m_next->subscribing(characteristic, value);
    }
    void subscribed(int mtu) override { m_next->subscribed(mtu); }
    void characteristicsMissing() override { m_next->characteristicsMissing(); }
    void subscriptionTimedOut() override { m_next->subscriptionTimedOut(); }
    void controllerFailed(QLowEnergyController::Error error) override
    {
        m_next->controllerFailed(error);
    }
    void serviceFailed(QLowEnergyService::ServiceError error) override
    {
        m_next->serviceFailed(error);
    }
    void written(QByteArrayView bytes) override { m_next->written(bytes); }
    void writtenBeside(const QBluetoothUuid &characteristic, QByteArrayView bytes) override
    {
        m_next->writtenBeside(characteristic, bytes);
    }
    void notified(QByteArrayView bytes) override { m_next->notified(bytes); }
    void frameReceived(quint8 code, QByteArrayView frame) override
    {
        m_next->frameReceived(code, frame);
    }
    void wrongChecksum() override { m_next->wrongChecksum(); }
    void leftOver(QByteArrayView bytes) override { m_next->leftOver(bytes); }
    void tooManyNotifications() override { m_next->tooManyNotifications(); }
    void answerProcessed() override { m_next->answerProcessed(); }
    void receiveTimedOut() override { m_next->receiveTimedOut(); }

private:
    LinkObserver *m_next = LinkObserver::nobody();
};
