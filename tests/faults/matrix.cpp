// SPDX-License-Identifier: MIT
#include "matrix.h"

#include <algorithm>
#include <iterator>

#include "device/wire/frame.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kLargestNotification = 244;
constexpr int kDbusTime = 25'000;

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

// A sound answer to something that nobody asked.
QByteArray foreignFrame()
{
    return simulator::encodeFrame({TidemarCommand::Time, bytes("8815476600000000")});
}

struct NamedDeed {
    const char *name;
    Deed::Kind kind;
};

/** Ways in which a link goes down and everybody is told. */
constexpr NamedDeed kDrops[] = {
    {"drop", Deed::Drop},
    {"adapterOff", Deed::AdapterOff},
    {"adapterRemoved", Deed::RemoveAdapter},
    {"deviceRemoved", Deed::RemoveDevice},
};
/** Ways in which nobody is told. */
constexpr NamedDeed kLosses[] = {
    {"daemonGone", Deed::Kill},
    {"daemonRestarted", Deed::Restart},
};

class Matrix
{
public:
    Matrix(const Setting &setting, const Healthy &healthy) : m_setting(setting), m_healthy(healthy)
    {
    }

    QList<Case> all()
    {
        // What happens before a job does not depend on the job.
        if (m_setting.job->name == "Identification"_L1) {
            for (const bool scan : {false, true}) {
                beforeConnection(scan);
                stepsOfConnection(scan);
                eventsOfConnection(scan);
            }
        }
        if (QStringList{u"Identification"_s, u"Owner"_s, u"Logbook"_s, u"Firmware"_s}.contains(
                m_setting.job->name))
            betweenJobs();
        for (int i = 0; i < int(m_healthy.exchanges.size()); ++i) {
            writes(i);
            requests(i);
            notifications(i);
        }
        return m_cases;
    }

private:
    // ---- Before and during the connection

    QStringList begin(bool scan) const
    {
        const QString name = m_setting.model == "varda"_L1     ? u"Varda"_s
                             : m_setting.model == "tidemar"_L1 ? u"Tidemar"_s
                                                               : u"VSK-0042"_s;
        if (!scan)
            return {u"message Connect to "_s + name};
        return {u"message Scan Devices"_s, u"message Name: %1 - Address: *"_s.arg(name),
                u"message %1 found"_s.arg(name), u"Created"_s};
    }
    Outcome connected(bool scan) const
    {
        return {begin(scan) + QStringList{u"message Device connected"_s, u"Connected"_s}, After::Up,
                false};
    }
    static Outcome never() { return {{}, After::Down, true}; }
    static Outcome noService()
    {
        return {{u"message BLE error: No service found"_s, u"NotCreated"_s,
                 u"message Service not found"_s, u"NoService"_s},
                After::Gone,
                false};
    }
    static Outcome scanFailed()
    {
        return {{u"message Scan Devices"_s, u"message Scan error: *"_s, u"Error"_s},
                After::Down,
                false};
    }

    Case connectionCase(const QString &place, const char *kind, bool scan) const
    {
        Case each;
        each.name = u"%1/%2/%3"_s.arg(scan ? u"scan"_s : u"known"_s, place, QLatin1String(kind));
        each.stage = Case::Connection;
        each.kind = QLatin1String(kind);
        each.scan = scan;
        each.patience = kDbusTime + 5000;
        return each;
    }

    void beforeConnection(bool scan)
    {
        const auto add = [&](const char *kind, const QList<Deed> &deeds, const Expectation &told) {
            Case each = connectionCase(u"before"_s, kind, scan);
            each.stage = Case::BeforeConnection;
            each.deeds = deeds;
            each.expected = told;
            m_cases += each;
        };
        const Expectation off = scan ? Expectation{scanFailed()}
                                     : Expectation{begin(scan) + connectionFailed()};
        add("adapterOff", {{Deed::AdapterOff, {}, 0}}, off);
        add("adapterRemoved", {{Deed::RemoveAdapter, {}, 0}}, off);
        add("daemonGone", {{Deed::Kill, {}, 0}}, off);
        add("frozenShortly", {{Deed::Freeze, {}, 3000}}, {connected(scan)});
        if (!scan)
            add("deviceRemoved", {{Deed::RemoveDevice, {}, 0}}, {begin(scan) + connectionFailed()});

        Case nobody = connectionCase(u"before"_s, "notOnAir", scan);
        nobody.stage = Case::BeforeConnection;
        nobody.device = R"(,"known":false,"advertise":[])";
        nobody.newWorld = true;
        nobody.patience = 35'000;
        nobody.expected = {
            scan ? Outcome{{u"message Scan Devices"_s, u"message End of scan, device not found"_s,
                            u"NotFound"_s},
                           After::Down,
                           false}
                 : begin(scan) + connectionFailed()};
        m_cases += nobody;
    }

