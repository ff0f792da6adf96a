// SPDX-License-Identifier: MIT
// What a long life asks of the library, over the real Qt Bluetooth against the simulated computer:
//
//   varda-endurance cycles N               N times scan, connect, download, disconnect
//   varda-endurance sessions N             N sessions at once, each with a computer of its own
//   varda-endurance logbook DIVES SAMPLES  a whole logbook over one link
//   varda-endurance jobs …                 any of these through jobs instead of sessions
#include <QtCore/qcoreapplication.h>
#include <QtCore/qloggingcategory.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "download.h"
#include "figures.h"
#include "world.h"

using namespace Qt::StringLiterals;

namespace {

// On the fast clock: what no healthy machine needs, and what every link takes to close.
constexpr int kLong = 600'000;
constexpr int kCloses = 10'000;
// The message bus' library keeps the buffers of some messages, each as large as it ever was, so a
// young process still grows a little.
constexpr qint64 kHeapNoise = 256 * qint64(1024);
constexpr qint64 kResidentNoise = 8 * kHeapNoise;

// Dives of a computer, and visits that one session makes to it.
constexpr int kDives = 3;
constexpr int kVisits = 10;

int problems = 0;
bool throughJobs = false;

std::unique_ptr<Reader> makeReader()
{
    if (throughJobs)
        return std::make_unique<JobReader>();
    return std::make_unique<SessionReader>();
}

void blame(const QString &what)
{
    std::printf("FAIL %s\n", qPrintable(what));
    std::fflush(stdout);
    ++problems;
}

/** What is held once all that ends by itself has ended. */
Figures settled()
{
    World::wait([] { return false; }, kCloses);
    return figures();
}

void compare(const QString &when, const Figures &now, const Figures &before)
{
    print(qPrintable(when), now);
    if (now.objects != before.objects)
        blame(u"%1 objects, %2 before"_s.arg(now.objects).arg(before.objects));
    if (now.descriptors != before.descriptors)
        blame(u"%1 descriptors, %2 before"_s.arg(now.descriptors).arg(before.descriptors));
    if (now.heap > before.heap + kHeapNoise)
        blame(u"%1 bytes of heap, %2 before"_s.arg(now.heap).arg(before.heap));
    // Under a sanitizer, which keeps what was freed, there is no such heap.
    if (now.heap > 0 && now.resident > before.resident + kResidentNoise)
        blame(u"%1 bytes resident, %2 before"_s.arg(now.resident).arg(before.resident));
}

void check(const Download &download, int dives, const QByteArray &fingerprint)
{
    if (!download.problem().isEmpty())
        blame(download.problem());
    else if (!download.isDone())
        blame(u"a download has not ended"_s);
    else if (download.dives() != dives)
        blame(u"%1 dives instead of %2"_s.arg(download.dives()).arg(dives));
    else if (download.fingerprint() != fingerprint)
        blame(u"other data than at first"_s);
}

/** The fingerprint of a computer that is read without a scan and let go. */
QByteArray readOne(Reader &reader, const BleDeviceInfo &device)
{
    const auto download = reader.read(device, BleMode::Gatt);
    World::wait([&] { return download->isDone(); }, kLong);
    check(*download, kDives, download->fingerprint());
    reader.letGo();
    return download->fingerprint();
}

/** Some visits to a computer through one reader, over links of both kinds in turn. */
void visits(const QByteArray &fingerprint)
{
    const auto reader = makeReader();
    for (int visit = 0; visit < kVisits && problems == 0; ++visit) {
        const auto download = reader->read({}, visit % 2 == 0 ? BleMode::Gatt : BleMode::Sps);
        World::wait([&] { return download->isDone(); }, kLong);
        check(*download, kDives, fingerprint);
        reader->letGo();
    }
}

void cycles(World &world, int count)
{
    constexpr int kLooks = 5;
    world.load(R"({"recordTraffic":false,"disconnectDelay":2000,"devices":[
        {"known":true,"mode":"both","dives":{"count":3,"samples":300}}]})");
    const QByteArray fingerprint = readOne(
        *makeReader(), BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, u"Varda"_s));
    visits(fingerprint);
    visits(fingerprint);
    const Figures before = settled();
    print("after the first", before);
    for (int look = 1; look <= kLooks && problems == 0; ++look) {
        for (int done = 0; done < count / kLooks; done += kVisits)
            visits(fingerprint);
        compare(u"after %1 more"_s.arg(count / kLooks * look), settled(), before);
    }
}

