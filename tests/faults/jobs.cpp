// SPDX-License-Identifier: MIT
#include "jobs.h"

#include <QtCore/qendian.h>
#include <QtCore/qmetaobject.h>

#include <type_traits>

#include <varda/tidemardiveconverter.h>

using namespace Qt::StringLiterals;

namespace {

using Code = TidemarCommand::TidemarCommandIn;

Job command(Code code)
{
    const QString name = QString::fromLatin1(QMetaEnum::fromType<Code>().valueToKey(code));
    Job job{name,
            [code](VardaSession &session) { session.startCommand(code); },
            {u"endCommand "_s + name}};
    if (code == TidemarCommand::Identification)
        job.before.clear();
    return job;
}

Job other(const char *name, std::function<void(VardaSession &)> start, const char *ends)
{
    return {QString::fromLatin1(name), std::move(start), {u"endCommand "_s + QLatin1String(ends)}};
}

Job collected(Job job)
{
    job.collected = true;
    return job;
}

Job consuming(Job job)
{
    job.consumes = true;
    return job;
}

Job withBootloader(Job job)
{
    job.before.append(TidemarCommand::BootloaderVersion);
    return job;
}

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(i * 37 + 11);
    return bytes;
}

// Five blocks of the default size.
QByteArray image(quint32 magic)
{
    QByteArray bytes = pattern(600);
    qToLittleEndian(magic, bytes.data() + 512);
    qToLittleEndian(quint32(0x02000161), bytes.data() + 520);
    return bytes;
}

QList<Job> makeJobs()
{
    using enum Code;
    const MarloSettings marlo{1, 2, 0.5F, 3, 1.5F, 4, 5, 6};
    QList<Job> jobs;
    for (const Code code : {Identification, Serialnumber, TidemarCommand::BootloaderVersion, Time,
                            Sensors, SimulParams})
        jobs += command(code);
    for (const Code code : {Computer, Computer_new, Diver, Owner, Syslog, SyslogBin})
        jobs += collected(command(code));

    jobs += other("SetTime", [](VardaSession &s) { s.startSetTime(); }, "Set_time");
    jobs += other("SetPressure", [](VardaSession &s) { s.startSetPressure(987); }, "Set_sensors");
    jobs += other("SetOwner", [](VardaSession &s) { s.setOwner(u"Grace Hopper"_s); }, "Set_owner");
    jobs += other("Gases0", [](VardaSession &s) { s.startGetGases(0); }, "GetGases");
    jobs += other("Gases1", [](VardaSession &s) { s.startGetGases(1); }, "GetGases");
    jobs += other("Marlo", [=](VardaSession &s) { s.startMarloSettings(marlo); }, "MarloSet");
    jobs += collected(other(
        "Battery", [](VardaSession &s) { s.startGetBatteryInformation(); }, "BatteryInformation"));
    jobs += collected(other("Logbook", [](VardaSession &s) { s.startGetLogbook({2}); }, "Logbook"));
    jobs += collected(
        other("Samples", [](VardaSession &s) { s.startGetDiveSamples(1); }, "Fullsamples"));

    jobs += collected(
        other("LayoutList", [](VardaSession &s) { s.startLayoutList(); }, "LayoutList"));
    jobs += collected(
        other("LayoutGet", [](VardaSession &s) { s.startLayoutGet(1); }, "LayoutGet"));
    jobs += other(
        "LayoutActiveGet", [](VardaSession &s) { s.startLayoutActiveGet(); }, "LayoutActiveGet");
    jobs += other(
        "LayoutActiveSet", [](VardaSession &s) { s.startLayoutActiveSet(1, 2); },
        "LayoutActiveSet");
    jobs += consuming(
        other("LayoutAdd", [](VardaSession &s) { s.startLayoutAdd(pattern(300)); }, "LayoutAdd"));
    jobs += consuming(
        other("LayoutRemove", [](VardaSession &s) { s.startLayoutRemove(2); }, "LayoutRemove"));
    jobs += consuming(other(
        "LayoutRemoveAll", [](VardaSession &s) { s.startLayoutRemoveAll(); }, "LayoutRemoveAll"));

    jobs += consuming(command(DeleteLastDive));
    jobs += consuming(command(EraseDives));
    jobs.last().ends = {u"endCommand DeleteLastDive"_s};
    jobs += {u"SuperUser"_s, [](VardaSession &s) { s.startSuperUserMode(true); }, {}};
    jobs += {u"Reset"_s,
             [](VardaSession &s) { s.startCommand(Reset); },
             {u"message Disconnect from device"_s, u"disconnectController"_s}};

    jobs += consuming(other(
        "OldFirmware",
        [](VardaSession &s) { s.uploadFirmware(pattern(300), u"varda.2.0.1.a.bin"_s, true); },
        "End_program"));
    jobs += consuming(withBootloader(other(
        "Firmware", [](VardaSession &s) { s.uploadFirmware(image(0xDEADBEEF), {}, true); },
        "End_program")));
    jobs += consuming(other(
        "Bootloader", [](VardaSession &s) { s.uploadFirmware(image(0x424F4F54), {}, true); },
        "End_program"));
    return jobs;
}

