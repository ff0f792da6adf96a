// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <functional>

/** Prints a line, at once. */
void say(const QString &line);

/** Runs the application until standard input ends; each of its lines is an order. */
[[nodiscard]] int obeyOrders(const std::function<void(const QString &)> &obey);