    void step(bool scan, const char *step, const char *kind, int ms, const Expectation &told)
    {
        Case each = connectionCase(
            QLatin1String(step), ms ? qPrintable(u"%1%2"_s.arg(QLatin1String(kind)).arg(ms)) : kind,
            scan);
        each.faults = R"({"step":")" + QByteArray(step) + R"(","kind":")" + kind
                      + R"(","nth":1,"times":1,"ms":)" + QByteArray::number(ms) + '}';
        for (const Outcome &outcome : told)
            each.expected += begin(scan) + outcome;
        // A daemon gives up such an attempt in time, the simulated one keeps at it for ever.
        each.newWorld = qstrcmp(step, "connect") == 0 && qstrcmp(kind, "silent") == 0;
        m_cases += each;
    }

    void stepsOfConnection(bool scan)
    {
        const Outcome success{{u"message Device connected"_s, u"Connected"_s}, After::Up, false};
        // A link that goes down before it is up is told as a failure or as a link gone down,
        // whichever the system's Bluetooth says first.
        const Expectation down{connectionFailed(), linkWentDown()};
        step(scan, "connect", "refuse", 0, {connectionFailed()});
        step(scan, "connect", "silent", 0, {connectionFailed()});
        step(scan, "connect", "late", 1000, {success});
        step(scan, "connect", "late", 8000, {success});
        step(scan, "connect", "drop", 0, down);
        step(scan, "connect", "drop", 500, down);
        step(scan, "discover", "silent", 0, {never()});
        step(scan, "discover", "late", 1000, {success});
        step(scan, "discover", "late", 8000, {success});
        step(scan, "discover", "empty", 0, {noService()});
        step(scan, "discover", "drop", 0, down);
        // The system reads what is not needed; without it the details may never be complete.
        step(scan, "details", "refuse", 0, {success, never()});
        step(scan, "details", "silent", 0, {success, never()});
        step(scan, "details", "late", 1000, {success});
        step(scan, "details", "late", 8000, {success});
        step(scan, "details", "drop", 0, down);
        step(scan, "details", "drop", 500, down);
        step(scan, "subscribe", "refuse", 0, {connectionFailed()});
        step(scan, "subscribe", "silent", 0, {connectionFailed()});
        step(scan, "subscribe", "late", 1000, {success});
        step(scan, "subscribe", "late", 4000, {connectionFailed()});
        step(scan, "subscribe", "drop", 0, down);
        step(scan, "subscribe", "drop", 500, down);
        if (m_setting.mode == BleMode::Sps) {
            // The first write of all grants credits.
            const QStringList up{u"message Device connected"_s};
            step(scan, "write", "refuse", 0, {up + linkFailed()});
            step(scan, "write", "silent", 0, {success});
            step(scan, "write", "late", 3000, {success});
            step(scan, "write", "lost", 0, {success});
            step(scan, "write", "drop", 0, {up + linkWentDown(), up + linkFailed()});
            step(scan, "write", "drop", 300, {up + linkWentDown(), up + linkFailed()});
        }
    }

    void eventsOfConnection(bool scan)
    {
        QStringList events{u"Connect"_s, u"connected"_s, u"ReadValue"_s, u"StartNotify"_s,
                           u"cccd"_s};
        if (scan)
            events.prepend(u"StartDiscovery"_s);
        for (const QString &event : std::as_const(events)) {
            const bool scanning = event == "StartDiscovery"_L1;
            // A test hears of the step when the daemon is done with it, so the deed strikes
            // at that step or at the one behind it.
            Expectation down;
            Expectation lost;
            for (const QStringList &before :
                 {begin(scan), begin(scan) + QStringList(u"message Device connected"_s)}) {
                down += {before + connectionFailed(), before + linkWentDown(),
                         before + linkFailed(), before + noService()};
                lost += {before + connectionFailed(), before + linkFailed(), before + never(),
                         before + linkWentDown(), before + noService()};
            }
            lost += connected(scan);
            if (scanning) {
                down += scanFailed();
                lost += {scanFailed(),
                         QStringList(u"message Scan Devices"_s) + never(),
                         {{u"message Scan Devices"_s, u"message End of scan, device not found"_s,
                           u"NotFound"_s},
                          After::Down,
                          false}};
            }
            for (const auto &[kind, deed] : kDrops) {
                if (!scanning || deed == Deed::AdapterOff || deed == Deed::RemoveAdapter)
                    event_(scan, event, kind, {deed, {}, 0}, down);
            }
            for (const auto &[kind, deed] : kLosses)
                event_(scan, event, kind, {deed, {}, 0}, lost);
            event_(scan, event, "frozenShortly", {Deed::Freeze, {}, 1000}, {connected(scan)});
        }
    }

    void event_(bool scan, const QString &event, const char *kind, const Deed &deed,
                const Expectation &told)
    {
        Case each = connectionCase(u"at"_s + event, kind, scan);
        each.event = event;
        each.deeds = {deed};
        each.expected = told;
        each.patience = 32'000;
        m_cases += each;
    }

    /** Nobody is there to end the link. */
    static Outcome timeoutThenFailure()
    {
        return QStringList(u"message Receive timeout"_s) + linkFailed();
    }

    // ---- Between two jobs

    void betweenJobs()
    {
        const Outcome healthy = told(m_setting.job->ends);
        const auto add = [&](const char *kind, const QList<Deed> &deeds, const Expectation &told) {
            Case each;
            each.name = u"between/"_s + QLatin1String(kind);
            each.stage = Case::BetweenJobs;
            each.kind = QLatin1String(kind);
            each.deeds = deeds;
            each.expected = told;
            each.patience = 12'000;
            m_cases += each;
        };
        for (const auto &[kind, deed] : kDrops)
            add(kind, {{deed, {}, 0}}, {linkWentDown()});
        for (const auto &[kind, deed] : kLosses)
            add(kind, {{deed, {}, 0}}, {linkFailed(), receiveTimeout(), timeoutThenFailure()});
        add("frozenShortly", {{Deed::Freeze, {}, 3000}}, {healthy});
        add("noise", {{Deed::Notify, bytes("00ff17"), 0}}, {healthy});
        add("halfHeader", {{Deed::Notify, bytes("dcdc0900"), 0}}, {healthy});
        add("foreignFrame", {{Deed::Notify, foreignFrame(), 0}},
            {told(QStringList(u"endCommand Time"_s) + m_setting.job->ends)});
        QByteArray broken = foreignFrame();
        broken[9] = char(broken[9] ^ 1);
        add("brokenFrame", {{Deed::Notify, broken, 0}},
            {told(QStringList(u"exchangeError Time InvalidCrc"_s) + m_setting.job->ends)});
    }

    // ---- Requests

    const Exchange &exchange(int request) const { return m_healthy.exchanges[request]; }

    int occurrence(int request) const
    {
        const auto begin = m_healthy.exchanges.cbegin();
        return int(std::count_if(begin, begin + request + 1, [&](const Exchange &each) {
            return each.command == exchange(request).command;
        }));
    }

    QByteArray fault(int request, const char *step, const char *kind, int ms) const
    {
        return R"({"step":")" + QByteArray(step) + R"(","kind":")" + kind + R"(","command":)"
               + QByteArray::number(exchange(request).command) + R"(,"nth":)"
               + QByteArray::number(occurrence(request)) + R"(,"times":1,"ms":)"
               + QByteArray::number(ms) + '}';
    }

    Case requestCase(int request, const QString &place, const char *kind) const
    {
        Case each;
        each.name = u"%1:%2%3/%4"_s.arg(request)
                        .arg(exchange(request).command)
                        .arg(place, QLatin1String(kind));
        each.kind = QLatin1String(kind);
        each.request = request;
        each.patience = 7000;
        return each;
    }

    QList<Arrival> healthyArrivals(int request) const
    {
        QList<Arrival> arrivals;
        for (const QByteArray &each : exchange(request).notifications)
            arrivals.append({0, each});
        return arrivals;
    }

    // What an upload, or a job that has ended before its farewell, told up to this request.
    QStringList before(int request) const
    {
        const bool farewell = request > 0 && exchange(request).command == TidemarCommand::Close;
        return farewell ? m_setting.job->ends : QStringList();
    }

    void writes(int request)
    {
        const auto add = [&](const char *kind, int ms, const Expectation &told) {
            Case each = requestCase(request, u"/write"_s, kind);
            each.faults = fault(request, "write", kind, ms);
            each.expected = told;
            m_cases += each;
        };
        const Expectation well = expected(*m_setting.job, m_healthy.exchanges, request,
                                          healthyArrivals(request));
        add("refuse", 0, {before(request) + linkFailed()});
        add("lost", 0, {before(request) + receiveTimeout()});
        add("silent", 0, {before(request) + receiveTimeout()});
        add("late", 2000, well);
        add("drop", 0, {before(request) + linkWentDown(), before(request) + linkFailed()});
    }

    /** The answer does not come by itself but from a test. */
    void answer(int request, const QString &place, const char *kind, const QList<Deed> &deeds,
                const Expectation &told)
    {
        Case each = requestCase(request, place, kind);
        each.faults = fault(request, "answer", "silent", 0);
        each.event = u"frame"_s;
        each.command = exchange(request).command;
        each.nth = occurrence(request);
        each.deeds = deeds;
        each.expected = told;
        for (const Deed &deed : deeds)
            each.patience += deed.ms;
        m_cases += each;
    }

    void answer(int request, const QString &place, const char *kind, const QList<Arrival> &arrivals)
    {
        QList<Deed> deeds;
        int now = 0;
        for (const Arrival &each : arrivals) {
            if (each.at > now)
                deeds += {Deed::Wait, {}, each.at - now};
            now = each.at;
            deeds += {Deed::Notify, each.bytes, 0};
        }
        answer(request, place, kind, deeds,
               expected(*m_setting.job, m_healthy.exchanges, request, arrivals));
        m_cases.last().arrivals = arrivals;
    }

    void requests(int request)
    {
        const QString place = u"/request"_s;
        answer(request, place, "silent", QList<Arrival>());
        answer(request, place, "refused",
               {{0, simulator::encodeFrame({exchange(request).command, QByteArray(1, '\0')})}});
        answer(request, place, "emptyFrame",
               {{0, simulator::encodeFrame({exchange(request).command, {}})}});
        struck(request, place, {});

        QList<Arrival> late = healthyArrivals(request);
        for (Arrival &each : late)
            each.at = 4000;
        answer(request, place, "late4000", late);
        answer(request, place, "frozenShortly",
               QList<Deed>{{Deed::Freeze, {}, 3000}} + notify(exchange(request).notifications),
               expected(*m_setting.job, m_healthy.exchanges, request, late));
        answer(request, place, "frozenLong", {{Deed::Freeze, {}, 7000}},
               {before(request) + receiveTimeout()});

        // Nothing of it is a frame, and it does not end: only the application's patience does.
        Case endless = requestCase(request, place, "endless");
        endless.faults = fault(request, "answer", "silent", 0);
        endless.event = u"frame"_s;
        endless.command = exchange(request).command;
        endless.nth = occurrence(request);
        endless.deeds = {{Deed::Stream, bytes("00ff17d0c5a41e6b9903e87742"), 0}};
        endless.expected = {before(request) + silence()};
        m_cases += endless;
        if (request == 0 && m_setting.mode == BleMode::Gatt)
            answer(request, place, "flood",
                   notify(QList<QByteArray>(4200, bytes("00ff17d0c5a41e"))), {silence()});
    }

    static QList<Deed> notify(const QList<QByteArray> &notifications)
    {
        QList<Deed> deeds;
        for (const QByteArray &each : notifications)
            deeds += {Deed::Notify, each, 0};
        return deeds;
    }

    /** All ways to lose the link at this place, behind these notifications of the answer. */
    void struck(int request, const QString &place, const QList<QByteArray> &come)
    {
        // What has come up to here is read at once where an answer is not collected.
        QStringList read = before(request);
        QList<Arrival> arrivals;
        for (const QByteArray &each : come)
            arrivals.append({0, each});
        const bool collected = m_setting.job->collected;
        if (!collected && !come.isEmpty()) {
            const Expectation told = expected(*m_setting.job, m_healthy.exchanges, request,
                                              arrivals);
            if (told.isEmpty() || told.constFirst().after != After::Up)
                return;
            // What would go on is struck at its next request instead.
            const QStringList entries = told.constFirst().entries;
            const bool last = request == int(m_healthy.exchanges.size()) - 1;
            if (!last && exchange(request + 1).command != TidemarCommand::Close)
                return;
            read = entries;
        }
        for (const auto &[kind, deed] : kDrops)
            answer(request, place, kind, notify(come) + QList<Deed>{{deed, {}, 0}},
                   {read + linkWentDown()});
        for (const auto &[kind, deed] : kLosses) {
            const Expectation told = collected || come.isEmpty()
                                         ? Expectation{read + receiveTimeout(),
                                                       read + timeoutThenFailure()}
                                         : Expectation{told_(read)};
            answer(request, place, kind, notify(come) + QList<Deed>{{deed, {}, 0}},
                   collected && !come.isEmpty()
                       ? expected(*m_setting.job, m_healthy.exchanges, request, arrivals)
                       : told);
        }
    }
    static Outcome told_(const QStringList &entries) { return {entries, After::Up, true}; }

    // ---- Notifications

    void notifications(int request)
    {
        const qsizetype count = exchange(request).notifications.size();
        for (qsizetype k = 0; k < count; ++k) {
            // Of a long answer its ends and its middle.
            if (count <= 5 || k < 2 || k >= count - 2 || k == count / 2)
                notification(request, k);
        }
    }

    void notification(int request, qsizetype k)
    {
        const QList<QByteArray> &sound = exchange(request).notifications;
        const QString place = u"/notification%1"_s.arg(k);
        const QByteArray &me = sound[k];
        const bool last = k == sound.size() - 1;
        const auto add = [&](const char *kind, const QList<QByteArray> &mine, int skip = 1,
                             int late = 0) {
            QList<Arrival> arrivals;
            for (qsizetype i = 0; i < k; ++i)
                arrivals.append({0, sound[i]});
            for (const QByteArray &each : mine)
                arrivals.append({late, each});
            for (qsizetype i = k + skip; i < sound.size(); ++i)
                arrivals.append({late, sound[i]});
            answer(request, place, kind, arrivals);
        };

        add("lost", {});
        add("doubled", {me, me});
        add("empty", {QByteArray()});
        add("late200", {me}, 1, 200);
        add("late2500", {me}, 1, 2500);
        add("late6500", {me}, 1, 6500);
        if (me.size() > 1) {
            add("truncated", {me.chopped(1)});
            add("halved", {me.first(me.size() / 2)});
            add("split", {me.first(me.size() / 2), me.sliced(me.size() / 2)});
        }
        if (!last) {
            add("swapped", {sound[k + 1], me}, 2);
            if (me.size() + sound[k + 1].size() <= kLargestNotification)
                add("merged", {me + sound[k + 1]}, 2);
        }
        add("noiseBefore", {bytes("5a"), me});
        add("noiseBehind", {me + bytes("dc00ff17d0c5a41e6b")});
        add("foreignFrame", {foreignFrame(), me});
        add("foreignFrameBehind", {me, foreignFrame()});
        damaged(me, add);
        if (!last)
            struck(request, place, sound.first(k + 1));
    }

    template <typename Add> static void damaged(const QByteArray &sound, const Add &add)
    {
        const auto with = [&](qsizetype at, int byte) {
            QByteArray changed = sound;
            changed[at] = char(byte);
            return QList<QByteArray>{changed};
        };
        const auto flipped = [&](qsizetype at, int mask) {
            return with(at, quint8(sound[at]) ^ mask);
        };
        add("flipLastByte", flipped(sound.size() - 1, 0x01));
        add("flipMiddle", flipped(sound.size() / 2, 0x80));
        if (!sound.startsWith("\xDC\xDC") || sound.size() < 9)
            return;
        add("flipStart1", flipped(0, 0x10));
        add("flipStart2", flipped(1, 0x01));
        add("flipLength", flipped(2, 0x01));
        add("flipCrc1", flipped(4, 0x20));
        add("flipCrc2", flipped(5, 0x04));
        add("flipReserved", flipped(6, 0xFF));
        add("flipCommand", flipped(8, 0x02));
        add("lengthZero", with(2, 0));
        add("lengthHuge", with(3, 0xFF));
        add("lengthOneMore", with(2, quint8(sound[2]) + 1));
        add("lengthOneLess", with(2, quint8(sound[2]) - 1));
    }

    const Setting &m_setting;
    const Healthy &m_healthy;
    QList<Case> m_cases;
};

} // namespace

QList<Setting> allSettings(Layer layer)
{
    QList<Setting> settings;
    const QList<Job> &jobs = layer == Layer::Jobs ? allComputerJobs() : allJobs();
    for (const auto *model : {"varda", "tidemar", "vskm"}) {
        for (const BleMode mode : {BleMode::Gatt, BleMode::Sps}) {
            for (const Job &job : jobs)
                settings.append({QString::fromLatin1(model), mode, &job});
        }
    }
    return settings;
}

QList<Case> allCases(const Setting &setting, const Healthy &healthy)
{
    return Matrix(setting, healthy).all();
}
