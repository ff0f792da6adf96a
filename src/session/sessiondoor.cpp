// SPDX-License-Identifier: MIT
#include "session/sessiondoor_p.h"

#include "session/vardasession_p.h"

void SessionDoor::observe(LinkObserver *observer)
{
    m_session.d->setObserver(observer);
}

void SessionDoor::listen(LinkTap *tap)
{
    m_session.d->setTap(tap);
}

void SessionDoor::liftLimits(bool findsMode)
{
    m_session.d->findsMode = findsMode;
    m_session.d->unlimited = true;
}

VardaData &SessionDoor::data()
{
    return m_session.d->data;
}

void SessionDoor::clearActiveLayouts()
{
    m_session.d->activeLayouts.fill(-1);
}

void SessionDoor::forgetPressure()
{
    m_session.d->pressurePending = false;
}

void SessionDoor::stopSteps()
{
    // Both mean to the answer under way that nothing is left to send.
    m_session.d->firmwareData.clear();
    m_session.d->layoutUploadOffset = m_session.d->layoutUpload.size();
}

qint64 SessionDoor::uploadResumedAt() const
{
    return m_session.d->firmwareResumedAt;
}

bool SessionDoor::uploadEndSent() const
{
    return m_session.d->firmwareEndSent;
}

int SessionDoor::mtu() const
{
    return m_session.d->device ? m_session.d->device->mtu() : 0;
}

BleMode SessionDoor::modeOf(const QList<QBluetoothUuid> &services)
{
    return VardaSession::Private::modeOf(services);
}

bool SessionDoor::collectsAnswers(TidemarCommand::TidemarCommandIn command)
{
    return VardaSession::Private::collectsAnswers(command);
}
