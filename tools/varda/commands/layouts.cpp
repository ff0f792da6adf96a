// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/commandline.h"
#include "line/confirmation.h"
#include "output/records.h"
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

constexpr int kLastMode = 4;
constexpr int kLastIndex = 255;
constexpr int kLastActive = 127; // -1 stands for none

// list

constexpr int kEnoughName = 10; // where the terminal is narrow

QString listText(const QList<LayoutEntry> &layouts)
{
    if (layouts.isEmpty())
        return u"There is no layout.\n"_s;
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

void list(const Options &options)
{
    Runner runner(options);
    const QList<LayoutEntry> layouts = readList(runner);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())},
               {"layouts"_L1, listOf(layouts, [](const LayoutEntry &each) {
                    return Fields{{"first"_L1, each.first},
                                  {"second"_L1, each.second},
                                  {"name"_L1, each.name}};
                })}});
    } else {
        print(listText(layouts));
    }
}

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

void get(const Options &options, int index, const QString &output)
{
    const bool isResult = isStandardOutput(output);
    if (isResult && options.json) {
        throw Failure{ExitCode::UsageError, u"--json and the layout would go to the same output"_s,
                      u"The document has the layout, too: leave out -o."_s};
    }
    Runner runner(options);
    const QString file = fileFor(runner, index, output);
    auto *const job = runner.computer().readLayout(quint8(index));
    const QByteArray blob = runner.resultOf(job, u"Reading layout %1"_s.arg(index), [job] {
        showStatus(u"Reading the layout, "_s + bytesText(double(job->bytes())));
    });
    if (blob.isEmpty()) {
        throw Failure{ExitCode::JobFailed, u"there is no layout %1"_s.arg(index),
                      u"\"varda layouts list\" lists what there is."_s};
    }
    if (!file.isEmpty())
        writeFile(file, blob);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())},
               {"index"_L1, index},
               {"size"_L1, blob.size()},
               {"layoutBlob"_L1, QString::fromLatin1(blob.toHex())}});
    } else if (!isResult) {
        print(file.isEmpty() ? dump(blob)
                             : u"%1 bytes written to %2\n"_s.arg(blob.size()).arg(file));
    }
}

// What changes layouts

/** Runs a job whose only result is that it was accepted. */
void change(Runner &runner, VardaJob *job, const QString &status, bool json, const QString &done)
{
    runner.run(job, status);
    if (json)
        print({{"device"_L1, fieldsOf(runner.device())}, {"layoutCommandSuccess"_L1, true}});
    else
        print(runner.heading() + done + u'\n');
}

void add(const Options &options, const QString &file)
{
    const QByteArray blob = readFile(file);
    Runner runner(options, Purpose::Writing);
    change(runner, runner.computer().addLayout(blob), u"Writing the layout"_s, options.json,
           u"The layout of %1 bytes is added."_s.arg(blob.size()));
}

void remove(const Options &options, int index)
{
    Runner runner(options, Purpose::Writing);
    change(runner, runner.computer().removeLayout(quint8(index)),
           u"Removing layout %1"_s.arg(index), options.json, u"Layout %1 is removed."_s.arg(index));
}

void clear(const Options &options, const Confirmation &confirmation)
{
    confirmation.require();
    Runner runner(options, Purpose::Writing);
    confirmation.ask(u"Remove all layouts of %1?"_s.arg(runner.computerName()));
    change(runner, runner.computer().removeAllLayouts(), u"Removing the layouts"_s, options.json,
           u"All layouts are removed."_s);
}

void activate(const Options &options, int mode, int index)
{
    Runner runner(options, Purpose::Writing);
    change(runner, runner.computer().activateLayout(quint8(mode), qint8(index)),
           u"Activating layout %1"_s.arg(index), options.json,
           index < 0 ? u"No layout is active in dive mode %1."_s.arg(mode)
                     : u"Layout %1 is active in dive mode %2."_s.arg(index).arg(mode));
}

// active

void active(const Options &options)
{
    Runner runner(options);
    const auto layouts = runner.resultOf(runner.computer().readActiveLayouts(),
                                         u"Reading the active layouts"_s);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())}, {"activeLayouts"_L1, listOf(layouts)}});
        return;
    }
    Columns columns({{u"DIVE MODE"_s}, {u"LAYOUT"_s}});
    for (std::size_t i = 0; i < layouts.size(); ++i) {
        columns.add({QString::number(i), layouts[i] < 0 ? u"-"_s : QString::number(layouts[i])});
    }
    print(columns.text(outputStyle()));
}

void addGet(CommandLine &line, CLI::App *layouts)
{
    const auto index = std::make_shared<int>();
    const auto file = std::make_shared<std::string>();
    CLI::App *const command = line.addTo(
        layouts, "get", "Read a layout, into a file or in hexadecimal",
        [index, file](const Options &options) {
            get(options, *index, QString::fromLocal8Bit(file->c_str()));
        });
    command->add_option("INDEX", *index, "Its index")
        ->type_name("INDEX")
        ->required()
        ->check(between(0, kLastIndex));
    command
        ->add_option("-o,--output", *file, "The file, or a folder for one of its name; - prints it")
        ->type_name("FILE");
}

void addActivate(CommandLine &line, CLI::App *layouts)
{
    const auto mode = std::make_shared<int>();
    const auto index = std::make_shared<int>();
    CLI::App *const command = line.addTo(
        layouts, "activate", "Use a layout in a dive mode",
        [mode, index](const Options &options) { activate(options, *mode, *index); });
    command->add_option("MODE", *mode, "The dive mode, 0 to 4")
        ->type_name("MODE")
        ->required()
        ->check(between(0, kLastMode));
    command->add_option("INDEX", *index, "The layout's index, -1 for none")
        ->type_name("INDEX")
        ->required()
        ->check(between(-1, kLastActive));
}

} // namespace

void addLayouts(CommandLine &line)
{
    CLI::App *const layouts = line.add("layouts", "List, read and change the screen layouts", list);
    line.addTo(layouts, "list", "List them", list);
    addGet(line, layouts);

    const auto file = std::make_shared<std::string>();
    line.addTo(
            layouts, "add", "Write another one into the computer",
            [file](const Options &options) { add(options, QString::fromLocal8Bit(file->c_str())); })
        ->add_option("FILE", *file, "What it consists of")
        ->type_name("FILE")
        ->required();

    const auto index = std::make_shared<int>();
    line.addTo(layouts, "remove", "Remove one",
               [index](const Options &options) { remove(options, *index); })
        ->add_option("INDEX", *index, "Its index")
        ->type_name("INDEX")
        ->required()
        ->check(between(0, kLastIndex));

    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    confirmation->emplace(
        line.addTo(layouts, "clear", "Remove all",
                   [confirmation](const Options &options) { clear(options, **confirmation); }));

    line.addTo(layouts, "active", "Tell which one each dive mode uses", active);
    addActivate(line, layouts);
}
