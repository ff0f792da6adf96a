// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcoreapplication.h>
#include <QtCore/qtconfigmacros.h>

#include <functional>

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
#    if QT_CONFIG(permissions)
#        define VARDA_HAS_PERMISSIONS
#        include <QtCore/qpermissions.h>
#    endif
#endif

/**
 * Reports whether Bluetooth may be used, at once where that is known, else when the user has
 * answered and @p context still exists. Where there are no permissions, it may.
 */
inline void askBluetoothPermission([[maybe_unused]] QObject *context,
                                   const std::function<void(bool)> &answered)
{
#ifdef VARDA_HAS_PERMISSIONS
    QBluetoothPermission permission;
    permission.setCommunicationModes(QBluetoothPermission::Access);
    const Qt::PermissionStatus status = qApp->checkPermission(permission);
    if (status == Qt::PermissionStatus::Undetermined) {
        qApp->requestPermission(permission, context, [answered](const QPermission &answer) {
            answered(answer.status() == Qt::PermissionStatus::Granted);
        });
        return;
    }
    answered(status == Qt::PermissionStatus::Granted);
#else
    answered(true);
#endif
}
