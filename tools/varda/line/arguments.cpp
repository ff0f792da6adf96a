// SPDX-License-Identifier: MIT
#include "line/arguments.h"

#include <charconv>
#include <set>

namespace {

using Numbers = std::set<std::uint16_t>;

bool readNumber(const char *&at, const char *end, std::uint16_t &number)
{
    const auto [rest, error] = std::from_chars(at, end, number);
    at = rest;
    return error == std::errc();
}

bool readList(const std::string &text, Numbers &numbers)
{
    const char *at = text.data();
    const char *const end = at + text.size();
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

std::optional<QList<std::uint16_t>> numbersIn(const std::string &text)
{
    Numbers numbers;
    if (!readList(text, numbers))
        return std::nullopt;
    return listOf(numbers);
}

QList<std::uint16_t> numbersIn(const std::vector<std::string> &texts)
{
    Numbers numbers;
    for (const std::string &text : texts)
        readList(text, numbers);
    return listOf(numbers);
}

CLI::Validator numberList()
{
    return {[](const std::string &text) {
                if (numbersIn(text))
                    return std::string();
                return "\"" + text + "\" is no list of dive numbers such as 1,2,5-9";
            },
            ""};
}
