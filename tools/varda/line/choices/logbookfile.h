// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

#include <QtCore/qstring.h>

class Arguments;

/** The file in which dives are saved. */
class LogbookFile
{
public:
    /** Adds --logbook to a command. */
    void declare(Arguments &arguments);
    [[nodiscard]] bool isGiven() const { return !m_name.isEmpty(); }
    /** The one that was named, or else the usual one; simulated computers have one of their own. */
    [[nodiscard]] QString name(const Options &options) const;

private:
    QString m_name;
};
