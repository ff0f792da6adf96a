// SPDX-License-Identifier: MIT
#include "line/arguments.h"

#include "line/grammar/grammar.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace {

QString textOf(const std::string &text)
{
    return QString::fromLocal8Bit(text.c_str());
}

QStringList textsOf(const std::vector<std::string> &texts)
{
    QStringList list;
    for (const std::string &text : texts)
        list.append(textOf(text));
    return list;
}

// CLI11 would show the descriptions of validators in the help.

CLI::Validator validator(const Check &check)
{
    return {[check](const std::string &text) {
                return check ? check(textOf(text)).toLocal8Bit().toStdString() : std::string();
            },
            ""};
}

/** @p validator, but with words of ours: @p wrong comes after the value. */
CLI::Validator reworded(const CLI::Validator &validator, const std::string &wrong)
{
    return {[=](const std::string &text) {
                return validator(text).empty() ? std::string() : "\"" + text + "\" " + wrong;
            },
            ""};
}

CLI::Validator between(const IntRange &range)
{
    return reworded(CLI::Range(range.lowest, range.highest),
                    "is not a number from " + std::to_string(range.lowest) + " to "
                        + std::to_string(range.highest));
}

using Words = std::vector<std::string>;

/** "gatt, sps" with what comes before the last one. */
std::string joined(const Words &words, const std::string &beforeLast)
{
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0)
            text += i + 1 == words.size() ? beforeLast : ", ";
        text += words[i];
    }
    return text;
}

/** Makes the value one of these in small letters. */
CLI::Validator oneOf(const Words &words)
{
    const auto check = [words](std::string &text) {
        const std::string word = textOf(text).toLower().toStdString();
        if (std::find(words.begin(), words.end(), word) == words.end())
            return "\"" + text + "\" is neither " + joined(words, " nor ");
        text = word;
        return std::string();
    };
    return {check, "", nameOfWords(words)};
}

CLI::Option *required(CLI::Option *argument, const char *name)
{
    return argument->type_name(name)->required();
}

} // namespace

void Arguments::flag(const char *name, bool &target, const char *description)
{
    m_command.add_flag(name, target, description);
}

void Arguments::option(const char *name, const char *valueName, QString &target,
                       const char *description, const Check &check)
{
    const auto take = [&target](const std::string &text) { target = textOf(text); };
    m_command.add_option_function<std::string>(name, take, description)
        ->type_name(valueName)
        ->check(validator(check));
}

void Arguments::choice(const char *name, const char *valueName, QString &target, const char *one,
                       const char *other, const char *description)
{
    const auto take = [&target](const std::string &text) { target = textOf(text); };
    m_command.add_option_function<std::string>(name, take, description)
        ->type_name(valueName)
        ->transform(oneOf({one, other}));
}

void Arguments::choice(const char *name, const char *valueName, QString &target,
                       std::initializer_list<const char *> words, const char *description)
{
    const auto take = [&target](const std::string &text) { target = textOf(text); };
    m_command.add_option_function<std::string>(name, take, description)
        ->type_name(valueName)
        ->transform(oneOf({words.begin(), words.end()}));
}

void Arguments::option(const char *name, const char *valueName, QStringList &target,
                       const char *description, const Check &check)
{
    using Texts = std::vector<std::string>;
    const auto take = [&target](const Texts &texts) { target = textsOf(texts); };
    m_command.add_option_function<Texts>(name, take, description)
        ->type_name(valueName)
        ->check(validator(check));
}

void Arguments::argument(const char *name, QString &target, const char *description,
                         const Check &check)
{
    const auto take = [&target](const std::string &text) { target = textOf(text); };
    required(m_command.add_option_function<std::string>(name, take, description), name)
        ->check(validator(check));
}

void Arguments::argument(const char *name, QStringList &target, const char *description,
                         const Check &check)
{
    using Texts = std::vector<std::string>;
    const auto take = [&target](const Texts &texts) { target = textsOf(texts); };
    required(m_command.add_option_function<Texts>(name, take, description), name)
        ->check(validator(check));
}

void Arguments::argument(const char *name, QString &target,
                         std::initializer_list<const char *> words, const char *description)
{
    const auto take = [&target](const std::string &text) { target = textOf(text); };
    required(m_command.add_option_function<std::string>(name, take, description), name)
        ->transform(oneOf({words.begin(), words.end()}));
}

void Arguments::optionalArgument(const char *name, QStringList &target, const char *description,
                                 const Check &check)
{
    using Texts = std::vector<std::string>;
    const auto take = [&target](const Texts &texts) { target = textsOf(texts); };
    m_command.add_option_function<Texts>(name, take, description)
        ->type_name(std::string("[") + name + "]")
        ->check(validator(check));
}

void Arguments::argument(const char *name, int &target, const IntRange &range,
                         const char *description)
{
    required(m_command.add_option(name, target, description), name)->check(between(range));
}

void Arguments::argument(const char *name, std::uint8_t &target, const char *description)
{
    // As a number: to CLI11 the type itself is a character.
    const auto take = [&target](int value) { target = std::uint8_t(value); };
    required(m_command.add_option_function<int>(name, take, description), name)
        ->check(between({0, std::numeric_limits<std::uint8_t>::max()}));
}

void Arguments::argument(const char *name, std::uint32_t &target, const char *description)
{
    required(m_command.add_option(name, target, description), name)
        ->check(reworded(CLI::TypeValidator<std::uint32_t>(""), "is not a positive number"));
}

void Arguments::argument(const char *name, float &target, const char *description)
{
    required(m_command.add_option(name, target, description), name)
        ->check(reworded(CLI::TypeValidator<float>(""), "is not a number"));
}

void Arguments::argument(const char *name, bool &target, const char *description)
{
    const auto take = [&target](const std::string &text) { target = text == "on"; };
    m_command.add_option_function<std::string>(name, take, description)
        ->type_name("on|off")
        ->required()
        ->transform(oneOf({"on", "off"}));
}
