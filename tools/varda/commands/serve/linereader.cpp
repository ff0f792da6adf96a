// SPDX-License-Identifier: MIT
#include "commands/serve/linereader.h"

#include <utility>

QList<LineReader::Line> LineReader::add(QByteArrayView bytes)
{
    QList<Line> lines;
    for (qsizetype end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n')) {
        append(bytes.first(end), lines);
        if (!std::exchange(m_skips, false))
            lines.append({std::exchange(m_begun, {}), false});
        bytes = bytes.sliced(end + 1);
    }
    append(bytes, lines);
    return lines;
}

void LineReader::append(QByteArrayView part, QList<Line> &lines)
{
    if (m_skips)
        return;
    if (m_begun.size() + part.size() > kLongest) {
        m_begun.clear();
        m_skips = true;
        lines.append({{}, true});
        return;
    }
    m_begun.append(part);
}
