// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtTest/qtest.h>

#include <varda/bledeviceinfo.h>

#include "signallog.h"
#include "simulator.h"

/** What the tests over the link have in common: a simulator of their own, and a log. */
class LinkTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { Simulator::start(); }

protected:
    SignalLog m_log;

protected Q_SLOTS:
    void cleanup();
};

/** The record of the first device of a scenario. */
[[nodiscard]] BleDeviceInfo knownDevice(const QString &name = QStringLiteral("Varda"));

/** Loads a world or stops the test with what is wrong with it. */
#define LOAD(LOADING) QCOMPARE(LOADING, QString())
