// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <functional>

#include "jobs/answercheck_p.h"

using Finding = AnswerCheck::Finding;
using Notifications = QList<QByteArray>;

Q_DECLARE_METATYPE(Finding)

namespace {

constexpr int kSmallestCut = 20;
constexpr int kLargestCut = 244;

quint16 checksum(const QByteArray &bytes)
{
    quint16 crc = 0x1D0F;
    for (const char byte : bytes) {
        crc ^= quint16(quint8(byte) << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = quint16((crc << 1) ^ (crc & 0x8000 ? 0x1021 : 0));
    }
    return crc;
}

QByteArray frame(int command, const QByteArray &payload = {})
{
    const QByteArray body = char(command) + payload;
    const quint16 crc = checksum(body);
    return QByteArray("\xDC\xDC", 2) + char(body.size() & 0xFF) + char(body.size() >> 8)
           + char(crc & 0xFF) + char(crc >> 8) + QByteArray(2, '\0') + body;
}

QByteArray damaged(QByteArray frame)
{
    frame.back() = char(frame.back() ^ 1);
    return frame;
}

Notifications cut(const QByteArray &stream, int size)
{
    Notifications pieces;
    for (qsizetype at = 0; at < stream.size(); at += size)
        pieces += stream.mid(at, size);
    return pieces;
}

/** Each frame begins a notification. */
Notifications cutEach(const Notifications &frames, int size)
{
    Notifications pieces;
    for (const QByteArray &each : frames)
        pieces += cut(each, size);
    return pieces;
}

Notifications times(const Notifications &notifications, int count)
{
    Notifications all;
    for (const QByteArray &each : notifications)
        all += Notifications(count, each);
    return all;
}

AnswerCheck checked(TidemarCommand::TidemarCommandIn command, const Notifications &notifications)
{
    AnswerCheck check(command);
    for (const QByteArray &each : notifications)
        check.add(each);
    check.onQuiet();
    return check;
}

/** 20 headers of 194 bytes. */
Notifications logbook()
{
    Notifications frames;
    for (int number = 20; number > 0; --number)
        frames += frame(19, char(number) + QByteArray(193, char(0x11)));
    return frames << frame(19);
}

/** @p sample says what is in a sample of 5 bytes; 47 of them are a frame of 244 bytes. */
Notifications dive(int samples, const std::function<QByteArray(int)> &sample)
{
    QByteArray stream;
    for (int i = 0; i < samples; ++i)
        stream += sample(i);
    Notifications frames;
    for (const QByteArray &payload : cut(stream, 235))
        frames += frame(20, payload);
    return frames << frame(20);
}

Notifications movingDive(int number)
{
    return dive(300, [number](int i) {
        return QByteArray(1, char(i)) + char(i / 256) + char(i * i) + char(number) + char(7);
    });
}

Notifications constantDive()
{
    return dive(47 * 6, [](int) { return QByteArray("\x64\x00\x05\x00\x07", 5); });
}

/** The tail of each is the same bytes: they differ at the surface only. */
Notifications alikeDive(int number)
{
    return dive(300, [number](int i) {
        return QByteArray(1, i < 3 ? char(number) : char(100)) + QByteArray(4, '\x02');
    });
}

QByteArray name(const char *what, int size, bool merged)
{
    return QByteArray(what) + (merged ? " in one stream by " : " by ") + QByteArray::number(size);
}

} // namespace

class TestAnswerCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frameOfThisTest();
    void answers_data();
    void answers();
    void moreThanTheSessionKeeps();
    void pauses();
    void copyInTheNextAnswer();
    void emptyGasTables();
    void secondAnswerDecides();
    void endOfDamagedAnswer();
    void sweepSound();
    void sweepRepeated();
    void sweepPartlyRepeated();
    void sweepPaused();
    void sweepLogbook();
};

void TestAnswerCheck::frameOfThisTest()
{
    QCOMPARE(frame(1).toHex(), QByteArray("dcdc0100bddc000001"));
}

