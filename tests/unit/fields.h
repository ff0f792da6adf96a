// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>

#include <array>
#include <type_traits>

// Whole records as lists of "name=value", so that a comparison names the field that differs.

/** The list that a text of such fields, separated by white space, stands for. */
inline QStringList fieldList(const char *text)
{
    return QString::fromUtf8(text).simplified().split(QLatin1Char(' '));
}

/** All digits of an unsigned number, hexadecimal. */
template <typename Number> QString hexOf(Number value)
{
    static_assert(std::is_unsigned_v<Number>);
    return QStringLiteral("%1").arg(quint64(value), int(2 * sizeof(Number)), 16, QLatin1Char('0'));
}

/** Bytes one after the other, words with commas between them. */
template <typename Number, std::size_t N> QString hexOf(const std::array<Number, N> &values)
{
    QStringList texts;
    for (const Number value : values)
        texts << hexOf(value);
    return texts.join(QLatin1String(sizeof(Number) == 1 ? "" : ","));
}

template <std::size_t N> QString hexOf(const std::array<char, N> &text)
{
    return QString::fromLatin1(QByteArray(text.data(), qsizetype(text.size())).toHex());
}

#define FIELD(record, name) (QStringLiteral(#name "=") + hexOf((record).name))
