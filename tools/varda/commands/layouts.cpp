// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/choices/confirmation.h"
#include "output/documents.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/files.h"
#include "run/runner.h"

#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>

using namespace Qt::StringLiterals;

namespace {

constexpr IntRange kIndexes{0, 255};

// list

constexpr int kEnoughName = 10; // where the terminal is narrow

QString listText(const QList<LayoutEntry> &layouts)
{
    if (layouts.isEmpty())
        return u"There are no layouts.\n"_s;
    Columns columns({{.title = u"INDEX"_s},
                     {.title = u"KIND"_s, .rank = 1},
                     {.title = u"NAME"_s, .side = Columns::Side::Left, .enough = kEnoughName}});
    for (const LayoutEntry &each : layouts)
        columns.add(
            {QString::number(each.first), QString::number(each.second), safeText(each.name)});
    return columns.text(outputStyle());
}

QList<LayoutEntry> readList(Runner &runner)
{
    return runner.resultOf(runner.computer().readLayouts(), u"Reading the list of layouts"_s);
}

void showList(const Options &options)
{
    Runner runner(options);
    const QList<LayoutEntry> layouts = readList(runner);
    if (options.json)
        print(documents::withDevice(runner.device(), documents::layouts(layouts)));
    else
        print(listText(layouts));
}

class ListLayouts : public Command
{
public:
    ListLayouts() : Command("list", "List the layouts") { }

    void run(const Options &options) const override { showList(options); }
};

// get

QString dump(const QByteArray &blob)
{
    constexpr qsizetype kInLine = 32;
    QString text;
    for (qsizetype at = 0; at < blob.size(); at += kInLine)
        text += QString::fromLatin1(blob.mid(at, kInLine).toHex(' ')) + u'\n';
    return text;
}

/** In a folder, a file of the layout's own name. */
QString fileFor(Runner &runner, int index, const QString &output)
{
    if (!QFileInfo(output).isDir())
        return output;
    QString name;
    for (const LayoutEntry &each : readList(runner)) {
        if (each.first == index)
            name = each.name;
    }
    return QDir(output).filePath(u"%1-%2.layout"_s.arg(QString::number(index), safeFileName(name)));
}

class GetLayout : public Command
{
public:
    GetLayout() : Command("get", "Read a layout, to a file or as hexadecimal") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("INDEX", m_index, kIndexes, "Index of the layout");
        arguments.option("-o,--output", "FILE", m_output,
                         "File; in a folder, named after the layout; - for stdout");
    }

    void run(const Options &options) const override
    {
        const bool isResult = isStandardOutput(m_output);
        if (isResult && options.json) {
            throw Failure{ExitCode::UsageError,
                          u"--json and -o would both write to standard output"_s,
                          u"Omit -o: the JSON document contains the layout."_s};
        }
        Runner runner(options);
        const QString file = fileFor(runner, m_index, m_output);
        const QByteArray blob = read(runner);
        if (!file.isEmpty())
            writeFile(file, blob);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::layout(m_index, blob)));
        } else if (!isResult) {
            print(file.isEmpty() ? dump(blob)
                                 : u"%1 bytes written to %2\n"_s.arg(blob.size()).arg(file));
        }
    }

private:
    /** @throws Failure  also if there is no such layout */
    [[nodiscard]] QByteArray read(Runner &runner) const
    {
        auto *const job = runner.computer().readLayout(quint8(m_index));
        const QByteArray blob = runner.resultOf(job, u"Reading layout %1"_s.arg(m_index), [job] {
            showStatus(u"Reading the layout, "_s + bytesText(double(job->bytes())));
        });
        if (blob.isEmpty()) {
            throw Failure{ExitCode::JobFailed, u"there is no layout %1"_s.arg(m_index),
                          u"\"varda layouts list\" lists the layouts."_s};
        }
        return blob;
    }

    int m_index = 0;
    QString m_output;
};

// What changes layouts