void TestAnswerCheck::answers_data()
{
    using namespace TidemarCommand;
    QTest::addColumn<int>("command");
    QTest::addColumn<Notifications>("notifications");
    QTest::addColumn<Finding>("finding");
    const auto row = [](const char *text, TidemarCommandIn command, const Notifications &all,
                        Finding finding) { QTest::newRow(text) << int(command) << all << finding; };
    const QByteArray owner = frame(22, "Ada Lindqvist");
    const QByteArray clock = frame(7, QByteArray(8, 'c'));
    const QByteArray line = frame(2, "a line");
    const QByteArray logEnd = frame(2);
    const QByteArray gas = frame(34, QByteArray(18, 'g'));
    const QByteArray gasEnd = frame(34, QByteArray(1, '\0'));
    const QByteArray done = frame(38, "\x01");

    row("one frame", Owner, {owner}, Finding::Sound);
    row("one frame in pieces, joined", Owner, {owner.first(9), owner.sliced(9)}, Finding::Sound);
    row("one frame, alone", Time, {clock}, Finding::Sound);
    row("frames and a closing one", Syslog, {line, logEnd}, Finding::Sound);
    row("only a closing frame", Syslog, {logEnd}, Finding::Sound);
    row("several in a notification", Syslog, {line + line + logEnd}, Finding::Sound);
    row("gases", GetGases, {gas, gasEnd}, Finding::Sound);
    row("steps", LayoutAdd, {done, done, done}, Finding::Sound);
    row("deletion of all", DeleteLastDive, {frame(26, QByteArray(8, 'x'))}, Finding::Sound);
    row("not over", Fullsamples, {frame(20, "x")}, Finding::Sound);

    row("no frame", Owner, {"noise"}, Finding::LeftOver);
    row("second start byte", Owner, {"\xDC" + owner.sliced(1).replace(0, 1, "\x01")},
        Finding::LeftOver);
    row("no body", Owner, {QByteArray("\xDC\xDC\0\0\0\0\0\0", 8)}, Finding::LeftOver);
    row("noise between", Syslog, {line, "noise", logEnd}, Finding::LeftOver);
    row("noise behind", Syslog, {line, logEnd, "noise"}, Finding::LeftOver);
    row("noise in the last notification", Syslog, {line + logEnd + 'x'}, Finding::LeftOver);
    row("another frame behind", Owner, {owner, frame(22, "Bo")}, Finding::LeftOver);
    row("no whole header", Owner, {owner.first(5)}, Finding::Incomplete);
    row("no whole body", Owner, {owner.chopped(1)}, Finding::Incomplete);
    row("nothing behind a part", Syslog, {line, line.chopped(3)}, Finding::Incomplete);
    row("a part, alone", Time, {clock.first(9)}, Finding::Incomplete);
    row("in pieces, alone", Time, {clock.first(9), clock.sliced(9)}, Finding::InPieces);
    row("gases in pieces", GetGases, {gas.first(20), gas.sliced(20), gasEnd}, Finding::InPieces);
    row("one bit", Owner, {damaged(owner)}, Finding::WrongChecksum);
    row("one bit in the middle", Syslog, {line, damaged(line), logEnd}, Finding::WrongChecksum);
    row("one bit, alone", Time, {damaged(clock)}, Finding::WrongChecksum);

    row("one frame twice", Owner, {owner, owner}, Finding::Repeated);
    row("its pieces twice", Owner,
        {owner.first(9), owner.first(9), owner.sliced(9), owner.sliced(9)}, Finding::Repeated);
    row("alone, twice", Time, {clock, clock}, Finding::Repeated);
    row("all twice", Syslog, {line, line, logEnd, logEnd}, Finding::Repeated);
    row("only a closing frame, twice", Syslog, {logEnd, logEnd}, Finding::Repeated);
    row("the end twice", Syslog, {line, logEnd, logEnd}, Finding::Repeated);
    row("gases twice", GetGases, {gas, gas, gasEnd, gasEnd}, Finding::Repeated);
    row("eight times", Owner, Notifications(8, owner), Finding::Repeated);

    row("equal lines", Syslog, {line, line, logEnd}, Finding::Doubtful);
    row("equal lines twice", Syslog, {line, line, line, line, logEnd, logEnd}, Finding::Repeated);
    row("nothing between them", Syslog, {{}, {}, line, {}, {}, logEnd, {}, {}}, Finding::Sound);
    row("equal pieces of a frame", LayoutGet,
        {frame(37, QByteArray(64, 'x')).first(9), QByteArray(32, 'x'), QByteArray(32, 'x'),
         frame(37)},
        Finding::Sound);
}

