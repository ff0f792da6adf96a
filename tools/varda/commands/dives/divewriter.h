// SPDX-License-Identifier: MIT
#pragma once

#include "output/units.h"

#include <varda/dive.h>

#include <QtCore/qlist.h>
#include <QtCore/qset.h>
#include <QtCore/qstringlist.h>

#include <optional>

/** What dives can be written as. */
enum class FileFormat { Uddf, Csv, Json, Svg, Png, Pdf };

/** By its word on the command line, "uddf"; nothing if it is none of them. */
[[nodiscard]] std::optional<FileFormat> formatNamed(const QString &word);
/** By the ending of a file's name. */
[[nodiscard]] std::optional<FileFormat> formatOfFile(const QString &name);
[[nodiscard]] bool isPicture(FileFormat format);

/** Writes dives to a file, into a folder, or to standard output. */
class DiveWriter
{
public:
    struct Target {
        QString name; ///< a file; a folder, also if it ends with "/"; empty or "-": stdout
        FileFormat format = FileFormat::Uddf;
        Units units = Units::Metric; ///< of pictures
        bool summary = false;        ///< of CSV: one line a dive instead of one a sample
    };

    explicit DiveWriter(Target target);

    /** Whether the result of the command is what is written. */
    [[nodiscard]] bool isResult() const;
    /** Finds out early what cannot work. @throws Failure */
    void check(bool json) const;
    /** There is room for one picture only in a file. @throws Failure  if there are more dives */
    void checkCount(qsizetype dives) const;

    /** A picture is written at once. @param id  of a saved dive  @throws Failure */
    void add(const Dive &dive, qint64 id = 0);
    /** Writes the others, all together. @throws Failure */
    void finish();

    [[nodiscard]] qsizetype dives() const { return m_count; }
    /** What was written, without standard output. */
    [[nodiscard]] QStringList files() const { return m_files; }
    /** What the format could not carry. */
    [[nodiscard]] QStringList messages() const { return m_messages; }
    /** "3 dives written to dives.uddf". */
    [[nodiscard]] QString text() const;

private:
    void put(const QString &fileName, const QByteArray &bytes);
    [[nodiscard]] QString pictureName(const Dive &dive, qint64 id);
    [[nodiscard]] bool isFolder() const;

    Target m_target;
    QList<Dive> m_dives;
    qsizetype m_count = 0;
    QSet<QString> m_names; ///< of pictures
    QStringList m_files;
    QStringList m_messages;
};
