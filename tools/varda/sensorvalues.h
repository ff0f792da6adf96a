// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

class Connection;

/** Reads all pressures. @throws Failure */
void readSensors(Connection &connection);
/** @param heading  above the table; nothing in JSON */
void printSensors(const Connection &connection, bool json, const QString &heading = {});
