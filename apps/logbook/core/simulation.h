// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtQml/qqmlregistration.h>

/**
 * Changes between real computers and a simulated one. A process has one system bus, so the app
 * starts again: beside the simulator, which gives it another bus, or without it.
 */
class Simulation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool available READ available CONSTANT)

public:
    using QObject::QObject;

    [[nodiscard]] static bool available();
    /** Whether the other app has started; then this one ends. */
    Q_INVOKABLE static bool start();
    Q_INVOKABLE static bool leave();
};
