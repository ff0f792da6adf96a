// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <utility>

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
