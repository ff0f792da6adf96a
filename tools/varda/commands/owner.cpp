// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/commandline.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

void printOwner(const Runner &runner, const QString &owner, bool json, const QString &heading)
{
    if (json)
        print({{"device"_L1, fieldsOf(runner.device())}, {"owner"_L1, owner}});
    else
        print(heading + safeText(owner) + u'\n');
}

void showOwner(const Options &options)
{
    Runner runner(options);
    const QString owner = runner.resultOf(runner.computer().readOwner(), u"Reading the owner"_s);
    printOwner(runner, owner, options.json, {});
}

void setOwner(const Options &options, const QString &owner)
{
    Runner runner(options, Purpose::Writing);
    const QString written = runner.resultOf(runner.computer().writeOwner(owner),
                                            u"Writing the owner"_s);
    printOwner(runner, written, options.json, runner.heading());
}

/** More would not fit in one write on any link. */
std::string validOwner(const std::string &text)
{
    constexpr std::size_t kLongest = 200;
    return text.size() <= kLongest ? std::string() : "the text is too long";
}

} // namespace

void addOwner(CommandLine &line)
{
    CLI::App *const owner = line.add("owner", "Show or set the computer's owner", showOwner);
    const auto text = std::make_shared<std::string>();
    CLI::App *const set = line.addTo(owner, "set", "Write another owner into the computer",
                                     [text](const Options &options) {
                                         setOwner(options, QString::fromLocal8Bit(text->c_str()));
                                     });
    set->add_option("TEXT", *text, "The owner; computers keep 32 bytes")
        ->type_name("TEXT")
        ->required()
        ->check(CLI::Validator(validOwner, ""));
}
