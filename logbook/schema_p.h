// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

#include <cstdint>

class Database;

/** "Vrda": which program's database a file is. */
constexpr std::uint32_t kApplicationId = 0x56726461;

/** The version of the schema that this library writes and reads. */
[[nodiscard]] std::uint32_t newestSchema();
/** Brings the file from whatever version it has to the newest, step by step, all or nothing. */
void migrate(Database &database);
