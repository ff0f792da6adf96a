// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/choices/logbookfile.h"
#include "output/json.h"
#include "output/terminal.h"
#include "run/files.h"
#include "run/store.h"

#include <varda/csvformat.h>
#include <varda/jsonformat.h>
#include <varda/uddfformat.h>

#include <QtCore/qbuffer.h>

using namespace Qt::StringLiterals;

namespace {

// More dives than anybody has.
constexpr qint64 kLargestFile = qint64(1) << 30;

/** By how it begins: whoever has renamed a file knows less. */
DivesRead divesIn(QByteArray bytes)
{
    QByteArray begin = bytes.left(1000); // NOLINT(readability-magic-numbers)
    if (begin.startsWith("\xEF\xBB\xBF"))
        begin.remove(0, 3);
    begin = begin.trimmed();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    if (begin.startsWith('<'))
        return UddfFormat::read(&buffer);
    return begin.startsWith('{') ? JsonFormat::read(&buffer) : CsvFormat::read(&buffer);
}

/** @throws Failure */
QList<Dive> readDives(const QString &name)
{
    const QString file = name == "-"_L1 ? u"/dev/stdin"_s : name;
    const DivesRead read = divesIn(readFile(file, kLargestFile));
    if (!read.error.isEmpty()) {
        throw Failure{ExitCode::UsageError, u"\"%1\": %2"_s.arg(name, read.error),
                      u"Files of \"varda export\" can be imported: UDDF, CSV and JSON."_s};
    }
    return read.dives;
}

class Import : public Command
{
public:
    Import()
        : Command("import", "Save the dives of a file that was exported: UDDF, CSV or JSON") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("FILE", m_name, "The file; - for stdin");
        m_file.declare(arguments);
    }

    [[nodiscard]] bool usesComputer() const override { return false; }

    void run(const Options &options) const override
    {
        const QList<Dive> dives = readDives(m_name);
        Store store(m_file.name(options), Store::Use::Write);
        qsizetype added = 0;
        std::vector<Json> entries;
        for (qsizetype i = 0; i < dives.size(); ++i) {
            showStatus(u"Saving dive %1 of %2"_s.arg(i + 1).arg(dives.size()));
            const auto [id, isNew] = store.add(dives[i]);
            added += isNew ? 1 : 0;
            entries.emplace_back(
                Fields{{"id"_L1, id}, {"diveNumber"_L1, dives[i].diveNumber}, {"isNew"_L1, isNew}});
        }
        const qsizetype known = dives.size() - added;
        if (options.json) {
            print({{"file"_L1, store.file()},
                   {"new"_L1, added},
                   {"known"_L1, known},
                   {"dives"_L1, entries}});
        } else {
            print(u"%1 new, %2 known\n"_s.arg(added).arg(known));
        }
    }

private:
    QString m_name;
    LogbookFile m_file;
};

} // namespace

void addImport(Commands &commands)
{
    commands.push_back(std::make_unique<Import>());
}
