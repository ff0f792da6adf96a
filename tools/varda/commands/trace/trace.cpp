// SPDX-License-Identifier: MIT
#include "commands/trace/trace.h"

#include "commands/commands.h"
#include "line/arguments.h"
#include "line/options.h"

namespace {

/** One that reads a file. */
class FileCommand : public Command
{
public:
    using Command::Command;

    [[nodiscard]] bool usesComputer() const override { return false; }
    void declare(Arguments &arguments) override
    {
        arguments.argument("FILE", m_file, "A trace, or the Bluetooth log of a phone");
    }

protected:
    [[nodiscard]] const QString &file() const { return m_file; }

private:
    QString m_file;
};

class ShowTrace : public FileCommand
{
public:
    ShowTrace() : FileCommand("show", "Show what was said, and what went wrong") { }

    void run(const Options &options) const override { showTrace(file(), options); }
};

class ShowTraceStats : public FileCommand
{
public:
    ShowTraceStats() : FileCommand("stats", "Show how long everything took") { }

    void run(const Options &options) const override { showTraceStats(file(), options); }
};

class ConvertTrace : public FileCommand
{
public:
    ConvertTrace() : FileCommand("convert", "Make a Bluetooth log of a trace, or the reverse") { }

    void declare(Arguments &arguments) override
    {
        FileCommand::declare(arguments);
        arguments.argument("TO", m_to, "The file to write: NAME.jsonl, NAME.btsnoop, NAME.log");
        arguments.choice("--format", "FORMAT", m_format, "trace", "btsnoop",
                         "trace or btsnoop; else by the file's ending");
    }

    void run(const Options &options) const override
    {
        convertTrace(file(), m_to, m_format, options);
    }

private:
    QString m_to;
    QString m_format;
};

class Trace : public Command
{
public:
    Trace() : Command("trace", "Look at a recorded trace, or convert it for Wireshark")
    {
        add<ShowTrace>();
        add<ShowTraceStats>();
        add<ConvertTrace>();
    }

    [[nodiscard]] bool needsSubcommand() const override { return true; }
    [[nodiscard]] bool usesComputer() const override { return false; }
    void run(const Options & /*options*/) const override { }
};

} // namespace

void addTrace(Commands &commands)
{
    commands.push_back(std::make_unique<Trace>());
}
