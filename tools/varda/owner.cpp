// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

void printOwner(const Connection &connection, bool json, const QString &heading)
{
    const QString owner = connection.session().owner();
    if (json)
        print({{"device"_L1, fieldsOf(connection.device())}, {"owner"_L1, owner}});
    else
        print(heading + safeText(owner) + u'\n');
}

void showOwner(const Options &options)
{
    Connection connection(options);
    connection.read(TidemarCommand::Owner, u"owner"_s);
    printOwner(connection, options.json, {});
}

void setOwner(const Options &options, const QString &owner)
{
    Connection connection(options, Purpose::Writing);
    connection.run({.name = u"owner"_s,
                    .end = TidemarCommand::Set_owner,
                    .start = [&owner](VardaSession &session) { session.setOwner(owner); },
                    .verb = u"Writing the"_s});
    printOwner(connection, options.json, connection.heading());
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
