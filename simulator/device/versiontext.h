// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

/** A version such as "1.4.2.b": three numbers and a character, packed most significant first. */
std::optional<quint32> packVersion(const QString &text);
QString versionText(quint32 packed);

} // namespace simulator
