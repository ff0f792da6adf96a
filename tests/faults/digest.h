// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <varda/recordfields.h>

#include <array>
#include <charconv>
#include <type_traits>

/** Values one after the other as text; of a record, each of its fields. */
class Digest
{
public:
    template <typename... Values> void add(const Values &...values) { (addOne(values), ...); }

    QByteArray text;

private:
    template <typename Value> void addOne(const Value &value)
    {
        if constexpr (hasFields<Value>)
            forEachField<Value>([&](QLatin1StringView, auto get, auto) { addOne(get(value)); });
        else if constexpr (std::is_enum_v<Value> || std::is_same_v<Value, bool>)
            addNumber(int(value));
        else if constexpr (std::is_arithmetic_v<Value>)
            addNumber(value);
        else if constexpr (std::is_same_v<Value, QString>)
            text += value.toUtf8().toPercentEncoding() + ' ';
        else if constexpr (std::is_same_v<Value, QByteArray>)
            text += value.toHex() + ' ';
        else
            addAll(value);
    }

    /** Every bit of it counts. */
    template <typename Number> void addNumber(Number number)
    {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        text.append(digits.data(), end - digits.data()).append(' ');
    }

    template <typename Range> void addAll(const Range &range)
    {
        text += '[';
        for (const auto &each : range)
            addOne(each);
        text += ']';
    }
};
