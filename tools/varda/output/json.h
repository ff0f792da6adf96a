// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

class Json;

/** A record's fields under their own names, in their own order. */
using Fields = std::vector<std::pair<QLatin1StringView, Json>>;

/** A JSON value. Unlike QJsonObject's, the members of an object keep their order. */
class Json
{
public:
    // That a value is a JSON value goes without saying.
    // NOLINTBEGIN(google-explicit-constructor)
    Json(const QString &text) : m_value(text) { }
    Json(Fields members) : m_value(std::move(members)) { }
    Json(std::vector<Json> elements) : m_value(std::move(elements)) { }
    Json(std::nullptr_t) : m_value(QByteArray("null")) { }
    template <typename Number>
        requires std::is_arithmetic_v<Number>
    Json(Number number) : m_value(literal(number))
    {
    }
    // NOLINTEND(google-explicit-constructor)

    /** Pretty, but for what is easier to read on one line. @param indent  of the lines below */
    [[nodiscard]] QByteArray text(int indent = 0) const;
    /** All of it on one line. */
    [[nodiscard]] QByteArray line() const;
    /** The values alone, on one line. */
    [[nodiscard]] QString plain() const;
    /** The members' lines without the braces around them. */
    [[nodiscard]] static QByteArray lines(const Fields &members, int indent);

private:
    static QByteArray literal(bool value);
    static QByteArray literal(float value);
    static QByteArray literal(double value);
    static QByteArray literal(qint64 value);
    static QByteArray literal(quint64 value);
    template <typename Integer> static QByteArray literal(Integer value)
    {
        using Wide = std::conditional_t<std::is_signed_v<Integer>, qint64, quint64>;
        return literal(Wide(value));
    }
    [[nodiscard]] bool isFlat() const;
    void appendInLine(QByteArray &out) const;
    void appendText(QByteArray &out, int indent) const;
    static void appendLines(QByteArray &out, const Fields &members, int indent);

    // A number, true, false or null is kept as it is written.
    std::variant<QByteArray, QString, std::vector<Json>, Fields> m_value;
};

inline void append(Fields &fields, const Fields &more)
{
    fields.insert(fields.end(), more.begin(), more.end());
}

template <typename Range, typename Function> Json listOf(const Range &range, Function toJson)
{
    std::vector<Json> elements;
    elements.reserve(std::size_t(range.size()));
    for (const auto &each : range)
        elements.emplace_back(toJson(each));
    return elements;
}

template <typename Range> Json listOf(const Range &range)
{
    return listOf(range, [](const auto &each) -> Json { return each; });
}

/** Many readers of JSON keep only 53 bits of a number: wider ones are texts. */
template <typename Integer> Json wide(Integer value)
{
    return QString::number(value);
}
