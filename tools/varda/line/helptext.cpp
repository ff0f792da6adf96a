// SPDX-License-Identifier: MIT
#include "line/helptext.h"

#include "line/usage.h"
#include "output/terminal.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

std::string section(const std::string &title, const Rows &rows, const TextStyle &style)
{
    if (rows.empty())
        return {};
    std::size_t width = 0;
    for (const auto &[left, right] : rows)
        width = std::max(width, left.size());
    std::string text = '\n' + heading(QString::fromStdString(title), style).toStdString() + ":\n";
    for (const auto &[left, right] : rows)
        text.append("  ").append(left).append(width - left.size() + 2, ' ').append(right) += '\n';
    return text;
}

/** "-h, --help" or "--mode MODE"; the value's name is the option's type name. */
std::string signature(const CLI::Option &option)
{
    std::string text;
    for (const std::string &name : option.get_snames())
        text += "-" + name + ", ";
    for (const std::string &name : option.get_lnames())
        text += "--" + name + ", ";
    text.erase(text.size() - 2);
    const std::string value = option.get_type_name();
    return value.empty() ? text : text + " " + value;
}

class Formatter : public CLI::FormatterBase
{
public:
    std::string make_help(const CLI::App *app, std::string /*name*/,
                          CLI::AppFormatMode /*mode*/) const override
    {
        return helpText(*app);
    }
};

} // namespace

std::string commandList(const CLI::App &command, const TextStyle &style)
{
    Rows commands;
    for (const CLI::App *each : command.get_subcommands({}))
        commands.emplace_back(each->get_name(), each->get_description());
    return section("Commands", commands, style);
}

std::string helpText(const CLI::App &command)
{
    Rows arguments;
    Rows options;
    std::string usage = "Usage: " + commandText(command).toStdString() + " [OPTIONS]";
    for (const CLI::Option *option : command.get_options()) {
        if (!option->get_positional()) {
            options.emplace_back(signature(*option), option->get_description());
            continue;
        }
        usage += " " + option->get_type_name();
        if (option->get_items_expected_max() > 1)
            usage += "...";
        arguments.emplace_back(option->get_type_name(), option->get_description());
    }
    const TextStyle style = outputStyle();
    const std::string commands = commandList(command, style);
    if (!commands.empty())
        usage += command.get_require_subcommand_min() > 0 ? " COMMAND" : " [COMMAND]";

    std::string text = command.get_description() + "\n\n" + usage + "\n";
    text += commands;
    text += section("Arguments", arguments, style);
    text += section("Options", options, style);
    const std::string footer = command.get_footer();
    if (command.get_parent())
        text += "\n\"varda --help\" shows the options of all commands.\n";
    return footer.empty() ? text : text + "\n" + footer + "\n";
}

std::shared_ptr<CLI::FormatterBase> helpFormatter()
{
    return std::make_shared<Formatter>();
}