void TestAnswerCheck::answers()
{
    QFETCH(int, command);
    QFETCH(Notifications, notifications);
    QTEST(checked(TidemarCommand::TidemarCommandIn(command), notifications).finding(), "finding");
}

/** The session's buffer is emptied by one more, whatever the answer is. */
void TestAnswerCheck::moreThanTheSessionKeeps()
{
    Notifications all;
    for (int i = 0; i < 4095; ++i)
        all += frame(20, QByteArray(1, char(i)));
    all += frame(20);
    QCOMPARE(checked(TidemarCommand::Fullsamples, all).finding(), Finding::Sound);
    all.prepend(frame(20, "x"));
    QCOMPARE(checked(TidemarCommand::Fullsamples, all).finding(), Finding::BeginningLost);
}

/** The session takes what there is after a second of quiet. */
void TestAnswerCheck::pauses()
{
    const QByteArray line = frame(2, "a line");
    AnswerCheck check(TidemarCommand::Syslog);
    check.add(line);
    check.onQuiet();
    check.add(frame(2, "another") + frame(2));
    check.onQuiet();
    QCOMPARE(check.finding(), Finding::Sound);

    check = AnswerCheck(TidemarCommand::Syslog, check);
    check.add(line.first(10));
    QCOMPARE(check.finding(), Finding::Sound);
    check.onQuiet();
    QCOMPARE(check.finding(), Finding::Incomplete);
    QVERIFY(!check.isOver());
    check.add(line.sliced(10));
    check.add(frame(2));
    check.onQuiet();
    QCOMPARE(check.finding(), Finding::Incomplete);
    QVERIFY(check.isOver());
}

/** A request may be on its way before the answer to the one before has come again. */
void TestAnswerCheck::copyInTheNextAnswer()
{
    const QByteArray clock = frame(7, QByteArray(8, 'c'));
    const AnswerCheck before = checked(TidemarCommand::Time, {clock});
    for (const auto command : {TidemarCommand::Sensors, TidemarCommand::Owner}) {
        AnswerCheck next(command, before);
        next.add(clock);
        QCOMPARE(next.finding(), Finding::Repeated);
    }
    // The clock may stand still.
    AnswerCheck again(TidemarCommand::Time, before);
    again.add(clock);
    QCOMPARE(again.finding(), Finding::Sound);
}

void TestAnswerCheck::emptyGasTables()
{
    const QByteArray end = frame(34, QByteArray(1, '\0'));
    const AnswerCheck first = checked(TidemarCommand::GetGases, {end});
    AnswerCheck second(TidemarCommand::GetGases, first);
    second.add(end);
    QCOMPARE(second.finding(), Finding::Doubtful);
    second.add(frame(34, QByteArray(18, 'g')));
    QCOMPARE(second.finding(), Finding::LeftOver);
}

/** However the link has cut them. */
void TestAnswerCheck::secondAnswerDecides()
{
    const QByteArray line = frame(2, "a line");
    const auto first = checked(TidemarCommand::Syslog, {line, line, frame(2)});
    const auto same = checked(TidemarCommand::Syslog, {line + line, frame(2)});
    const auto other = checked(TidemarCommand::Syslog, {line, line, line, frame(2)});
    QCOMPARE(first.digest(), same.digest());
    QVERIFY(first.digest() != other.digest());
}

void TestAnswerCheck::endOfDamagedAnswer()
{
    const QByteArray line = frame(2, "a line");
    QVERIFY(!checked(TidemarCommand::Syslog, {"noise"}).isOver());
    QVERIFY(checked(TidemarCommand::Syslog, {"noise", line, frame(2)}).isOver());
    QVERIFY(checked(TidemarCommand::Syslog, {"noise", line + frame(2).first(4), frame(2).sliced(4)})
                .isOver());
    QVERIFY(checked(TidemarCommand::Owner, {damaged(frame(22, "Ada"))}).isOver());
    QVERIFY(!checked(TidemarCommand::Owner, {frame(22, "Ada").chopped(1)}).isOver());
}

// All ways to cut dives into notifications

