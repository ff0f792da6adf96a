// SPDX-License-Identifier: MIT
#include "line/choices/divenumbers.h"

#include <charconv>
#include <set>

using namespace Qt::StringLiterals;

namespace {

using Numbers = std::set<std::uint16_t>;

bool readNumber(const char *&at, const char *end, std::uint16_t &number)
{
    const auto [rest, error] = std::from_chars(at, end, number);
    at = rest;
    return error == std::errc();
}

bool readList(const QString &text, Numbers &numbers)
{
    const QByteArray bytes = text.toUtf8();
    const char *at = bytes.data();
    const char *const end = at + bytes.size();
    while (true) {
        std::uint16_t first = 0;
        if (!readNumber(at, end, first))
            return false;
        std::uint16_t last = first;
        if (at != end && *at == '-') {
            ++at;
            if (!readNumber(at, end, last) || last < first)
                return false;
        }
        for (std::uint32_t number = first; number <= last; ++number)
            numbers.insert(std::uint16_t(number));
        if (at == end)
            return true;
        if (*at++ != ',')
            return false;
    }
}

QList<std::uint16_t> listOf(const Numbers &numbers)
{
    return {numbers.begin(), numbers.end()};
}

} // namespace

std::optional<QList<std::uint16_t>> numbersIn(const QString &text)
{
    Numbers numbers;
    if (!readList(text, numbers))
        return std::nullopt;
    return listOf(numbers);
}

QList<std::uint16_t> numbersIn(const QStringList &texts)
{
    Numbers numbers;
    for (const QString &text : texts)
        readList(text, numbers);
    return listOf(numbers);
}

QString checkNumbers(const QString &text)
{
    if (numbersIn(text))
        return {};
    return u"\"%1\" is not a list of dive numbers such as 1,2,5-9"_s.arg(text);
}

std::optional<DiveNames> diveNamesIn(const QString &text)
{
    DiveNames names;
    QStringList numbers;
    const QStringList parts = text.split(u',');
    for (const QString &part : parts) {
        if (!part.startsWith(u'@')) {
            numbers.append(part);
            continue;
        }
        const QByteArray digits = part.mid(1).toUtf8();
        const char *const end = digits.data() + digits.size();
        qint64 id = 0;
        const auto [rest, error] = std::from_chars(digits.data(), end, id);
        if (error != std::errc() || rest != end || id < 1)
            return std::nullopt;
        names.ids.append(id);
    }
    if (numbers.isEmpty())
        return names;
    const auto list = numbersIn(numbers.join(u','));
    if (!list)
        return std::nullopt;
    names.numbers = *list;
    return names;
}

DiveNames diveNamesIn(const QStringList &texts)
{
    return diveNamesIn(texts.join(u',')).value_or(DiveNames());
}

QString checkDiveNames(const QString &text)
{
    if (diveNamesIn(text))
        return {};
    return u"\"%1\" is neither a list of dive numbers such as 1,2,5-9 nor the ID of a saved dive "
           "such as @12"_s.arg(text);
}
