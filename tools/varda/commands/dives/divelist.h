// SPDX-License-Identifier: MIT
#pragma once

#include "line/choices/knowndives.h"
#include "line/choices/savedchoice.h"
#include "line/command.h"

/** A command that lists dives: those in a computer, or with --saved those in the logbook's file. */
class DiveList : public Command
{
public:
    using Command::Command;

    void declare(Arguments &arguments) final;
    [[nodiscard]] bool usesComputer() const final { return !m_choice.isSaved(); }
    void run(const Options &options) const final;

private:
    virtual void showSaved(const SavedChoice &choice, const Options &options) const = 0;
    /** @param known  dives to skip */
    virtual void showLive(const QList<std::uint16_t> &known, const Options &options) const = 0;

    KnownDives m_known;
    SavedChoice m_choice;
};
