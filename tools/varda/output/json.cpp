// SPDX-License-Identifier: MIT
#include "output/json.h"

#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace {

constexpr int kStep = 4;

/** Whether it stands in JSON as it is. */
bool isPlain(const QString &text)
{
    return std::ranges::all_of(text, [](QChar each) {
        return each >= u' ' && each <= u'~' && each != u'"' && each != u'\\';
    });
}

void appendQuoted(QByteArray &out, const QString &text)
{
    if (isPlain(text)) {
        out.append('"').append(text.toLatin1()).append('"');
        return;
    }
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    out.append(QByteArrayView(list).sliced(1, list.size() - 2));
}

/** The name of a field is plain. */
void appendName(QByteArray &out, QLatin1StringView name)
{
    out.append('"').append(name.data(), name.size()).append("\": ");
}

/** What reads back as the same number, of either precision. */
template <typename Number> QByteArray shortest(Number value)
{
    if (!std::isfinite(value))
        return "null"; // JSON has no word for it
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end - buffer.data()};
}

/** All elements into one text: pieces would be copied again and again. */
template <typename List, typename Function>
void join(QByteArray &out, const List &list, QByteArrayView separator, Function appendOne)
{
    bool isFirst = true;
    for (const auto &each : list) {
        if (!isFirst)
            out.append(separator);
        isFirst = false;
        appendOne(each);
    }
}

} // namespace

QByteArray Json::literal(bool value)
{
    return value ? "true" : "false";
}

QByteArray Json::literal(float value)
{
    return shortest(value);
}

QByteArray Json::literal(double value)
{
    return shortest(value);
}

QByteArray Json::literal(qint64 value)
{
    return QByteArray::number(value);
}

QByteArray Json::literal(quint64 value)
{
    return QByteArray::number(value);
}

bool Json::isFlat() const
{
    return m_value.index() < 2;
}

void Json::appendInLine(QByteArray &out) const
{
    const auto appendElement = [&out](const Json &each) { each.appendInLine(out); };
    const auto appendMember = [&out](const auto &each) {
        appendName(out, each.first);
        each.second.appendInLine(out);
    };
    if (const auto *literal = std::get_if<QByteArray>(&m_value)) {
        out.append(*literal);
    } else if (const auto *text = std::get_if<QString>(&m_value)) {
        appendQuoted(out, *text);
    } else if (const auto *elements = std::get_if<std::vector<Json>>(&m_value)) {
        out.append('[');
        join(out, *elements, ", ", appendElement);
        out.append(']');
    } else {
        out.append('{');
        join(out, std::get<Fields>(m_value), ", ", appendMember);
        out.append('}');
    }
}

void Json::appendLines(QByteArray &out, const Fields &members, int indent)
{
    join(out, members, ",\n", [&](const auto &each) {
        out.append(indent, ' ');
        appendName(out, each.first);
        each.second.appendText(out, indent);
    });
}

void Json::appendText(QByteArray &out, int indent) const
{
    const int inner = indent + kStep;
    if (const auto *members = std::get_if<Fields>(&m_value)) {
        if (members->empty()) {
            out.append("{}");
            return;
        }
        out.append("{\n");
        appendLines(out, *members, inner);
        out.append('\n').append(indent, ' ').append('}');
        return;
    }
    const auto *elements = std::get_if<std::vector<Json>>(&m_value);
    if (!elements || std::ranges::all_of(*elements, &Json::isFlat)) {
        appendInLine(out);
        return;
    }
    out.append("[\n");
    join(out, *elements, ",\n", [&out, inner](const Json &each) {
        const auto *members = std::get_if<Fields>(&each.m_value);
        const bool isRow = members && std::ranges::all_of(*members, [](const auto &member) {
                               return member.second.isFlat();
                           });
        out.append(inner, ' ');
        if (isRow)
            each.appendInLine(out);
        else
            each.appendText(out, inner);
    });
    out.append('\n').append(indent, ' ').append(']');
}

QByteArray Json::lines(const Fields &members, int indent)
{
    QByteArray out;
    appendLines(out, members, indent);
    return out;
}

QByteArray Json::line() const
{
    QByteArray out;
    appendInLine(out);
    return out;
}

QByteArray Json::text(int indent) const
{
    QByteArray out;
    appendText(out, indent);
    return out;
}

QString Json::plain() const
{
    if (const auto *literal = std::get_if<QByteArray>(&m_value))
        return QString::fromLatin1(*literal);
    if (const auto *text = std::get_if<QString>(&m_value))
        return *text;
    QStringList parts;
    if (const auto *elements = std::get_if<std::vector<Json>>(&m_value)) {
        for (const Json &each : *elements)
            parts.append(each.plain());
        return parts.join(u' ');
    }
    for (const auto &[name, value] : std::get<Fields>(m_value))
        parts.append(value.plain());
    return parts.join(u'/');
}
