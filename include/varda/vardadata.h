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
 * Everything learned from the connected computer, and the decoders that fill it.
 *
 * A decoder takes one response buffer: 512 bytes, byte 0 the command's code, the payload from
 * byte 1 on, zeros behind it. It takes what is there, reports nothing, and leaves alone the fields
 * that it does not name. A length counts byte 0 and is taken as 512 at most. If a field has no unit
 * here, its unit is the computer's and not known.
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
    QString syslog; ///< the text log, one line each
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
    std::uint16_t spareWord = 0;       ///< no use yet
    std::array<float, 16> diverN2{};   ///< nitrogen load by tissue
    std::array<float, 16> diverHe{};   ///< helium load by tissue
    float diverCns = 0;                ///< load of the central nervous system by oxygen
    std::int32_t readPosition = 0;     ///< cursor of a decoder at work; no meaning afterwards
    const std::uint8_t *readPayload = nullptr; ///< null unless a decoder is at work

    /** Firmware version, model, record version, mode; and the bootloader's where it is sent. */
    void processIdentification(const Payload &payload);
    void processSerialNumber(const Payload &payload);
    void processBootloaderVersion(const Payload &payload);
    void processOwner(const Payload &payload);
    void processTime(const Payload &payload);
    void processSensors(const Payload &payload);
    void processSimulationParams(const Payload &payload);
    void processDiver(const Payload &payload);
    /** Fills @p out; the store itself is not changed. */
    void processDeleteDives(const Payload &payload, DeleteDivesResult &out);
    /** @param ok  whether the flash was erased */
    void processEraseDivesFlash(const Payload &payload, bool &ok);
    /** One entry of one of config's gas tables; an index of 12 or more is dropped. */
    void processGetGases(const Payload &payload, std::uint16_t length);
    /** Appends the records of one answer to batteryInfo. */
    void processBatteryInformation(const Payload &payload, std::uint16_t length);
    /** @param extended  whether the payload carries the extended section */
    void processComputer(const Payload &payload, bool extended);
    /** Appends one dive to diveHeaders. */
    void processLogbook(const Payload &payload);
    /** Collects samples; an answer without any decodes all that was collected. */
    void processSamples(const Payload &payload, std::uint16_t length);
    /** Appends one line to the text log. */
    void processSyslog(const Payload &payload);
    /** Appends one record to the binary log. */
    void processSyslogBin(const Payload &payload);

    /** Whether the last erasure of the flash succeeded. */
    [[nodiscard]] bool lastEraseFlashSuccess() const { return eraseFlashResult == 1; }

    /**
     * A packed version as text, "1.2.3.a" for 0x01020361: three numbers and a character, most
     * significant first. A zero low byte gives a NUL character at the end.
     */
    [[nodiscard]] static QString firmwareVersionToString(std::uint32_t version);

private:
    void readVardaComputer(BufferReader &reader, int version, bool extended);
    void readTidemarComputer(BufferReader &reader, int version, bool extended);
    void readVSKMComputer(BufferReader &reader, int version, bool extended);
};
