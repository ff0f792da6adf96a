// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcoreapplication.h>
#include <QtCore/qthread.h>

/**
 * Deletes one of Qt's objects whose owner goes, perhaps from inside a signal of that very object:
 * so later, by the event loop. Where that has ended already, the application takes it along.
 */
struct DeleteLater {
    void operator()(QObject *object) const
    {
        auto *const application = QCoreApplication::instance();
        const bool together = application && application->thread() == object->thread();
        object->setParent(together ? application : nullptr);
        object->deleteLater();
    }
};
