// SPDX-License-Identifier: MIT
#include "defaults.h"

#include "commandline.h"
#include "commands.h"
#include "failure.h"
#include "files.h"
#include "terminal.h"
#include "text.h"

#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qstandardpaths.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kDevice = "device"_L1;
constexpr auto kUnits = "units"_L1;

struct Entry {
    QString name;
    QString value;
};

/** Nothing for a line that sets nothing. */
std::optional<Entry> entryIn(const QString &line)
{
    const QString text = line.trimmed();
    if (text.isEmpty() || text.startsWith(u'#'))
        return std::nullopt;
    return Entry{text.section(u'=', 0, 0).trimmed(), text.section(u'=', 1).trimmed()};
}

bool isValid(const Entry &entry)
{
    return (entry.name == kDevice && !entry.value.isEmpty() && !entry.value.contains(u'\n'))
           || (entry.name == kUnits && unitsIn(entry.value));
}

void checkLines(const QStringList &lines)
{
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const auto entry = entryIn(lines[i]);
        if (entry && !isValid(*entry)) {
            throw Failure{ExitCode::UsageError,
                          u"\"%1\", line %2: \"%3\" is no default"_s.arg(
                              Defaults::fileName(), QString::number(i + 1), lines[i].trimmed()),
                          u"Mend the line or remove it; \"device = NAME\" and \"units = imperial\" "
                          "are such."_s};
        }
    }
}

} // namespace

std::optional<Units> unitsIn(const QString &text)
{
    if (text.compare("metric"_L1, Qt::CaseInsensitive) == 0)
        return Units::Metric;
    if (text.compare("imperial"_L1, Qt::CaseInsensitive) == 0)
        return Units::Imperial;
    return std::nullopt;
}

Defaults::Defaults()
{
    if (!QFileInfo::exists(fileName()))
        return;
    m_lines = QString::fromUtf8(readFile(fileName())).split(u'\n');
    if (m_lines.last().isEmpty())
        m_lines.removeLast();
    checkLines(m_lines);
}

QString Defaults::fileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + u"/varda/defaults"_s;
}

std::optional<QString> Defaults::value(const QString &name) const
{
    std::optional<QString> value;
    for (const QString &line : m_lines) {
        const auto entry = entryIn(line);
        if (entry && entry->name == name)
            value = entry->value;
    }
    return value;
}

void Defaults::change(const QString &name, const std::optional<QString> &value)
{
    QStringList lines;
    for (const QString &line : m_lines) {
        const auto entry = entryIn(line);
        if (!entry || entry->name != name)
            lines.append(line);
    }
    if (value)
        lines.append(u"%1 = %2"_s.arg(name, *value));
    checkLines(lines);
    m_lines = lines;
    QDir().mkpath(QFileInfo(fileName()).path());
    writeFile(fileName(),
              m_lines.isEmpty() ? QByteArray() : (m_lines.join(u'\n') + u'\n').toUtf8());
}

void Defaults::complete(Options &options) const
{
    // No simulation has the user's computer.
    if (options.device.isEmpty() && !options.simulate)
        options.device = value(kDevice).value_or(QString());
    if (!options.units)
        options.units = unitsIn(value(kUnits).value_or(u"metric"_s));
}

namespace {

void show(const Options &options)
{
    const Defaults defaults;
    if (options.json) {
        Fields set;
        for (const auto name : {kDevice, kUnits}) {
            if (const auto value = defaults.value(name))
                set.emplace_back(name, *value);
        }
        return print({{"file"_L1, Defaults::fileName()}, {"defaults"_L1, set}});
    }
    Table table;
    table.add(u"Device"_s, safeText(defaults.value(kDevice).value_or(QString())));
    table.add(u"Units"_s, defaults.value(kUnits).value_or(u"metric"_s));
    table.add(u"File"_s, safeText(Defaults::fileName()));
    print(table.text(outputStyle()));
}

std::string validName(const std::string &text)
{
    return text == "device" || text == "units" ? std::string()
                                               : "\"" + text + "\" is neither device nor units";
}

void set(const Options &options, const QString &name, const QString &value)
{
    const QString text = value.trimmed();
    if (!isValid({name, text})) {
        throw Failure{ExitCode::UsageError,
                      name == kUnits ? u"\"%1\" is neither metric nor imperial"_s.arg(value)
                                     : u"\"%1\" is no address or name"_s.arg(value),
                      {}};
    }
    Defaults().change(name, text);
    show(options);
}

void unset(const Options &options, const QString &name)
{
    Defaults().change(name, std::nullopt);
    show(options);
}

} // namespace

void addDefaults(CommandLine &line)
{
    const auto name = std::make_shared<std::string>();
    const auto value = std::make_shared<std::string>();
    const auto addName = [name](CLI::App *command) {
        command->add_option("NAME", *name, "device or units")
            ->type_name("NAME")
            ->required()
            ->check(CLI::Validator(validName, ""));
    };
    CLI::App *const defaults = line.add("defaults", "Show or set what all commands start from",
                                        show);
    CLI::App *const setting = line.addTo(defaults, "set", "Set the usual computer, or the units",
                                         [name, value](const Options &options) {
                                             set(options, QString::fromLocal8Bit(name->c_str()),
                                                 QString::fromLocal8Bit(value->c_str()));
                                         });
    addName(setting);
    setting->add_option("VALUE", *value, "An address or a name; metric or imperial")
        ->type_name("VALUE")
        ->required();
    addName(line.addTo(defaults, "unset", "Forget it again", [name](const Options &options) {
        unset(options, QString::fromLocal8Bit(name->c_str()));
    }));
}
