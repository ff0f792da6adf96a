// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "output/documents.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

void printOwner(const Runner &runner, const QString &owner, bool json, const QString &heading)
{
    if (json)
        print(documents::withDevice(runner.device(), documents::owner(owner)));
    else
        print(heading + safeText(owner) + u'\n');
}

/** More would not fit in one write on any link. */
QString checkOwner(const QString &text)
{
    constexpr qsizetype kLongest = 200;
    return text.toUtf8().size() <= kLongest ? QString() : u"the text is too long"_s;
}

class SetOwner : public Command
{
public:
    SetOwner() : Command("set", "Change the computer's owner") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("TEXT", m_owner, "Name of the owner; computers keep 32 bytes",
                           checkOwner);
    }

    void run(const Options &options) const override
    {
        Runner runner(options, Purpose::Writing);
        const QString written = runner.resultOf(runner.computer().writeOwner(m_owner),
                                                u"Writing the owner"_s);
        printOwner(runner, written, options.json, runner.heading());
    }

private:
    QString m_owner;
};

class ShowOwner : public Command
{
public:
    ShowOwner() : Command("owner", "Show or set the computer's owner") { add<SetOwner>(); }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const QString owner = runner.resultOf(runner.computer().readOwner(),
                                              u"Reading the owner"_s);
        printOwner(runner, owner, options.json, {});
    }
};

} // namespace

void addOwner(Commands &commands)
{
    commands.push_back(std::make_unique<ShowOwner>());
}
