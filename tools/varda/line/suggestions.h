// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

/** Those of @p names that somebody may have meant who typed @p word; the nearest only. */
[[nodiscard]] QStringList nearest(const QString &word, const QStringList &names);
