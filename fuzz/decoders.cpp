// SPDX-License-Identifier: MIT
// Each decoder by itself, and what the command makes of its result.
#include "fuzz.h"
#include "outlets.h"

#include <array>

#include <varda/tidemardiveconverter.h>
#include <varda/vardadata.h>
#include <varda/vardasession.h>

#include "commands/gastable.h"
#include "output/divetext.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/text.h"

namespace {

using Payload = VardaData::Payload;

void showVersions(const VardaData &data)
{
    checkLine(safeText(versionText(data.firmwareVersionStr)));
    checkLine(safeText(versionText(data.bootloaderVersionStr)));
    checkLine(safeText(data.serialNumber));
}

void showNumbers(const VardaData &data)
{
    checkLine(clockText(data.computerTime));
    for (const float load : data.diverN2)
        checkLine(tenthsText(double(load)));
    static_cast<void>(data.config.depthAtPressure(data.config.pressureAtDepth(float(data.pamb))));
}

void showConfiguration(const VardaData &data)
{
    checkLine(safeText(data.owner));
    checkDocument(fieldsOf(data.config));
    checkDocument(fieldsOf(data.computer));
    checkTerminal(gasesText(data.config.gasTable1) + gasesText(data.config.gasTable2));
}

void showDives(const VardaData &data)
{
    static const VardaSession kNoSession;
    check(data.diveSamples.size() <= 86, "512 bytes have room for 86 samples");
    const auto header = data.diveHeaders.value(0);
    const auto samples = data.diveSamples.first(std::min<qsizetype>(data.diveSamples.size(), 4));
    const Dive dive = TidemarDiveConverter::toDive(header, samples, kNoSession);
    checkDocument(fieldsOf(header));
    checkDocument(fieldsOf(dive));
    checkTerminal(diveSummary(dive, Units::Metric) + divesRow(dive, Units::Imperial));
}

void showBattery(const VardaData &data)
{
    check(data.batteryInfo.size() <= 63, "512 bytes have room for 63 battery records");
    for (const BatteryInfoRecord &record : data.batteryInfo)
        checkDocument(fieldsOf(record));
}

void showLogs(const VardaData &data)
{
    check(data.syslog.isEmpty() || data.syslog.endsWith(u'\n'), "a line of the log has an end");
    checkTerminal(safeText(data.syslog));
    for (const SyslogBinRecord &record : data.syslogBin) {
        checkLine(convertSyslogRecord(record, true));
        checkLine(convertSyslogRecord(record, false));
    }
}

struct Part {
    void (*decode)(VardaData &data, const Payload &payload, std::uint16_t length);
    void (*show)(const VardaData &data);
};

constexpr Part kParts[] = {
    {[](auto &data, auto &payload, auto) { data.processIdentification(payload); }, showVersions},
    {[](auto &data, auto &payload, auto) { data.processSerialNumber(payload); }, showVersions},
    {[](auto &data, auto &payload, auto) { data.processBootloaderVersion(payload); }, showVersions},
    {[](auto &data, auto &payload, auto) { data.processOwner(payload); }, showConfiguration},
    {[](auto &data, auto &payload, auto) { data.processTime(payload); }, showNumbers},
    {[](auto &data, auto &payload, auto) { data.processSensors(payload); }, showNumbers},
    {[](auto &data, auto &payload, auto) { data.processSimulationParams(payload); }, showNumbers},
    {[](auto &data, auto &payload, auto) { data.processDiver(payload); }, showNumbers},
    {[](auto &data, auto &payload, auto) {
         DeleteDivesResult result;
         data.processDeleteDives(payload, result);
     },
     showNumbers},
    {[](auto &data, auto &payload, auto) {
         bool ok = false;
         data.processEraseDivesFlash(payload, ok);
         check(ok == (payload[1] == 1), "the flash is erased where the computer says so");
     },
     showNumbers},
    {[](auto &data, auto &payload, auto length) { data.processGetGases(payload, length); },
     showConfiguration},
    {[](auto &data, auto &payload, auto length) {
         data.processBatteryInformation(payload, length);
     },
     showBattery},
    {[](auto &data, auto &payload, auto) { data.processComputer(payload, false); },
     showConfiguration},
    {[](auto &data, auto &payload, auto) { data.processComputer(payload, true); },
     showConfiguration},
    {[](auto &data, auto &payload, auto) { data.processLogbook(payload); }, showDives},
    {[](auto &data, auto &payload, auto length) {
         data.processSamples(payload, length);
         data.processSamples({}, 1);
     },
     showDives},
    {[](auto &data, auto &payload, auto) { data.processSyslog(payload); }, showLogs},
    {[](auto &data, auto &payload, auto) { data.processSyslogBin(payload); }, showLogs},
};

Payload payloadOf(const QByteArray &body)
{
    Payload payload{};
    std::copy_n(body.begin(), std::min<qsizetype>(body.size(), qsizetype(payload.size()) - 1),
                payload.begin() + 1);
    return payload;
}

} // namespace

/** Decoder, model, record version, the length that is told, and the body. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Input input(bytes, size);
    const Part &part = kParts[input.byte() % std::size(kParts)];
    VardaData data;
    data.computerModel = ComputerModel::ComputerModelIn(input.byte() % 5);
    data.recordVersion = input.byte();
    const std::uint16_t told = input.word();
    const QByteArray body = input.rest();
    const auto honest = std::uint16_t(std::min<qsizetype>(body.size() + 1, 0xFFFF));
    part.decode(data, payloadOf(body), told == 0 ? honest : told);
    part.show(data);
    return 0;
}
