// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

#include <QtCore/qstringlist.h>

#include <optional>

/**
 * What the user has set once for all commands: lines of "name = value" in a file of the command's
 * own. Empty lines and those that begin with # are the user's and stay.
 */
class Defaults
{
public:
    static constexpr QLatin1StringView kDevice{"device"};
    static constexpr QLatin1StringView kUnits{"units"};

    /** Reads the file; without one nothing is set. @throws Failure  when it is no such file */
    Defaults();

    static QString fileName();
    [[nodiscard]] static bool isValid(const QString &name, const QString &value);

    /** Nothing when it is not set. */
    [[nodiscard]] std::optional<QString> value(const QString &name) const;
    /** Sets a value, or unsets it, and writes the file. @throws Failure */
    void change(const QString &name, const std::optional<QString> &value);

    /** What the command line leaves open. */
    void complete(Options &options) const;

private:
    QStringList m_lines;
};

/** Nothing for what is no name of units. */
[[nodiscard]] std::optional<Units> unitsIn(const QString &text);
