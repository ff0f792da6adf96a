// SPDX-License-Identifier: MIT
#include "jobs/link/linknotes_p.h"

#include <varda/vardableprotocol.h>

#include "session/sessiondoor_p.h"

using Reason = VardaJob::Reason;

JobEnd LinkNotes::attemptEnd(std::optional<BleMode> mode) const
{
    if (m_seen.noCharacteristics || m_seen.noService) {
        const bool otherKind = mode && !m_seen.services.isEmpty()
                               && SessionDoor::modeOf(m_seen.services) != *mode;
        return {VardaJob::NotConnected, otherKind ? Reason::OtherLinkMode : Reason::NoService};
    }
    return {VardaJob::NotConnected, Reason::LinkFailed, m_seen.detail};
}

JobEnd LinkNotes::lossEnd() const
{
    if (m_seen.timedOut)
        return {VardaJob::TimedOut, Reason::NoAnswer};
    if (m_seen.writeFailed)
        return {VardaJob::LinkLost, Reason::WriteFailed};
    return {VardaJob::LinkLost, Reason::LinkFailed, m_seen.detail};
}

void LinkNotes::servicesKnown(const QList<QBluetoothUuid> &services)
{
    m_seen.services = services;
}

void LinkNotes::noUsableService()
{
    m_seen.noService = true;
}

void LinkNotes::characteristicsMissing()
{
    m_seen.noCharacteristics = true;
}

void LinkNotes::subscriptionTimedOut()
{
    m_seen.detail = QStringLiteral("its notifications could not be switched on");
}

void LinkNotes::controllerFailed(QLowEnergyController::Error error)
{
    m_seen.detail = VardaBleProtocol::controllerErrorString(error);
}

void LinkNotes::serviceFailed(QLowEnergyService::ServiceError error)
{
    m_seen.writeFailed = error == QLowEnergyService::CharacteristicWriteError;
    m_seen.detail = VardaBleProtocol::serviceErrorString(error);
}

void LinkNotes::written(QByteArrayView bytes)
{
    m_observer->written(bytes);
}

void LinkNotes::notified(QByteArrayView bytes)
{
    m_observer->notified(bytes);
}

void LinkNotes::frameReceived(quint8 code, QByteArrayView frame)
{
    m_observer->frameReceived(code, frame);
}

void LinkNotes::wrongChecksum()
{
    m_observer->wrongChecksum();
}

void LinkNotes::leftOver(QByteArrayView bytes)
{
    m_observer->leftOver(bytes);
}

void LinkNotes::tooManyNotifications()
{
    m_observer->tooManyNotifications();
}

void LinkNotes::answerProcessed()
{
    m_observer->answerProcessed();
}

void LinkNotes::receiveTimedOut()
{
    m_seen.timedOut = true;
    m_observer->receiveTimedOut();
}
