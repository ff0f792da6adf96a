// SPDX-License-Identifier: MIT
#include "line/defaults.h"

#include "run/failure.h"
#include "run/files.h"

#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qstandardpaths.h>

using namespace Qt::StringLiterals;

namespace {

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

void checkLines(const QStringList &lines)
{
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const auto entry = entryIn(lines[i]);
        if (entry && !Defaults::isValid(entry->name, entry->value)) {
            throw Failure{ExitCode::UsageError,
                          u"\"%1\", line %2: \"%3\" is not a valid default"_s.arg(
                              Defaults::fileName(), QString::number(i + 1), lines[i].trimmed()),
                          u"Fix or remove the line. Valid are, for example, \"device = NAME\" "
                          "and \"units = imperial\"."_s};
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

bool Defaults::isValid(const QString &name, const QString &value)
{
    return (name == kDevice && !value.isEmpty() && !value.contains(u'\n'))
           || (name == kUnits && unitsIn(value));
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
    if (options.device.isEmpty() && !options.simulates())
        options.device = value(kDevice).value_or(QString());
    if (!options.units)
        options.units = unitsIn(value(kUnits).value_or(u"metric"_s));
}
