// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <cstdint>

class Arguments;

/** The dives that the user has already. */
class KnownDives
{
public:
    /** Adds --known to a command. */
    void declare(Arguments &arguments);
    /** Saved dives are not skipped. @throws Failure  with @p advice if any are given */
    void requireNone(const QString &advice) const;
    /** Reads them from their file, or from standard input, if that is meant. @throws Failure */
    [[nodiscard]] QList<std::uint16_t> numbers() const;

private:
    QStringList m_texts;
};
