// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

#include <memory>
#include <optional>

struct Grammar;

/** What the process is asked to do. */
class CommandLine
{
public:
    CommandLine();
    ~CommandLine();
    Q_DISABLE_COPY_MOVE(CommandLine)

    /**
     * Reads the arguments; prints help and errors.
     *
     * @return the status to end with, if there is nothing more to do
     */
    [[nodiscard]] std::optional<int> parse(int argc, const char *const *argv);
    [[nodiscard]] bool drawsPictures() const;
    /** Does it; there is a QCoreApplication. @return the status to end with */
    [[nodiscard]] int run() const;

    [[nodiscard]] const Options &options() const;
    /** What may be asked for. */
    [[nodiscard]] Grammar grammar() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
