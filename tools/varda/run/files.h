// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

/** @throws Failure */
[[nodiscard]] QByteArray readFile(const QString &name);
/** Whether that is where results go, by whichever name: "-", "/dev/stdout". */
[[nodiscard]] bool isStandardOutput(const QString &name);
/** A file whole or not at all; a pipe, a device or standard output as it is. @throws Failure */
void writeFile(const QString &name, const QByteArray &bytes);