/** Runs a job whose only result is that it was accepted. */
void change(Runner &runner, VardaJob *job, const QString &status, bool json, const QString &done)
{
    runner.run(job, status);
    if (json)
        print(documents::withDevice(runner.device(), documents::layoutsChanged()));
    else
        print(runner.heading() + done + u'\n');
}

class AddLayout : public Command
{
public:
    AddLayout() : Command("add", "Add a layout to the computer") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("FILE", m_file, "File with the layout's bytes");
    }

    void run(const Options &options) const override
    {
        const QByteArray blob = readFile(m_file);
        Runner runner(options, Purpose::Writing);
        change(runner, runner.computer().addLayout(blob), u"Writing the layout"_s, options.json,
               u"Added the layout (%1 bytes)."_s.arg(blob.size()));
    }

private:
    QString m_file;
};

class RemoveLayout : public Command
{
public:
    RemoveLayout() : Command("remove", "Remove a layout") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("INDEX", m_index, kIndexes, "Index of the layout");
    }

    void run(const Options &options) const override
    {
        Runner runner(options, Purpose::Writing);
        change(runner, runner.computer().removeLayout(quint8(m_index)),
               u"Removing layout %1"_s.arg(m_index), options.json,
               u"Removed layout %1."_s.arg(m_index));
    }

private:
    int m_index = 0;
};

class ClearLayouts : public Command
{
public:
    ClearLayouts() : Command("clear", "Remove all layouts") { }

    void declare(Arguments &arguments) override { m_confirmation.declare(arguments); }

    void run(const Options &options) const override
    {
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        m_confirmation.ask(u"Remove all layouts of %1?"_s.arg(runner.computerName()));
        change(runner, runner.computer().removeAllLayouts(), u"Removing the layouts"_s,
               options.json, u"Removed all layouts."_s);
    }

private:
    Confirmation m_confirmation;
};

// Which layout is active

class ShowActiveLayouts : public Command
{
public:
    ShowActiveLayouts() : Command("active", "Show which layout each dive mode uses") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const auto layouts = runner.resultOf(runner.computer().readActiveLayouts(),
                                             u"Reading the active layouts"_s);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::activeLayouts(layouts)));
            return;
        }
        Columns columns({{u"DIVE MODE"_s}, {u"LAYOUT"_s}});
        for (std::size_t i = 0; i < layouts.size(); ++i) {
            columns.add(
                {QString::number(i), layouts[i] < 0 ? u"-"_s : QString::number(layouts[i])});
        }
        print(columns.text(outputStyle()));
    }
};

class ActivateLayout : public Command
{
public:
    ActivateLayout() : Command("activate", "Use a layout in a dive mode") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("MODE", m_mode, {0, 4}, "The dive mode, 0 to 4");
        arguments.argument("INDEX", m_index, {-1, 127}, "Index of the layout, -1 for none");
    }

    void run(const Options &options) const override
    {
        Runner runner(options, Purpose::Writing);
        change(runner, runner.computer().activateLayout(quint8(m_mode), qint8(m_index)),
               u"Activating layout %1"_s.arg(m_index), options.json,
               m_index < 0 ? u"No layout is active in dive mode %1."_s.arg(m_mode)
                           : u"Layout %1 is active in dive mode %2."_s.arg(m_index).arg(m_mode));
    }

private:
    int m_mode = 0;
    int m_index = 0;
};

class Layouts : public Command
{
public:
    Layouts() : Command("layouts", "List, read and change the screen layouts")
    {
        add<ListLayouts>();
        add<GetLayout>();
        add<AddLayout>();
        add<RemoveLayout>();
        add<ClearLayouts>();
        add<ShowActiveLayouts>();
        add<ActivateLayout>();
    }

    void run(const Options &options) const override { showList(options); }
};

} // namespace

void addLayouts(Commands &commands)
{
    commands.push_back(std::make_unique<Layouts>());
}
