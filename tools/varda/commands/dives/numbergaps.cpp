// SPDX-License-Identifier: MIT
#include "commands/dives/numbergaps.h"

#include "output/terminal.h"

#include <QtCore/qstringlist.h>

#include <map>

using namespace Qt::StringLiterals;

QList<NumberGap> numberGaps(const QList<std::uint16_t> &listed, const QList<std::uint16_t> &known)
{
    std::map<std::uint16_t, bool> isNew;
    for (const std::uint16_t number : known)
        isNew[number] = false;
    for (const std::uint16_t number : listed)
        isNew[number] = true;
    QList<NumberGap> gaps;
    if (isNew.empty())
        return gaps;
    auto before = isNew.begin();
    for (auto at = std::next(before); at != isNew.end(); before = at++) {
        if (at->first - before->first > 1 && (at->second || before->second))
            gaps.append({std::uint16_t(before->first + 1), std::uint16_t(at->first - 1)});
    }
    return gaps;
}

QString gapsText(const QList<NumberGap> &gaps)
{
    constexpr qsizetype kMost = 10;
    QStringList parts;
    for (const auto &[first, last] : gaps) {
        if (parts.size() == kMost)
            return parts.join(u", "_s) + u" and more"_s;
        parts.append(first == last ? QString::number(first) : u"%1-%2"_s.arg(first).arg(last));
    }
    return parts.join(u", "_s);
}

QList<NumberGap> gapsIn(const QList<TidemarDiveHeader> &headers, const QList<std::uint16_t> &known)
{
    QList<std::uint16_t> listed;
    for (const TidemarDiveHeader &header : headers) {
        if (!known.contains(header.diveNumber))
            listed.append(header.diveNumber);
    }
    return numberGaps(listed, known);
}

Json jsonOf(const QList<NumberGap> &gaps)
{
    return listOf(gaps, [](const NumberGap &gap) {
        return Fields{{"first"_L1, gap.first}, {"last"_L1, gap.last}};
    });
}

void warnAbout(const QList<NumberGap> &gaps)
{
    if (gaps.isEmpty())
        return;
    const bool isOne = gaps.size() == 1 && gaps.front().first == gaps.front().last;
    printWarning(u"the logbook has no %1 %2: deleted, or lost on the way"_s.arg(
        isOne ? u"dive"_s : u"dives"_s, gapsText(gaps)));
}
