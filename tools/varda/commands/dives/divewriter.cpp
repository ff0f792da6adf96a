// SPDX-License-Identifier: MIT
#include "commands/dives/divewriter.h"

#include "pictures/picturemaker.h"
#include "run/failure.h"
#include "run/files.h"
#include "run/interrupt.h"
#include "run/pictures.h"

#include <varda/csvformat.h>
#include <varda/jsonformat.h>
#include <varda/uddfformat.h>

#include <QtCore/qbuffer.h>
#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>

#include <unistd.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct Word {
    FileFormat format = FileFormat::Uddf;
    QLatin1StringView word;
};

constexpr Word kWords[] = {{FileFormat::Uddf, "uddf"_L1}, {FileFormat::Csv, "csv"_L1},
                           {FileFormat::Json, "json"_L1}, {FileFormat::Svg, "svg"_L1},
                           {FileFormat::Png, "png"_L1},   {FileFormat::Pdf, "pdf"_L1}};

PictureMaker::Format pictureFormat(FileFormat format)
{
    if (format == FileFormat::Pdf)
        return PictureMaker::Format::Pdf;
    return format == FileFormat::Png ? PictureMaker::Format::Png : PictureMaker::Format::Svg;
}

QString wordOf(FileFormat format)
{
    return kWords[int(format)].word;
}

DivesWritten write(QIODevice *device, const QList<Dive> &dives, FileFormat format, bool summary)
{
    if (format == FileFormat::Json)
        return JsonFormat::write(device, dives);
    if (format == FileFormat::Uddf)
        return UddfFormat::write(device, dives);
    return summary ? CsvFormat::writeSummary(device, dives)
                   : CsvFormat::writeSamples(device, dives);
}

} // namespace

std::optional<FileFormat> formatNamed(const QString &word)
{
    for (const Word &each : kWords) {
        if (word.compare(each.word, Qt::CaseInsensitive) == 0)
            return each.format;
    }
    return std::nullopt;
}

std::optional<FileFormat> formatOfFile(const QString &name)
{
    return formatNamed(QFileInfo(name).suffix());
}

bool isPicture(FileFormat format)
{
    return format >= FileFormat::Svg;
}

DiveWriter::DiveWriter(Target target) : m_target(std::move(target)) { }

bool DiveWriter::isResult() const
{
    return m_target.name.isEmpty() || isStandardOutput(m_target.name);
}

bool DiveWriter::isFolder() const
{
    return m_target.name.endsWith(u'/') || QFileInfo(m_target.name).isDir();
}

void DiveWriter::check(bool json) const
{
    if (isResult() && json) {
        throw Failure{ExitCode::UsageError,
                      u"--json and the dives would both be written to standard output"_s,
                      u"Name a file for the dives."_s};
    }
    if (!isPicture(m_target.format))
        return;
    if (isResult() && m_target.format != FileFormat::Svg && ::isatty(STDOUT_FILENO) != 0) {
        throw Failure{ExitCode::UsageError, u"a terminal cannot show a picture"_s,
                      u"Name a file for it."_s};
    }
    std::ignore = pictureMaker();
}

void DiveWriter::checkCount(qsizetype dives) const
{
    if (dives > 1 && isPicture(m_target.format) && (isResult() || !isFolder())) {
        throw Failure{ExitCode::UsageError,
                      u"a picture shows one dive, but you chose %1"_s.arg(dives),
                      u"Name one dive, or a folder for the pictures: its name ends with \"/\"."_s};
    }
}

QString DiveWriter::pictureName(const Dive &dive, qint64 id)
{
    QString name = u"dive-%1"_s.arg(dive.diveNumber);
    if (m_names.contains(name))
        name += u"@%1"_s.arg(id);
    m_names.insert(name);
    return name;
}

void DiveWriter::add(const Dive &dive, qint64 id)
{
    if (Interrupt::number() != 0)
        throw Interrupt::failure();
    ++m_count;
    if (!isPicture(m_target.format)) {
        m_dives.append(dive);
        return;
    }
    const QByteArray picture = pictureMaker().picture(dive, pictureFormat(m_target.format),
                                                      m_target.units);
    if (picture.isEmpty())
        throw Failure{ExitCode::JobFailed,
                      u"the picture of dive %1 cannot be drawn"_s.arg(dive.diveNumber),
                      {}};
    put(pictureName(dive, id), picture);
}

void DiveWriter::finish()
{
    if (isPicture(m_target.format))
        return;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const DivesWritten written = write(&buffer, m_dives, m_target.format, m_target.summary);
    if (!written.error.isEmpty())
        throw Failure{ExitCode::JobFailed, written.error, {}};
    m_messages = written.messages;
    for (const Dive &each : std::as_const(m_dives)) {
        const bool isLost = m_target.format == FileFormat::Csv && !m_target.summary;
        if (isLost && each.lines.isEmpty())
            m_messages.append(
                u"Dive %1: it has no samples and is not in the file"_s.arg(each.diveNumber));
    }
    put(u"dives"_s, buffer.data());
}

void DiveWriter::put(const QString &fileName, const QByteArray &bytes)
{
    if (isResult()) {
        writeFile(u"-"_s, bytes);
        return;
    }
    QString file = m_target.name;
    if (isFolder()) {
        const QDir folder(m_target.name);
        if (!folder.mkpath(u"."_s)) {
            throw Failure{
                ExitCode::JobFailed, u"the folder \"%1\" cannot be made"_s.arg(m_target.name), {}};
        }
        file = folder.filePath(fileName + u'.' + wordOf(m_target.format));
    }
    writeFile(file, bytes);
    m_files.append(file);
}

QString DiveWriter::text() const
{
    const QString what = m_count == 1 ? u"1 dive"_s : u"%1 dives"_s.arg(m_count);
    const QString where = m_files.size() == 1 ? m_files.first() : m_target.name;
    return u"%1 written to %2\n"_s.arg(what, where);
}
