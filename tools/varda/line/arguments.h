// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** Accepts whole numbers from @p low to @p high. */
template <typename Number> CLI::Validator between(Number low, Number high)
{
    // Its description would stand in the help.
    return CLI::Range(low, high).description("");
}

/** Dive numbers as people write them, "1,2,5-9": in order, each once; nothing if it is no such. */
[[nodiscard]] std::optional<QList<std::uint16_t>> numbersIn(const std::string &text);
/** Of several such texts, which are valid. */
[[nodiscard]] QList<std::uint16_t> numbersIn(const std::vector<std::string> &texts);
/** Accepts what numbersIn() does. */
[[nodiscard]] CLI::Validator numberList();