void readAll(const QList<BleDeviceInfo> &devices, const QList<QByteArray> &fingerprints)
{
    std::vector<std::unique_ptr<Reader>> readers;
    std::vector<std::unique_ptr<Download>> downloads;
    for (const BleDeviceInfo &device : devices) {
        readers.push_back(makeReader());
        downloads.push_back(
            readers.back()->read(device, readers.size() % 2 ? BleMode::Gatt : BleMode::Sps));
    }
    for (size_t i = 0; i < downloads.size(); ++i) {
        World::wait([&] { return downloads[i]->isDone(); }, kLong);
        check(*downloads[i], kDives, fingerprints[qsizetype(i)]);
    }
}

void sessions(World &world, int count)
{
    constexpr int kRounds = 10;
    QList<BleDeviceInfo> devices;
    QByteArrayList keys;
    for (int i = 1; i <= count; ++i) {
        keys +=
            R"({"known":true,"mode":"both","owner":"Diver %1","dives":{"count":3,"seed":%1}})"_ba
                .replace("%1", QByteArray::number(i));
        devices += BleDeviceInfo::fromAddress(
            u"00:AA:01:01:00:%1"_s.arg(i, 2, 16, QLatin1Char('0')).toUpper(), u"Varda"_s);
    }
    world.load(R"({"recordTraffic":false,"devices":[)" + keys.join(',') + "]}");

    // What each has to tell is learned from each alone.
    QList<QByteArray> fingerprints;
    {
        const auto reader = makeReader();
        for (const BleDeviceInfo &device : std::as_const(devices)) {
            const QByteArray fingerprint = readOne(*reader, device);
            if (fingerprints.contains(fingerprint))
                blame(u"two computers tell the same"_s);
            fingerprints += fingerprint;
        }
    }
    readAll(devices, fingerprints);
    const Figures before = settled();
    print("after the first round", before);
    for (int round = 1; round < kRounds && problems == 0; ++round) {
        readAll(devices, fingerprints);
        compare(u"after round %1"_s.arg(round + 1), settled(), before);
    }
}

void logbook(World &world, int dives, int samples)
{
    world.load(
        R"({"recordTraffic":false,"devices":[{"known":true,"mtu":247,"dives":{"count":%1,"samples":%2}}]})"_ba
            .replace("%1", QByteArray::number(dives))
            .replace("%2", QByteArray::number(samples)));
    const auto computer = BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, u"Varda"_s);
    // A session hands out headers as they come, the newest first; a job the oldest.
    const int step = throughJobs ? 1 : -1;
    int last = throughJobs ? 0 : dives + 1;
    const Figures before = figures();
    print("before", before);
    const auto reader = makeReader();
    const auto download = reader->read(computer, BleMode::Gatt);
    download->take = [&](const Dive &dive) {
        if (dive.diveNumber != last + step || dive.lines.size() != samples)
            blame(u"dive %1 with %2 samples comes after dive %3"_s.arg(dive.diveNumber)
                      .arg(dive.lines.size())
                      .arg(last));
        last = dive.diveNumber;
        if (dive.diveNumber % qMax(1, dives / 5) == 0)
            print(qPrintable(u"dive %1"_s.arg(dive.diveNumber)), figures());
    };
    World::wait([&] { return download->isDone(); }, kLong * 100);
    check(*download, dives, download->fingerprint());
    reader->letGo();
    print("at the end", settled());
    std::printf("%d dives, %lld samples, peak of %.1f MB resident\n", download->dives(),
                download->samples(), double(peakResident()) / 1e6);
}

} // namespace

int main(int argc, char *argv[])
{
    countObjects();
    const QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(u"varda.*=false\nqt.bluetooth*=false"_s);
    QStringList arguments = QCoreApplication::arguments();
    throughJobs = arguments.value(1) == "jobs"_L1;
    if (throughJobs)
        arguments.removeAt(1);
    const auto number = [&](qsizetype at) { return arguments.value(at).toInt(); };
    World world;
    if (arguments.value(1) == "cycles"_L1 && number(2) > 0)
        cycles(world, number(2));
    else if (arguments.value(1) == "sessions"_L1 && number(2) > 0)
        sessions(world, number(2));
    else if (arguments.value(1) == "logbook"_L1 && number(2) > 0 && number(3) > 0)
        logbook(world, number(2), number(3));
    else
        blame(u"[jobs] cycles N | sessions N | logbook DIVES SAMPLES"_s);
    std::puts(problems == 0 ? "passed" : "failed");
    return problems == 0 ? 0 : 1;
}
