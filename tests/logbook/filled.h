// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

#include <array>
#include <type_traits>

#include <varda/recordfields.h>

/** Records with another value in each field, and what is different in two of them. */
namespace Filled {

template <typename Type> inline constexpr bool kIsList = false;
template <typename Type> inline constexpr bool kIsList<QList<Type>> = true;
template <typename Type> inline constexpr bool kIsArray = false;
template <typename Type, std::size_t size>
inline constexpr bool kIsArray<std::array<Type, size>> = true;

template <typename Record> Record record(int &seed);

template <typename Type> Type value(int &seed)
{
    ++seed;
    if constexpr (kIsList<Type>) {
        return {record<typename Type::value_type>(seed), record<typename Type::value_type>(seed)};
    } else if constexpr (kIsArray<Type>) {
        Type array{};
        for (auto &each : array)
            each = value<typename Type::value_type>(seed);
        return array;
    } else if constexpr (std::is_same_v<Type, QString>) {
        return QStringLiteral("ü'\"; %1 \n深").arg(seed);
    } else if constexpr (std::is_same_v<Type, bool>) {
        return seed % 2 == 0;
    } else if constexpr (std::is_floating_point_v<Type>) {
        return Type(seed) + Type(0.1);
    } else {
        return Type(seed);
    }
}

template <typename Record> Record record(int &seed)
{
    Record filled;
    forEachField<Record>([&](QLatin1StringView, auto get, auto set) {
        set(filled, value<std::decay_t<decltype(get(filled))>>(seed));
    });
    return filled;
}

template <typename Record>
void compare(const Record &one, const Record &other, const QString &path, QStringList &differences)
{
    forEachField<Record>([&](QLatin1StringView name, auto get, auto) {
        using Type = std::decay_t<decltype(get(one))>;
        const QString here = path + u'.' + name;
        if constexpr (kIsList<Type>) {
            if (get(one).size() != get(other).size()) {
                differences << here;
                return;
            }
            for (qsizetype i = 0; i < get(one).size(); ++i)
                compare(get(one).at(i), get(other).at(i), here, differences);
        } else if (get(one) != get(other)) {
            differences << here;
        }
    });
}

template <typename Record> QStringList differences(const Record &one, const Record &other)
{
    QStringList found;
    compare(one, other, {}, found);
    return found;
}

} // namespace Filled
