// SPDX-License-Identifier: MIT
#include "jobs.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qendian.h>
#include <QtCore/qmetaobject.h>

#include <cstdlib>

#include "digest.h"

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

/** A clock that a job has just set differs from run to run; any other is the scenario's. */
QString clockOf(const VardaSession &session)
{
    constexpr qint64 kHour = 3600;
    const QDateTime now = QDateTime::currentDateTime();
    const qint64 ahead = session.computerTime() - now.toSecsSinceEpoch() - now.offsetFromUtc();
    return std::abs(ahead) < kHour ? u"now"_s : QString::number(session.computerTime());
}

} // namespace

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(i * 37 + 11);
    return bytes;
}

QByteArray image(quint32 magic)
{
    QByteArray bytes = pattern(600);
    qToLittleEndian(magic, bytes.data() + 512);
    qToLittleEndian(quint32(0x02000161), bytes.data() + 520);
    return bytes;
}

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
               session.lastEraseFlashSuccess(), session.deleteResult(), session.config(),
               session.computer(), session.diveHeaders(), session.diveSamples(),
               session.syslogBin(), session.batteryInfo(), session.layouts(), clockOf(session));
    return digest.text;
}
