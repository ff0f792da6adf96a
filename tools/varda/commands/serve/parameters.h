// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <cstdint>

/**
 * The parameters of a request. A method asks for each that it knows; what is wrong with one, or is
 * none of them, is thrown as a RequestError.
 */
class Parameters
{
public:
    explicit Parameters(QJsonObject parameters) : m_parameters(std::move(parameters)) { }

    /** False if it is not there. */
    [[nodiscard]] bool flag(QLatin1StringView name);
    /** True if it is not there. */
    [[nodiscard]] bool flagOrTrue(QLatin1StringView name);
    [[nodiscard]] bool requiredFlag(QLatin1StringView name);
    [[nodiscard]] qint64 integer(QLatin1StringView name, qint64 lowest, qint64 highest);
    [[nodiscard]] qint64 integer(QLatin1StringView name, qint64 lowest, qint64 highest,
                                 qint64 ifMissing);
    [[nodiscard]] float real(QLatin1StringView name);
    [[nodiscard]] QString text(QLatin1StringView name);
    /** An existing file, not a device or a pipe: those could keep everybody waiting. */
    [[nodiscard]] QString file(QLatin1StringView name);
    /** The same of one that may be missing; empty if none is named. */
    [[nodiscard]] QString fileToWrite(QLatin1StringView name);
    /** Bytes in hexadecimal. */
    [[nodiscard]] QByteArray bytes(QLatin1StringView name);
    /** Numbers of dives, in order, each once. Empty if they are not there. */
    [[nodiscard]] QList<std::uint16_t> diveNumbers(QLatin1StringView name);
    /** A number or a text, as it is. */
    [[nodiscard]] QJsonValue id(QLatin1StringView name);

    /** @param what  would be done */
    void requireConfirmation(const QString &what);
    void requireNoOthers() const;

private:
    [[nodiscard]] QJsonValue take(QLatin1StringView name);
    [[nodiscard]] QJsonValue takeRequired(QLatin1StringView name);

    QJsonObject m_parameters;
};
