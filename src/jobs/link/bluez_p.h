// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qmap.h>
#include <QtCore/qvariant.h>
#include <QtCore/qversionnumber.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>

#include <optional>

#include <varda/vardajob.h>

/** The Bluetooth service of Linux, as it is seen on the system bus. */
namespace Bluez {

inline const QString kName = QStringLiteral("org.bluez");
inline const QString kAdapter = QStringLiteral("org.bluez.Adapter1");

/** All that the service has: paths, interfaces, properties. */
using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

/** Asks for Objects. */
[[nodiscard]] QDBusMessage objectsCall();
/** Nothing if it is another answer, or none. */
[[nodiscard]] std::optional<Objects> objectsIn(const QDBusMessage &reply);
/** The version that it gives its adapters; null if there is none, or if it gives another. */
[[nodiscard]] QVersionNumber versionIn(const Objects &objects);
/** What a call that has failed shows about the service; None if nothing. */
[[nodiscard]] VardaJob::Reason reasonOfError(const QDBusMessage &reply);

/** A service that is busy answers in milliseconds; a frozen one never. */
inline constexpr int kFrozenMs = 5000;

} // namespace Bluez
