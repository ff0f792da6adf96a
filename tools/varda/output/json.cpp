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

QByteArray quoted(const QString &text)
{
    QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
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

QByteArray joined(const std::vector<QByteArray> &parts, const QByteArray &separator)
{
    QByteArray text;
    for (const QByteArray &part : parts) {
        if (!text.isEmpty())
            text += separator;
        text += part;
    }
    return text;
}

template <typename List, typename Function>
QByteArray joined(const List &list, const QByteArray &separator, Function textOf)
{
    std::vector<QByteArray> parts;
    parts.reserve(list.size());
    for (const auto &each : list)
        parts.push_back(textOf(each));
    return joined(parts, separator);
}

QByteArray margin(int indent)
{
    return QByteArray(indent, ' ');
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

QByteArray Json::inLine() const
{
    if (const auto *literal = std::get_if<QByteArray>(&m_value))
        return *literal;
    if (const auto *text = std::get_if<QString>(&m_value))
        return quoted(*text);
    if (const auto *elements = std::get_if<std::vector<Json>>(&m_value))
        return '[' + joined(*elements, ", ", [](const Json &each) { return each.inLine(); }) + ']';
    const auto member = [](const auto &each) {
        return quoted(each.first) + ": " + each.second.inLine();
    };
    return '{' + joined(std::get<Fields>(m_value), ", ", member) + '}';
}

QByteArray Json::lines(const Fields &members, int indent)
{
    const QByteArray start = margin(indent);
    return joined(members, ",\n", [&](const auto &each) {
        return start + quoted(each.first) + ": " + each.second.text(indent);
    });
}

QByteArray Json::text(int indent) const
{
    if (const auto *members = std::get_if<Fields>(&m_value)) {
        if (members->empty())
            return "{}";
        return "{\n" + lines(*members, indent + kStep) + '\n' + margin(indent) + '}';
    }
    const auto *elements = std::get_if<std::vector<Json>>(&m_value);
    if (!elements || std::ranges::all_of(*elements, &Json::isFlat))
        return inLine();
    const auto element = [indent](const Json &each) {
        const auto *members = std::get_if<Fields>(&each.m_value);
        const bool isRow = members && std::ranges::all_of(*members, [](const auto &member) {
                               return member.second.isFlat();
                           });
        return margin(indent + kStep) + (isRow ? each.inLine() : each.text(indent + kStep));
    };
    return "[\n" + joined(*elements, ",\n", element) + '\n' + margin(indent) + ']';
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
