// SPDX-License-Identifier: MIT
#include "line/choices/logbookfile.h"

#include "line/arguments.h"

#include <varda/logbookstore.h>

void LogbookFile::declare(Arguments &arguments)
{
    arguments.option("--logbook", "FILE", m_name, "Use this file of saved dives");
}

QString LogbookFile::name(const Options &options) const
{
    return m_name.isEmpty() ? LogbookStore::defaultFile(options.simulates()) : m_name;
}
