// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

/** @param largest  bytes; the usual limit is far more than a computer holds  @throws Failure */
[[nodiscard]] QByteArray readFile(const QString &name, qint64 largest = 64 << 20);
/** Whether that is where results go, by whichever name: "-", "/dev/stdout". */
[[nodiscard]] bool isStandardOutput(const QString &name);
/** A file whole or not at all; a pipe, a device or standard output as it is. @throws Failure */
void writeFile(const QString &name, const QByteArray &bytes);
