// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

/** @throws Failure */
[[nodiscard]] QByteArray readFile(const QString &name);
/** Whole or not at all. @throws Failure */
void writeFile(const QString &name, const QByteArray &bytes);
