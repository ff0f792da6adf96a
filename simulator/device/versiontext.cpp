// SPDX-License-Identifier: MIT
#include "device/versiontext.h"

#include <QtCore/qregularexpression.h>

namespace simulator {

std::optional<quint32> packVersion(const QString &text)
{
    static const QRegularExpression kPattern(
        QStringLiteral("^(\\d{1,3})\\.(\\d{1,3})\\.(\\d{1,3})\\.(.)$"));
    const QRegularExpressionMatch match = kPattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;

    quint32 packed = 0;
    for (int i = 1; i <= 3; ++i) {
        const uint part = match.captured(i).toUInt();
        if (part > 255)
            return std::nullopt;
        packed = packed << 8 | part;
    }
    const char16_t last = match.captured(4).front().unicode();
    if (last > 255)
        return std::nullopt;
    return packed << 8 | last;
}

QString versionText(quint32 packed)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(packed >> 24)
        .arg(packed >> 16 & 0xFF)
        .arg(packed >> 8 & 0xFF)
        .arg(QLatin1Char(char(packed & 0xFF)));
}

} // namespace simulator
