// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardaidentity.h>
#include <varda/vardajob.h>

#include "jobs/trace/tracewriter_p.h"
#include "transport/linktap_p.h"

/** Notes in a trace what happens on a link, and which jobs it happens for. */
class LinkTrace final : public LinkTap
{
public:
    explicit LinkTrace(TraceWriter &writer) : m_writer(writer) { }

    void computerKnown(const VardaIdentity &identity);
    void jobBegins(const QString &name);
    void jobEnds(VardaJob::Error error, VardaJob::Reason reason);

    void serviceKnown(const QString &name) override;
    void bluetoothFailed(int reason) override;
    void othersSeen(int count) override;

private:
    void connecting(const BleDeviceInfo &device) override;
    void linkUp() override;
    void linkDown() override;
    void disconnecting() override;
    void servicesKnown(const QList<QBluetoothUuid> &services) override;
    void noUsableService() override;
    void characteristicsKnown(const QBluetoothUuid &service,
                              const QList<QLowEnergyCharacteristic> &all) override;
    void subscribing(const QBluetoothUuid &characteristic, QByteArrayView value) override;
    void subscribed(int mtu) override;
    void characteristicsMissing() override;
    void subscriptionTimedOut() override;
    void controllerFailed(QLowEnergyController::Error error) override;
    void serviceFailed(QLowEnergyService::ServiceError error) override;
    void written(QByteArrayView bytes) override;
    void writtenBeside(const QBluetoothUuid &characteristic, QByteArrayView bytes) override;
    void notified(QByteArrayView bytes) override;
    void tooManyNotifications() override;
    void answerProcessed() override;
    void receiveTimedOut() override;

    TraceWriter &m_writer;
    int m_job = 0; ///< number of the last one
};
