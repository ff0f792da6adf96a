// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <optional>

#include <varda/blemode.h>

#include "jobs/jobend_p.h"
#include "transport/linkobserver_p.h"

/**
 * What a link is seen to do until it ends, and so why it has ended. What concerns answers is passed
 * on to another observer.
 */
class LinkNotes : public LinkObserver
{
public:
    /** nobody() for none. */
    void setObserver(LinkObserver *observer) { m_observer = observer; }
    /** For another attempt. */
    void clear() { m_seen = {}; }

    /** Why the attempt failed that has just done so; with the kind of link that it insisted on. */
    [[nodiscard]] JobEnd attemptEnd(std::optional<BleMode> mode) const;
    /** Why a link that was up went down. */
    [[nodiscard]] JobEnd lossEnd() const;
    [[nodiscard]] bool hasServices() const { return !m_seen.services.isEmpty(); }

private:
    void servicesKnown(const QList<QBluetoothUuid> &services) override;
    void noUsableService() override;
    void characteristicsMissing() override;
    void subscriptionTimedOut() override;
    void controllerFailed(QLowEnergyController::Error error) override;
    void serviceFailed(QLowEnergyService::ServiceError error) override;
    void written(QByteArrayView bytes) override;
    void notified(QByteArrayView bytes) override;
    void frameReceived(quint8 code, QByteArrayView frame) override;
    void wrongChecksum() override;
    void leftOver(QByteArrayView bytes) override;
    void tooManyNotifications() override;
    void answerProcessed() override;
    void receiveTimedOut() override;

    struct Seen {
        QList<QBluetoothUuid> services;
        bool noService = false;
        bool noCharacteristics = false;
        bool timedOut = false;
        bool writeFailed = false;
        QString detail;
    };

    LinkObserver *m_observer = LinkObserver::nobody();
    Seen m_seen;
};
