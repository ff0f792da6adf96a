// SPDX-License-Identifier: MIT
#include "commands/dives/divelist.h"

using namespace Qt::StringLiterals;

void DiveList::declare(Arguments &arguments)
{
    m_known.declare(arguments);
    m_choice.declareWithFlag(arguments);
}

void DiveList::run(const Options &options) const
{
    if (m_choice.isSaved()) {
        m_known.requireNone(u"Omit it, or --saved."_s);
        showSaved(m_choice, options);
    } else {
        m_choice.requireNone(u"Add --saved."_s);
        showLive(m_known.numbers(), options);
    }
}
