// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

namespace simulator {

/** What is too long for one frame, or one notification. */
inline QList<QByteArray> inPieces(const QByteArray &bytes, qsizetype size)
{
    QList<QByteArray> pieces;
    for (qsizetype at = 0; at < bytes.size(); at += size)
        pieces.append(bytes.mid(at, size));
    return pieces;
}

} // namespace simulator
