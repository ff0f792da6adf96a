// SPDX-License-Identifier: MIT
#include "schema_p.h"

#include <array>

#include "database_p.h"

using namespace Qt::StringLiterals;

namespace {

/**
 * One statement each, in order. What a version has once reached its users never changes: another
 * column is another version.
 */
const QStringList &version1()
{
    static const QStringList kStatements = {
        uR"(CREATE TABLE "computer" (
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "serialNumber" TEXT NOT NULL, "address" TEXT NOT NULL, "name" TEXT NOT NULL,
    "model" INTEGER NOT NULL, "mode" INTEGER NOT NULL, "recordVersion" INTEGER NOT NULL,
    "firmwareVersion" INTEGER NOT NULL, "firmwareVersionStr" TEXT NOT NULL,
    "bootloaderVersion" INTEGER NOT NULL, "bootloaderVersionStr" TEXT NOT NULL,
    "lastSeen" TEXT NOT NULL DEFAULT '', "lastSynchronised" TEXT NOT NULL DEFAULT '',
    "generation" INTEGER NOT NULL DEFAULT 0
))"_s,
        uR"(CREATE UNIQUE INDEX "computerBySerialNumber" ON "computer"("serialNumber")
    WHERE "serialNumber" <> '')"_s,
        uR"(CREATE UNIQUE INDEX "computerByAddress" ON "computer"("address") WHERE "serialNumber" = '')"_s,
        uR"(CREATE TABLE "dive" (
    "id" INTEGER PRIMARY KEY AUTOINCREMENT,
    "computer" INTEGER NOT NULL REFERENCES "computer"("id"),
    "number" INTEGER NOT NULL, "begin" INTEGER NOT NULL,
    "generation" INTEGER NOT NULL, "stored" TEXT NOT NULL,
    "duration" REAL, "greatestDepth" REAL, "meanDepth" REAL, "lines" INTEGER NOT NULL,
    "place" TEXT NOT NULL, "notes" TEXT NOT NULL, "hidden" INTEGER NOT NULL,
    UNIQUE ("computer", "number", "begin")
))"_s,
        uR"(CREATE TABLE "record" (
    "dive" INTEGER PRIMARY KEY REFERENCES "dive"("id") ON DELETE CASCADE,
    "diveNumber" INTEGER NOT NULL, "model" INTEGER NOT NULL, "stamp" INTEGER NOT NULL,
    "stamp2" INTEGER NOT NULL, "tenths1" REAL, "tenths2" REAL,
    "sampleInterval" INTEGER NOT NULL, "value32a" INTEGER NOT NULL,
    "kindByte" INTEGER NOT NULL, "tidemarBit" INTEGER NOT NULL,
    "headerWord1" INTEGER NOT NULL, "below1020" INTEGER NOT NULL,
    "headerByte1" INTEGER NOT NULL, "headerByte2" INTEGER NOT NULL,
    "headerWord2" INTEGER NOT NULL, "headerWord3" INTEGER NOT NULL,
    "headerWord4" INTEGER NOT NULL, "value32b" INTEGER NOT NULL, "count1" REAL, "count2" REAL,
    "value32c" INTEGER NOT NULL, "tissueN2" TEXT NOT NULL, "tissueHe" TEXT NOT NULL,
    "gasSlotMask" INTEGER NOT NULL, "headerByte3" INTEGER NOT NULL, "gasO2" TEXT NOT NULL,
    "gasHe" TEXT NOT NULL, "reservedBlock" TEXT NOT NULL, "headerByte4" INTEGER NOT NULL,
    "headerByte5" INTEGER NOT NULL, "headerByte6" INTEGER NOT NULL,
    "headerWord5" INTEGER NOT NULL, "headerWord6" INTEGER NOT NULL,
    "headerWord7" INTEGER NOT NULL, "value32d" INTEGER NOT NULL,
    "headerWord8" INTEGER NOT NULL, "signed1" REAL, "signed2" REAL,
    "headerWord9" INTEGER NOT NULL, "headerWord10" INTEGER NOT NULL,
    "headerWord11" INTEGER NOT NULL, "headerWord12" INTEGER NOT NULL,
    "value32e" INTEGER NOT NULL, "value32f" INTEGER NOT NULL, "text1" TEXT NOT NULL,
    "text2" TEXT NOT NULL, "text3" TEXT NOT NULL, "text4" TEXT NOT NULL,
    "numberText" TEXT NOT NULL, "ownerName" TEXT NOT NULL, "text" TEXT NOT NULL,
    "serialNumber" TEXT NOT NULL, "firmwareVersion" TEXT NOT NULL, "kind" INTEGER NOT NULL,
    "tagBytes" TEXT NOT NULL, "value16" INTEGER NOT NULL, "value64" INTEGER NOT NULL,
    "value32" INTEGER NOT NULL, "index" INTEGER NOT NULL, "flag" INTEGER NOT NULL,
    "modeByte" INTEGER NOT NULL, "count" INTEGER NOT NULL
))"_s,
        uR"(CREATE TABLE "header" (
    "dive" INTEGER PRIMARY KEY REFERENCES "dive"("id") ON DELETE CASCADE,
    "diveNumber" INTEGER NOT NULL, "model" INTEGER NOT NULL, "stamp" INTEGER NOT NULL,
    "stamp2" INTEGER NOT NULL, "tenths1" REAL, "tenths2" REAL,
    "sampleInterval" INTEGER NOT NULL, "value32a" INTEGER NOT NULL,
    "kindByte" INTEGER NOT NULL, "tidemarBit" INTEGER NOT NULL,
    "headerWord1" INTEGER NOT NULL, "below1020" INTEGER NOT NULL,
    "headerByte1" INTEGER NOT NULL, "headerByte2" INTEGER NOT NULL,
    "headerWord2" INTEGER NOT NULL, "headerWord3" INTEGER NOT NULL,
    "headerWord4" INTEGER NOT NULL, "value32b" INTEGER NOT NULL, "count1" REAL, "count2" REAL,
    "value32c" INTEGER NOT NULL, "tissueN2" TEXT NOT NULL, "tissueHe" TEXT NOT NULL,
    "gasSlotMask" INTEGER NOT NULL, "headerByte3" INTEGER NOT NULL, "gasO2" TEXT NOT NULL,
    "gasHe" TEXT NOT NULL, "reservedBlock" TEXT NOT NULL, "headerByte4" INTEGER NOT NULL,
    "headerByte5" INTEGER NOT NULL, "headerByte6" INTEGER NOT NULL,
    "headerWord5" INTEGER NOT NULL, "headerWord6" INTEGER NOT NULL,
    "headerWord7" INTEGER NOT NULL, "value32d" INTEGER NOT NULL,
    "headerWord8" INTEGER NOT NULL, "signed1" REAL, "signed2" REAL,
    "headerWord9" INTEGER NOT NULL, "headerWord10" INTEGER NOT NULL,
    "headerWord11" INTEGER NOT NULL, "headerWord12" INTEGER NOT NULL,
    "value32e" INTEGER NOT NULL, "value32f" INTEGER NOT NULL, "text1" TEXT NOT NULL,
    "text2" TEXT NOT NULL, "text3" TEXT NOT NULL, "text4" TEXT NOT NULL,
    "headerByte7" INTEGER NOT NULL, "headerWord13" INTEGER NOT NULL,
    "headerWord14" INTEGER NOT NULL
))"_s,
        uR"(CREATE TABLE "sample" (
    "dive" INTEGER NOT NULL REFERENCES "dive"("id") ON DELETE CASCADE,
    "position" INTEGER NOT NULL,
    "version" INTEGER NOT NULL, "depth" INTEGER NOT NULL, "flag" INTEGER NOT NULL,
    "code" INTEGER NOT NULL, "value12" INTEGER NOT NULL, "mode" INTEGER NOT NULL,
    "modeFlag" INTEGER NOT NULL, "aux1" INTEGER NOT NULL, "aux2" INTEGER NOT NULL,
    "aux3" INTEGER NOT NULL, "aux4" INTEGER NOT NULL, "aux5" INTEGER NOT NULL,
    "aux6" INTEGER NOT NULL, "aux7" INTEGER NOT NULL, "aux8" INTEGER NOT NULL,
    "aux9" INTEGER NOT NULL, "aux10" INTEGER NOT NULL, "aux11" INTEGER NOT NULL,
    "aux12" INTEGER NOT NULL,
    PRIMARY KEY ("dive", "position")
) WITHOUT ROWID)"_s,
        uR"(CREATE TABLE "line" (
    "dive" INTEGER NOT NULL REFERENCES "dive"("id") ON DELETE CASCADE,
    "list" INTEGER NOT NULL, "position" INTEGER NOT NULL,
    "time" REAL, "depth" REAL, "value3" REAL, "value4" REAL, "aux1Value" REAL,
    "valueTenths" REAL, "valueNegated" INTEGER NOT NULL, "value8" INTEGER NOT NULL,
    "value9" INTEGER NOT NULL, "value10" INTEGER NOT NULL, "value11" INTEGER NOT NULL,
    "gasIndex" INTEGER NOT NULL, "mode" INTEGER NOT NULL, "flag" INTEGER NOT NULL,
    "aux3" INTEGER NOT NULL, "aux4" INTEGER NOT NULL, "aux5" INTEGER NOT NULL,
    "aux6" INTEGER NOT NULL, "aux7" INTEGER NOT NULL, "aux2" INTEGER NOT NULL,
    "aux8" INTEGER NOT NULL, "aux11" INTEGER NOT NULL, "aux9" INTEGER NOT NULL,
    "aux10" INTEGER NOT NULL, "value24" INTEGER NOT NULL, "flag25" INTEGER NOT NULL,
    PRIMARY KEY ("dive", "list", "position")
) WITHOUT ROWID)"_s,
        uR"(CREATE TABLE "gas" (
    "dive" INTEGER NOT NULL REFERENCES "dive"("id") ON DELETE CASCADE,
    "list" INTEGER NOT NULL, "position" INTEGER NOT NULL,
    "oxygen" REAL, "helium" REAL, "nitrogen" REAL, "limit" REAL, "reserved" INTEGER NOT NULL,
    "usage" INTEGER NOT NULL, "enabled" INTEGER NOT NULL, "label" TEXT NOT NULL,
    "label2" TEXT NOT NULL, "color" INTEGER NOT NULL, "closedCircuit" INTEGER NOT NULL,
    PRIMARY KEY ("dive", "list", "position")
) WITHOUT ROWID)"_s,
        uR"(CREATE TABLE "mark" (
    "dive" INTEGER NOT NULL REFERENCES "dive"("id") ON DELETE CASCADE,
    "list" INTEGER NOT NULL, "position" INTEGER NOT NULL,
    "first" INTEGER NOT NULL, "second" INTEGER NOT NULL, "third" INTEGER NOT NULL,
    PRIMARY KEY ("dive", "list", "position")
) WITHOUT ROWID)"_s,
    };
    return kStatements;
}

/** Entry i leads from version i to version i + 1. */
constexpr std::array kSteps = {&version1};

} // namespace

std::uint32_t newestSchema()
{
    return std::uint32_t(kSteps.size());
}

void migrate(Database &database)
{
    const auto version = [&database] {
        const std::uint32_t found = database.value(u"PRAGMA user_version"_s).toUInt();
        if (found > newestSchema())
            throw logbookError(LogbookError::NewerSchema, database.file());
        return found;
    };
    if (version() == newestSchema())
        return;
    Transaction transaction(database);
    // Another process may have done it in the meantime.
    const std::uint32_t found = version();
    for (std::uint32_t step = found; step < newestSchema(); ++step) {
        for (const QString &statement : kSteps[step]())
            database.run(statement);
    }
    database.run("PRAGMA application_id = "_L1 + QString::number(kApplicationId));
    database.run("PRAGMA user_version = "_L1 + QString::number(newestSchema()));
    transaction.commit();
}
