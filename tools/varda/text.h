// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <cstdint>
#include <utility>

/**
 * Text of a stranger, fit for a terminal: what would move the cursor, start an escape sequence,
 * break the line or turn its direction is replaced by U+FFFD.
 */
[[nodiscard]] QString safeText(const QString &text);

/** JSON text in which such characters, where they are left as they are, are escaped. */
[[nodiscard]] QString safeJson(const QString &json);

/**
 * Text of a stranger, fit for a part of a file name: letters, digits, spaces and dashes, anything
 * else as "_", so that it cannot lead to another folder, and not longer than a name may be.
 */
[[nodiscard]] QString safeFileName(const QString &text);

/** A version as the computer gives it; its last character may be a NUL, which is left out. */
[[nodiscard]] QString versionText(const QString &version);

/** A computer's clock, "2024-05-17 08:30:00"; or the bare number where it is no time. */
[[nodiscard]] QString clockText(std::int64_t seconds);

/** The usual name of a mix, "Air", "EAN32", "Oxygen" or "18/45". */
[[nodiscard]] QString gasName(int oxygen, int helium);

/** A duration of so many seconds, "45:30" or "1:02:03". */
[[nodiscard]] QString durationText(double seconds);

/** "235 B", "12 kB" or "1.4 MB". */
[[nodiscard]] QString bytesText(double bytes);

/** One decimal, "18.3". */
[[nodiscard]] QString tenthsText(double value);

/** Lines of a label and a value, the values below each other. */
class Table
{
public:
    /** An empty value shows as "-". */
    void add(const QString &label, const QString &value);
    /** The lines, each behind @p indent spaces. */
    [[nodiscard]] QString text(int indent = 0) const;

private:
    QList<std::pair<QString, QString>> m_lines;
};

/** Rows of columns that are as wide as they must be. */
class Columns
{
public:
    enum class Side { Left, Right };
    struct Column {
        QString title;
        Side side = Side::Right; ///< where its cells touch
    };

    explicit Columns(const QList<Column> &columns) : m_columns(columns) { }

    void add(const QStringList &cells) { m_rows.append(cells); }
    [[nodiscard]] QString text() const;

private:
    QList<Column> m_columns;
    QList<QStringList> m_rows;
};
