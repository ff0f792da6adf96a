// SPDX-License-Identifier: MIT
#include "computerjobs.h"

#include <QtCore/qdatetime.h>

#include <cstdlib>

#include "digest.h"
#include "jobs.h"

using namespace Qt::StringLiterals;

namespace {

using Shared = std::shared_ptr<Report>;

template <typename... Values> QByteArray digestOf(const Values &...values)
{
    Digest digest;
    digest.add(values...);
    return digest.text;
}

void report(const VardaIdentity &value, Report &report)
{
    report.data = digestOf(value.model, value.mode, value.recordVersion, value.firmwareVersion,
                           value.firmwareVersionStr);
    report.about = digestOf(value.serialNumber, value.bootloaderVersion,
                            value.bootloaderVersionStr);
}

void report(const VardaSensors &value, Report &report)
{
    report.data = digestOf(value.psurf, value.pamb, value.dstop, value.density);
}

void report(const VardaTissues &value, Report &report)
{
    report.data = digestOf(value.n2, value.he, value.cns);
}

void report(const VardaGasTables &value, Report &report)
{
    report.data = digestOf(value.table1, value.table2);
}

void report(const VardaConfiguration &value, Report &report)
{
    report.data = digestOf(value.config, value.computer);
}

/** A clock that a job has just set differs from run to run; any other is the scenario's. */
void report(std::int64_t clock, Report &report)
{
    constexpr qint64 kHour = 3600;
    const QDateTime now = QDateTime::currentDateTime();
    const bool isNow = std::abs(clock - now.toSecsSinceEpoch() - now.offsetFromUtc()) < kHour;
    report.data = isNow ? "now" : QByteArray::number(qint64(clock));
}

template <typename Value> void report(const Value &value, Report &report)
{
    report.data = digestOf(value);
}

template <typename Ask> Job job(const char *name, Ask ask)
{
    Job job;
    job.name = QString::fromLatin1(name);
    job.collected = true;
    job.before.clear();
    job.computer.ask = [ask](VardaComputer &computer, const Shared &shared) -> VardaJob * {
        auto *const asked = ask(computer);
        if constexpr (requires { asked->result(); }) {
            QObject::connect(asked, &VardaJob::finished, asked,
                             [asked, shared] { report(asked->result(), *shared); });
        }
        return asked;
    };
    return job;
}

template <typename Ask> Job writing(const char *name, Ask ask)
{
    Job writing = job(name, ask);
    writing.computer.writes = true;
    writing.consumes = true;
    return writing;
}

template <typename Ask> Job once(const char *name, Ask ask)
{
    Job once = writing(name, ask);
    once.computer.once = true;
    return once;
}

Job download()
{
    Job download;
    download.name = u"Dives"_s;
    download.collected = true;
    download.before.clear();
    download.computer.optional = {TidemarCommand::Serialnumber, TidemarCommand::Computer};
    download.computer.ask = [](VardaComputer &computer, const Shared &report) -> VardaJob * {
        auto *const job = computer.downloadDives();
        QObject::connect(job, &DownloadJob::diveRead, job,
                         [report](const Dive &dive, const TidemarDiveHeader &header,
                                  const QList<DiveSample> &samples) {
                             report->data += digestOf(header, samples);
                             report->about += digestOf(dive);
                         });
        QObject::connect(job, &VardaJob::finished, job, [job, report] {
            report->data += digestOf(job->headers(), job->value().toLongLong());
            report->isPartial = !job->damaged().isEmpty();
        });
        return job;
    };
    return download;
}

QList<Job> makeJobs()
{
    using Computer = VardaComputer;
    const MarloSettings marlo{1, 2, 0.5F, 3, 1.5F, 4, 5, 6};
    QList<Job> jobs;
    jobs += job("Identification", [](Computer &c) { return c.readIdentity(); });
    jobs.last().computer.optional = {TidemarCommand::Serialnumber,
                                     TidemarCommand::BootloaderVersion};
    jobs += job("Time", [](Computer &c) { return c.readClock(); });
    jobs += job("Sensors", [](Computer &c) { return c.readSensors(); });
    jobs += job("Computer", [](Computer &c) { return c.readConfiguration(true); });
    jobs += job("Computer_new", [](Computer &c) { return c.readConfiguration(); });
    jobs += job("Diver", [](Computer &c) { return c.readTissues(); });
    jobs += job("Owner", [](Computer &c) { return c.readOwner(); });
    jobs += job("Syslog", [](Computer &c) { return c.readLog(); });
    jobs += job("SyslogBin", [](Computer &c) { return c.readBinaryLog(); });
    jobs += job("Gases", [](Computer &c) { return c.readGasTables(); });
    jobs += job("Battery", [](Computer &c) { return c.readBatteryHistory(); });
    jobs += job("Logbook", [](Computer &c) { return c.readLogbook({2}); });
    jobs += job("Samples", [](Computer &c) { return c.readSamples(1); });
    jobs += download();
    jobs += job("LayoutList", [](Computer &c) { return c.readLayouts(); });
    jobs += job("LayoutGet", [](Computer &c) { return c.readLayout(1); });
    jobs += job("LayoutActiveGet", [](Computer &c) { return c.readActiveLayouts(); });

    jobs += writing("SetTime", [](Computer &c) { return c.setClock(); });
    jobs += writing("SetPressure", [](Computer &c) { return c.writeSurfacePressure(987); });
    jobs += writing("SetOwner", [](Computer &c) { return c.writeOwner(u"Grace Hopper"_s); });
    jobs += writing("Marlo", [=](Computer &c) { return c.writeSettings(marlo); });
    jobs += writing("SuperUser", [](Computer &c) { return c.setSuperUserMode(true); });
    jobs.last().computer.mayBeSilent = true;
    jobs += writing("LayoutActiveSet", [](Computer &c) { return c.activateLayout(1, 2); });
    jobs += once("LayoutAdd", [](Computer &c) { return c.addLayout(pattern(300)); });
    jobs += once("LayoutRemove", [](Computer &c) { return c.removeLayout(2); });
    jobs += once("LayoutRemoveAll", [](Computer &c) { return c.removeAllLayouts(); });
    jobs += once("DeleteLastDive", [](Computer &c) { return c.deleteLastDive(); });
    jobs += once("EraseDives", [](Computer &c) { return c.eraseDives(); });
    jobs += once("Reset", [](Computer &c) { return c.restart(); });

    jobs += writing("OldFirmware", [](Computer &c) {
        return c.uploadFirmware(pattern(300), u"varda.2.0.1.a.bin"_s, true);
    });
    jobs += writing("Firmware",
                    [](Computer &c) { return c.uploadFirmware(image(0xDEADBEEF), {}, true); });
    jobs += writing("Bootloader",
                    [](Computer &c) { return c.uploadFirmware(image(0x424F4F54), {}, true); });
    return jobs;
}

} // namespace

const QList<Job> &allComputerJobs()
{
    static const QList<Job> kJobs = makeJobs();
    return kJobs;
}
