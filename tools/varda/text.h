// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <cstdint>
#include <utility>

/**
 * Text of a stranger, fit for a terminal: what would move the cursor, start an escape sequence,
 * break the line or turn its direction, what nobody sees, and more than four marks on a character
 * are replaced by U+FFFD.
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

/**
 * Seconds until the last of @p remaining things is done, by the @p spent seconds that @p done ones
 * took. The first of the remaining has been under way for @p underWay seconds.
 */
[[nodiscard]] double secondsLeft(double spent, qsizetype done, qsizetype remaining,
                                 double underWay);

/** "235 B", "12 kB" or "1.4 MB". */
[[nodiscard]] QString bytesText(double bytes);

/** One decimal, "18.3". */
[[nodiscard]] QString tenthsText(double value);

/** How a text is laid out. */
struct TextStyle {
    static constexpr int kAnyWidth = 1'000'000; ///< that of a file

    int width = kAnyWidth; ///< columns
    bool utf8 = true;      ///< people see more than ASCII
    bool bold = false;     ///< headings are
};

/** @p text as a heading. */
[[nodiscard]] QString heading(const QString &text, const TextStyle &style);

/**
 * Parts with @p gap between them, in lines that behind @p indent columns fit into @p width; those
 * behind the first are indented.
 */
[[nodiscard]] QString folded(const QStringList &parts, const QString &gap, int indent, int width);

/** Lines of a label and a value, the values below each other. */
class Table
{
public:
    /** An empty value shows as "-". */
    void add(const QString &label, const QString &value);
    /** The lines, each behind @p indent spaces; long values are folded. */
    [[nodiscard]] QString text(const TextStyle &style = {}, int indent = 0) const;

private:
    QList<std::pair<QString, QString>> m_lines;
};

/** Rows of columns that are as wide as they must be; those that do not fit are left out. */
class Columns
{
public:
    enum class Side { Left, Right };
    struct Column {
        QString title;
        Side side = Side::Right; ///< where its cells touch
        int rank = 0;            ///< the highest is left out first, the last among equals
        int width = 0;           ///< at least
        int enough = 0;          ///< it may be cut down to this width; 0: it is not cut
    };

    explicit Columns(const QList<Column> &columns) : m_columns(columns) { }

    void add(const QStringList &cells) { m_rows.append(cells); }
    [[nodiscard]] QString text(const TextStyle &style = {}) const;
    /** The lines of text() but for the first one. */
    [[nodiscard]] QString rows(const TextStyle &style) const;

private:
    [[nodiscard]] QList<int> fullWidths() const;
    [[nodiscard]] QList<int> widths(int limit) const;
    [[nodiscard]] QString line(const QStringList &cells, const QList<int> &widths,
                               const TextStyle &style) const;

    QList<Column> m_columns;
    QList<QStringList> m_rows;
};
