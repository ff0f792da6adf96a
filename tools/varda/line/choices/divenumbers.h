// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <cstdint>
#include <optional>

/** Dive numbers as people write them, "1,2,5-9": in order, each once; nothing if it is no such. */
[[nodiscard]] std::optional<QList<std::uint16_t>> numbersIn(const QString &text);
/** Of several such texts, which are valid. */
[[nodiscard]] QList<std::uint16_t> numbersIn(const QStringList &texts);
/** Dives as people name them: numbers, and IDs of saved dives behind "@". */
struct DiveNames {
    QList<std::uint16_t> numbers; ///< in order, each once
    QList<qint64> ids;

    [[nodiscard]] bool isEmpty() const { return numbers.isEmpty() && ids.isEmpty(); }
};
/** "1,5-9,@12"; nothing if it is no such text. */
[[nodiscard]] std::optional<DiveNames> diveNamesIn(const QString &text);
/** Of several such texts, which are valid. */
[[nodiscard]] DiveNames diveNamesIn(const QStringList &texts);
/** What is wrong with a text that diveNamesIn() does not accept; empty if it does. */
[[nodiscard]] QString checkDiveNames(const QString &text);
/** What is wrong with a text that numbersIn() does not accept; empty if it does. */
[[nodiscard]] QString checkNumbers(const QString &text);
