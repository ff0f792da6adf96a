// SPDX-License-Identifier: MIT
#include "linktest.h"

void LinkTest::cleanup()
{
    m_log.react = nullptr;
    m_log.take();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

BleDeviceInfo knownDevice(const QString &name)
{
    return BleDeviceInfo::fromAddress(QString::fromLatin1(kAddress), name);
}
