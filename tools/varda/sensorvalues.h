// SPDX-License-Identifier: MIT
#pragma once

class Connection;

/** Reads all pressures. @throws Failure */
void readSensors(Connection &connection);
void printSensors(const Connection &connection, bool json);
