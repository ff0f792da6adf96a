// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qurl.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqmlregistration.h>

/** Small files that the diver chooses: firmware, layouts, the text of a log. */
class LocalFile : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /** As people write it. */
    Q_INVOKABLE static QString path(const QUrl &file);
    Q_INVOKABLE static bool exists(const QUrl &file);
    /** "name", "bytes", and "error": the system's words, or empty. */
    Q_INVOKABLE static QVariantMap read(const QUrl &file);
    /** A text or bytes, whole or not at all; the system's words if it fails. */
    Q_INVOKABLE static QString write(const QUrl &file, const QVariant &contents);
};
