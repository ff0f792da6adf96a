// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include <varda/logbookerror.h>

/**
 * A call to a LogbookStore: it ends once, from the event loop. It stays as long as it runs or QML
 * refers to it.
 */
class LogbookCall : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Call a function of LogbookStore.")
    /** What the call gave; undefined before its end and after an error. */
    Q_PROPERTY(QVariant value READ value NOTIFY finished)
    Q_PROPERTY(LogbookError::Kind error READ error NOTIFY finished)
    /** One line for people. */
    Q_PROPERTY(QString errorText READ errorText NOTIFY finished)
    /** What the user can do about it, in one line. */
    Q_PROPERTY(QString remedy READ remedy NOTIFY finished)
    Q_PROPERTY(bool isFinished READ isFinished NOTIFY finished)

public:
    using QObject::QObject;

    [[nodiscard]] QVariant value() const { return m_value; }
    [[nodiscard]] LogbookError::Kind error() const { return m_error.kind; }
    [[nodiscard]] QString errorText() const { return m_error.text; }
    [[nodiscard]] QString remedy() const { return m_error.remedy; }
    [[nodiscard]] bool isFinished() const { return m_isFinished; }

    /** The store says how it went. */
    void finish(const QVariant &value, const LogbookError &error);

Q_SIGNALS:
    void finished(LogbookCall *call);

private:
    QVariant m_value;
    LogbookError m_error;
    bool m_isFinished = false;
};