/** Values one after the other, whatever they are. */
class Digest
{
public:
    template <typename T> Digest &operator<<(const T &value)
    {
        if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
            text += QByteArray::number(double(value), 'g', 17) + ' ';
        else if constexpr (std::is_same_v<T, QString>)
            text += value.toUtf8().toPercentEncoding() + ' ';
        else if constexpr (std::is_same_v<T, QByteArray>)
            text += value.toHex() + ' ';
        else
            all(value);
        return *this;
    }
    template <typename... Ts> void add(const Ts &...values) { ((*this << values), ...); }

    QByteArray text;

private:
    template <typename Range> void all(const Range &range)
    {
        text += '[';
        for (const auto &each : range)
            add(each);
        text += ']';
    }
};

void add(Digest &digest, const BleConfig &config)
{
    digest.add(config.configWord, config.cfgA, config.cfgB, config.cfgC, config.cfgD, config.cfgE,
               config.waterType, config.surfacePressure, config.cfgF, config.cfgG, config.cfgBytes,
               config.cfgH, config.tailBytes);
    for (const auto &each : config.cfgTriple)
        digest.add(each.first, each.second, each.third);
    for (const auto &table : {config.gasTable1, config.gasTable2}) {
        for (const auto &gas : table)
            digest.add(gas.oxygen, gas.helium);
    }
}

void add(Digest &digest, const BleComputer &computer)
{
    const BleComputer &c = computer;
    digest.add(c.rawBlock, c.batteryType, c.setting1, c.setting2, c.setting3, c.setting4,
               c.setting5, c.setting6, c.setting7, c.setting8, c.value64a, c.flags32, c.value64b,
               c.entryCount, c.entries, c.value64c, c.computerByte1, c.quadWords, c.computerWord1,
               c.computerWord2, c.computerWord3, c.computerWord4, c.computerWord5, c.computerWord6,
               c.sixWords, c.computerByte2, c.computerByte3, c.computerByte4, c.value64d,
               c.value64e, c.computerByte5, c.computerWord7);
}

void add(Digest &digest, const TidemarDiveHeader &h)
{
    digest.add(h.diveNumber, h.model, h.stamp, h.stamp2, h.tenths1, h.tenths2, h.sampleInterval,
               h.value32a, h.value32b, h.value32c, h.value32d, h.value32e, h.value32f, h.kindByte,
               h.tidemarBit, h.headerWord1, h.headerWord5, h.headerWord13, h.headerByte7, h.count1,
               h.count2, h.tissueN2, h.tissueHe, h.gasSlotMask, h.gasO2, h.gasHe, h.signed1,
               h.signed2);
}

void add(Digest &digest, const DiveSample &s)
{
    digest.add(s.version, int(s.depth), int(s.flag), int(s.code), int(s.value12), int(s.mode),
               s.aux1, s.aux2, s.aux3, s.aux4, s.aux5, s.aux6, s.aux7, s.aux8, s.aux9, s.aux10,
               s.aux11, s.aux12);
}

} // namespace

const QList<Job> &allJobs()
{
    static const QList<Job> kJobs = makeJobs();
    return kJobs;
}

QByteArray digestOf(const VardaSession &session)
{
    Digest digest;
    digest.add(session.computerModel(), session.currentMode(), session.recordVersion(),
               session.serialNumber(), session.firmwareVersion(), session.firmwareVersionStr(),
               session.bootloaderVersion(), session.bootloaderVersionStr(), session.owner(),
               session.psurf(), session.pamb(), session.density(), session.dstop(),
               session.diverN2(), session.diverHe(), session.diverCns(), session.syslog(),
               session.activeLayouts(), session.layoutBlob(), session.layoutCommandSuccess(),
               session.deleteResult().resultA, session.deleteResult().resultB);
    add(digest, session.config());
    add(digest, session.computer());
    for (const auto &header : session.diveHeaders())
        add(digest, header);
    for (const auto &sample : session.diveSamples())
        add(digest, sample);
    for (const auto &record : session.syslogBin())
        digest.add(record.time, record.type, record.arg1, record.arg2);
    for (const auto &record : session.batteryInfo())
        digest.add(record.kind, record.value20, record.value12, record.offsetValue,
                   record.scaledValue, record.extra15, record.extra12);
    for (const auto &layout : session.layouts())
        digest.add(layout.first, layout.second, layout.name);
    return digest.text;
}