namespace {

struct Answer {
    QByteArray name;
    Notifications notifications;
    Notifications frames;
};

QList<Answer> allDives()
{
    QList<Answer> all;
    for (const auto &[what, frames] :
         {std::pair("a moving dive", movingDive(1)), std::pair("one depth", constantDive()),
          std::pair("a dive like others", alikeDive(1))}) {
        for (int size = kSmallestCut; size <= kLargestCut; ++size) {
            all += {name(what, size, false), cutEach(frames, size), frames};
            all += {name(what, size, true), cut(frames.join(), size), frames};
        }
    }
    return all;
}

} // namespace

void TestAnswerCheck::sweepSound()
{
    int doubtful = 0;
    for (const auto &[name, notifications, frames] : allDives()) {
        const Finding finding = checked(TidemarCommand::Fullsamples, notifications).finding();
        QVERIFY2(finding == Finding::Sound || finding == Finding::Doubtful, name);
        doubtful += finding == Finding::Doubtful ? 1 : 0;
    }
    // Where a notification is a frame: of those, one depth twice, the like of others twice.
    QCOMPARE(doubtful, 4);
}

void TestAnswerCheck::sweepRepeated()
{
    for (const auto &[name, notifications, frames] : allDives()) {
        for (const int count : {2, 3, 4, 5}) {
            const Finding finding =
                checked(TidemarCommand::Fullsamples, times(notifications, count)).finding();
            QVERIFY2(finding == Finding::Repeated, name);
        }
    }
}

/** A program that subscribes, or ends, while the answer is on its way. */
void TestAnswerCheck::sweepPartlyRepeated()
{
    for (const auto &[name, notifications, frames] : allDives()) {
        const qsizetype step = std::max<qsizetype>(1, notifications.size() / 5);
        for (qsizetype at = 1; at < notifications.size(); at += step) {
            const Notifications head = notifications.first(at);
            const Notifications tail = notifications.sliced(at);
            for (const Notifications &all : {times(head, 2) + tail, head + times(tail, 2)}) {
                const Finding finding = checked(TidemarCommand::Fullsamples, all).finding();
                QVERIFY2(finding != Finding::Sound, name);
            }
        }
    }
}

/** Only a pause between frames loses nothing. */
void TestAnswerCheck::sweepPaused()
{
    for (const auto &[name, notifications, frames] : allDives()) {
        QList<qsizetype> ends{0};
        for (const QByteArray &each : frames)
            ends += ends.last() + each.size();
        const qsizetype step = std::max<qsizetype>(1, notifications.size() / 7);
        for (qsizetype at = 1; at < notifications.size(); at += step) {
            AnswerCheck check(TidemarCommand::Fullsamples);
            qsizetype bytes = 0;
            for (qsizetype i = 0; i < notifications.size(); ++i) {
                if (i == at)
                    check.onQuiet();
                check.add(notifications[i]);
                bytes += i < at ? notifications[i].size() : 0;
            }
            check.onQuiet();
            const Finding finding = check.finding();
            QVERIFY2(ends.contains(bytes) == (finding != Finding::Incomplete), name);
            QVERIFY2(check.isOver(), name);
        }
    }
}

/** Dives of one length, one after the other on one link, as a whole download has them. */
void TestAnswerCheck::sweepLogbook()
{
    for (int size = kSmallestCut; size <= kLargestCut; ++size) {
        for (const bool merged : {false, true}) {
            const auto notifications = [&](const Notifications &frames) {
                return merged ? cut(frames.join(), size) : cutEach(frames, size);
            };
            AnswerCheck check = checked(TidemarCommand::Serialnumber,
                                        {frame(3, QByteArray(12, 's'))});
            const auto read = [&](TidemarCommand::TidemarCommandIn command,
                                  const Notifications &frames) {
                check = AnswerCheck(command, check);
                for (const QByteArray &each : notifications(frames))
                    check.add(each);
                check.onQuiet();
                return check.finding() == Finding::Sound || check.finding() == Finding::Doubtful;
            };
            QVERIFY2(read(TidemarCommand::Logbook, logbook()), name("headers", size, merged));
            for (int number = 1; number <= 4; ++number)
                QVERIFY2(read(TidemarCommand::Fullsamples, alikeDive(number)),
                         name("dives", size, merged));
            QVERIFY2(checked(TidemarCommand::Logbook, times(notifications(logbook()), 2)).finding()
                         == Finding::Repeated,
                     name("headers twice", size, merged));
        }
    }
}

QTEST_GUILESS_MAIN(TestAnswerCheck)
#include "tst_answercheck.moc"
