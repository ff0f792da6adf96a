// SPDX-License-Identifier: MIT
#include "line/suggestions.h"

#include <QtCore/qlist.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace {

/** Letters to add, to leave out, to replace or to exchange with the next one. */
qsizetype distance(const QString &one, const QString &other)
{
    QList<qsizetype> beforeLast;
    QList<qsizetype> last(other.size() + 1);
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 1; i <= one.size(); ++i) {
        QList<qsizetype> row{i};
        for (qsizetype j = 1; j <= other.size(); ++j) {
            const bool isSame = one[i - 1] == other[j - 1];
            qsizetype least = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + !isSame});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                least = std::min(least, beforeLast[j - 2] + 1);
            row.append(least);
        }
        beforeLast = std::exchange(last, row);
    }
    return last.back();
}

/** By how much they differ; nothing if by too much for a typing mistake. */
std::optional<qsizetype> typoDistance(const QString &word, const QString &name)
{
    constexpr qsizetype kShort = 4;
    if (word.size() > 2 && name.startsWith(word))
        return 1;
    const qsizetype most = name.size() <= kShort ? 1 : 2;
    if (std::abs(word.size() - name.size()) > most)
        return std::nullopt;
    const qsizetype by = distance(word, name);
    return by <= most ? std::optional(by) : std::nullopt;
}

} // namespace

QStringList nearest(const QString &word, const QStringList &names)
{
    QStringList result;
    qsizetype least = word.size() + 1;
    for (const QString &name : names) {
        const auto by = typoDistance(word, name);
        if (!by || *by > least || result.contains(name))
            continue;
        if (*by < least)
            result.clear();
        least = *by;
        result.append(name);
    }
    return result;
}
