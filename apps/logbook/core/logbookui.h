// SPDX-License-Identifier: MIT
#pragma once

class QQmlEngine;

/** Makes "import Logbook" work in an engine: its types, its files and its language. */
void installLogbookUi(QQmlEngine &engine);
