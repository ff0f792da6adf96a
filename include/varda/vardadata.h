// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <array>
#include <cstdint>

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/computermodel.h>
#include <varda/currentmode.h>
#include <varda/deletedivesresult.h>
#include <varda/divesample.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaexport.h>

class BufferReader;

/**
 * Everything read from the connected computer, and the decoders that fill it.
 *
 * A decoder takes one response buffer: 512 bytes, byte 0 is the command's code, the payload starts
 * at byte 1, and zeros follow it. The decoder reads what is there, reports nothing, and does not
 * change other fields. A length includes byte 0 and counts as 512 at most. A field without a unit
 * has the computer's own unit, which is not known.
 */
class VARDA_EXPORT VardaData
{
public:
    using Payload = std::array<std::uint8_t, 512>;

    CurrentMode::CurrentModeIn currentMode = CurrentMode::Unknown;
    ComputerModel::ComputerModelIn computerModel = ComputerModel::Unknown;
    std::uint8_t recordVersion = 0;      ///< version of the record layouts
    std::uint32_t bootloaderVersion = 0; ///< packed, see firmwareVersionToString()
    QString bootloaderVersionStr;
    std::uint32_t firmwareVersion = 0; ///< packed, see firmwareVersionToString()
    QString firmwareVersionStr;
    QString serialNumber;
    QString syslog; ///< the text log, one entry per line
    QList<SyslogBinRecord> syslogBin;
    QList<BatteryInfoRecord> batteryInfo;
    BleConfig config;
    BleComputer computer;
    QString owner;
    std::uint32_t psurf = 0;              ///< surface pressure
    std::uint32_t pamb = 0;               ///< ambient pressure
    std::uint16_t dstop = 0;              ///< meaning unknown
    std::uint16_t density = 0;            ///< density of the water
    std::int64_t computerTime = 0;        ///< the computer's clock: seconds since 1970, local time
    QList<TidemarDiveHeader> diveHeaders; ///< in order of arrival
    QByteArray samplesBuffer;             ///< raw samples of the dive being read
    QList<DiveSample> diveSamples;
    std::uint8_t eraseFlashResult = 0; ///< 1: the flash was erased
    std::uint16_t spareWord = 0;       ///< not used yet
    std::array<float, 16> diverN2{};   ///< nitrogen load by tissue
    std::array<float, 16> diverHe{};   ///< helium load by tissue
    float diverCns = 0;                ///< oxygen load of the central nervous system
    std::int32_t readPosition = 0;     ///< position of a running decoder; no meaning afterwards
    const std::uint8_t *readPayload = nullptr; ///< null unless a decoder is running

    /** Firmware version, model, record version, mode; and the bootloader's if it is sent. */
    void processIdentification(const Payload &payload);
    void processSerialNumber(const Payload &payload);
    void processBootloaderVersion(const Payload &payload);
    void processOwner(const Payload &payload);
    void processTime(const Payload &payload);
    void processSensors(const Payload &payload);
    void processSimulationParams(const Payload &payload);
    void processDiver(const Payload &payload);
    /** Fills @p out and does not change this object. */
    void processDeleteDives(const Payload &payload, DeleteDivesResult &out);
    /** @param ok  whether the flash was erased */
    void processEraseDivesFlash(const Payload &payload, bool &ok);
    /** One entry of one of config's gas tables; an index of 12 or more is dropped. */
    void processGetGases(const Payload &payload, std::uint16_t length);
    /** Appends the records of one answer to batteryInfo. */
    void processBatteryInformation(const Payload &payload, std::uint16_t length);
    /** @param extended  whether the payload has the extended section */
    void processComputer(const Payload &payload, bool extended);
    /** Appends one dive to diveHeaders. */
    void processLogbook(const Payload &payload);
    /** Collects samples; an answer without samples decodes all that were collected. */
    void processSamples(const Payload &payload, std::uint16_t length);
    /** Appends one line to the text log. */
    void processSyslog(const Payload &payload);
    /** Appends one record to the binary log. */
    void processSyslogBin(const Payload &payload);

    /** Whether the last erasure of the flash succeeded. */
    [[nodiscard]] bool lastEraseFlashSuccess() const { return eraseFlashResult == 1; }

    /**
     * A packed version as text, "1.2.3.a" for 0x01020361: three numbers and a character, most
     * significant first. If the low byte is 0, the text ends with a NUL character.
     */
    [[nodiscard]] static QString firmwareVersionToString(std::uint32_t version);

private:
    void readVardaComputer(BufferReader &reader, int version, bool extended);
    void readTidemarComputer(BufferReader &reader, int version, bool extended);
    void readVSKMComputer(BufferReader &reader, int version, bool extended);
};
