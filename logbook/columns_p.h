// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>
#include <QtCore/qvariant.h>
#include <QtSql/qsqlquery.h>

#include <array>
#include <limits>
#include <type_traits>

#include <varda/recordfields.h>

/**
 * The fields of a record as columns of a table with the same names: numbers as they are, unsigned
 * ones of 64 bits as the signed with the same bits, arrays as text ("1,2,3"). Lists of records
 * have tables of their own.
 */
namespace Columns {

template <typename Type> inline constexpr bool kIsList = false;
template <typename Type> inline constexpr bool kIsList<QList<Type>> = true;
template <typename Type> inline constexpr bool kIsArray = false;
template <typename Type, std::size_t size>
inline constexpr bool kIsArray<std::array<Type, size>> = true;

template <typename Type> QVariant toColumn(const Type &value)
{
    if constexpr (std::is_floating_point_v<Type>) {
        return double(value);
    } else if constexpr (std::is_integral_v<Type> || std::is_enum_v<Type>) {
        return qint64(value);
    } else if constexpr (kIsArray<Type>) {
        QStringList texts;
        for (const auto &each : value)
            texts.append(QString::number(each));
        return texts.join(u',');
    } else {
        static_assert(std::is_same_v<Type, QString>);
        // A null text would be no text at all.
        return value.isNull() ? QString(QLatin1String("")) : value;
    }
}

template <typename Type> Type fromColumn(const QVariant &column)
{
    if constexpr (std::is_floating_point_v<Type>) {
        // SQLite keeps what is not a number as nothing.
        return column.isNull() ? std::numeric_limits<Type>::quiet_NaN() : Type(column.toDouble());
    } else if constexpr (std::is_same_v<Type, bool>) {
        return column.toLongLong() != 0;
    } else if constexpr (std::is_integral_v<Type> || std::is_enum_v<Type>) {
        return Type(column.toLongLong());
    } else if constexpr (kIsArray<Type>) {
        Type array{};
        const QStringList texts = column.toString().split(u',');
        for (std::size_t i = 0; i < array.size() && i < std::size_t(texts.size()); ++i)
            array[i] = typename Type::value_type(texts[qsizetype(i)].toLongLong());
        return array;
    } else {
        return column.toString();
    }
}

/** Calls @p function(name, get, set) for each field that is a column. */
template <typename Record, typename Function> void forEachColumn(Function function)
{
    forEachField<Record>([&](QLatin1StringView name, auto get, auto set) {
        using Type = std::decay_t<decltype(get(std::declval<const Record &>()))>;
        if constexpr (!kIsList<Type>)
            function(name, get, set, Type{});
    });
}

template <typename Record> QStringList names()
{
    QStringList found;
    forEachColumn<Record>(
        [&](QLatin1StringView name, auto, auto, auto) { found.append(u'"' + name + u'"'); });
    return found;
}

template <typename Record> void append(QVariantList &values, const Record &record)
{
    forEachColumn<Record>(
        [&](QLatin1StringView, auto get, auto, auto) { values.append(toColumn(get(record))); });
}

/** From the columns of the current row, beginning with @p first. */
template <typename Record> Record read(const QSqlQuery &query, int first)
{
    Record record;
    forEachColumn<Record>([&](QLatin1StringView, auto, auto set, auto example) {
        set(record, fromColumn<decltype(example)>(query.value(first++)));
    });
    return record;
}

} // namespace Columns
