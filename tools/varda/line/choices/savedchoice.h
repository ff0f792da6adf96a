// SPDX-License-Identifier: MIT
#pragma once

#include "line/choices/logbookfile.h"

#include <varda/logbookquery.h>

#include <QtCore/qstring.h>

class Arguments;

/** Which saved dives are meant. */
class SavedChoice
{
public:
    /** Adds --computer, --since, --until and --logbook to a command. */
    void declare(Arguments &arguments);
    /** Adds --saved as well, to a command that reads a computer without it. */
    void declareWithFlag(Arguments &arguments);

    [[nodiscard]] bool isSaved() const { return m_saved; }
    /**
     * A dive in a computer has none of these options.
     *
     * @throws Failure  with @p advice if one of them is given
     */
    void requireNone(const QString &advice) const;

    [[nodiscard]] QString file(const Options &options) const { return m_file.name(options); }
    /** Its serial number, address or name; empty for any. */
    [[nodiscard]] QString computer() const { return m_computer; }
    /** By the time. A dive whose begin is unknown is at no time. */
    [[nodiscard]] LogbookQuery query() const;

private:
    bool m_saved = false;
    QString m_computer;
    QString m_since;
    QString m_until;
    LogbookFile m_file;
};
