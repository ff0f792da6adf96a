// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

struct Options;

// What the commands of "trace" do

void showTrace(const QString &file, const Options &options);
void showTraceStats(const QString &file, const Options &options);
/** @param format  "trace", "btsnoop", or empty: by the ending of @p to */
void convertTrace(const QString &from, const QString &to, const QString &format,
                  const Options &options);
