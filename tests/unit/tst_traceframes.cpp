// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/vardatraceframe.h>

using namespace Qt::StringLiterals;
using Event = VardaTraceEvent;
using Frame = VardaTraceFrame;

/** Frames in the bytes of a trace. */
class TestTraceFrames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exchange();
    void parts();
    void several();
    void wrongChecksum();
    void cutShort_data();
    void cutShort();
    void noFrame();
    void beside();
};

namespace {

constexpr auto kRequest = "dcdc0100bddc000001";
constexpr auto kAnswer = "dcdc0600339a000001620204010b";

Event made(Event::Kind kind, qint64 at = 0, const char *hex = "")
{
    Event event;
    event.kind = kind;
    event.at = at;
    event.bytes = QByteArray::fromHex(hex);
    return event;
}

QList<Frame> framesOf(const QList<Event> &events)
{
    VardaTraceFile trace;
    trace.events = events;
    return Frame::in(trace);
}

QList<Frame::State> statesOf(const QList<Frame> &frames)
{
    QList<Frame::State> states;
    for (const Frame &each : frames)
        states.append(each.state);
    return states;
}

} // namespace

void TestTraceFrames::exchange()
{
    const auto frames = framesOf({made(Event::Up), made(Event::Write, 1000, kRequest),
                                  made(Event::Notification, 1500, kAnswer)});
    QCOMPARE(statesOf(frames), (QList<Frame::State>{Frame::Sound, Frame::Sound}));
    QVERIFY(frames[0].isRequest);
    QCOMPARE(frames[0].command, TidemarCommand::Identification);
    QCOMPARE(frames[0].payload, QByteArray());
    QCOMPARE(frames[0].firstEvent, 1);
    QCOMPARE(frames[0].lastEvent, 1);
    QVERIFY(!frames[1].isRequest);
    QCOMPARE(frames[1].command, TidemarCommand::Identification);
    QCOMPARE(frames[1].payload, QByteArray::fromHex("620204010b"));
    QCOMPARE(frames[1].at, 1500);
    QCOMPARE(frames[1].endAt, 1500);
}

void TestTraceFrames::parts()
{
    const auto frames = framesOf({made(Event::Notification, 10, "dc"), made(Event::JobEnd, 15),
                                  made(Event::Notification, 20, "dc0600339a0000"),
                                  made(Event::Notification, 30, "01620204010b")});
    QCOMPARE(statesOf(frames), QList<Frame::State>{Frame::Sound});
    QCOMPARE(frames[0].at, 10);
    QCOMPARE(frames[0].endAt, 30);
    QCOMPARE(frames[0].firstEvent, 0);
    QCOMPARE(frames[0].lastEvent, 3);
}

void TestTraceFrames::several()
{
    const QByteArray two = QByteArray(kAnswer) + QByteArray(kAnswer).first(12);
    const auto frames = framesOf({made(Event::Notification, 10, two.constData()),
                                  made(Event::Notification, 20, kAnswer + 12)});
    QCOMPARE(statesOf(frames), (QList<Frame::State>{Frame::Sound, Frame::Sound}));
    QCOMPARE(frames[0].endAt, 10);
    QCOMPARE(frames[1].at, 10);
    QCOMPARE(frames[1].endAt, 20);
}

void TestTraceFrames::wrongChecksum()
{
    const auto frames = framesOf({made(Event::Notification, 10, "dcdc0100bedc000001")});
    QCOMPARE(statesOf(frames), QList<Frame::State>{Frame::WrongChecksum});
    QCOMPARE(frames[0].command, TidemarCommand::Identification);
}

void TestTraceFrames::cutShort_data()
{
    QTest::addColumn<int>("next");

    QTest::addRow("the next request") << int(Event::Write);
    QTest::addRow("silence") << int(Event::Silence);
    QTest::addRow("a lost link") << int(Event::Down);
    QTest::addRow("the next connection") << int(Event::Connect);
    QTest::addRow("the end of the trace") << int(Event::JobEnd);
}

void TestTraceFrames::cutShort()
{
    QFETCH(const int, next);
    const auto frames = framesOf(
        {made(Event::Notification, 10, "dcdc0600339a00000162"),
         made(Event::Kind(next), 20, next == Event::Write ? kRequest : "")});
    QCOMPARE(frames[0].state, Frame::CutShort);
    QCOMPARE(frames[0].payload, QByteArray::fromHex("dcdc0600339a00000162"));
    QCOMPARE(frames.size(), next == Event::Write ? 2 : 1);
}

void TestTraceFrames::noFrame()
{
    const auto frames = framesOf(
        {made(Event::Notification, 10, "0102"), made(Event::Notification, 20, "dc03"),
         made(Event::Notification, 30, "dcdc00000f1d0000"),
         made(Event::Notification, 40, QByteArray(QByteArray(kAnswer) + "aa").constData())});
    QCOMPARE(statesOf(frames), (QList<Frame::State>{Frame::NoFrame, Frame::NoFrame, Frame::NoFrame,
                                                    Frame::Sound, Frame::NoFrame}));
    QCOMPARE(frames[0].payload, QByteArray::fromHex("0102"));
    QCOMPARE(frames[4].payload, QByteArray::fromHex("aa"));
}

/** On other characteristics there are no frames. */
void TestTraceFrames::beside()
{
    Event credits = made(Event::Write, 10, "20");
    credits.fields.insert(u"characteristic"_s, u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s);
    QCOMPARE(framesOf({credits}).size(), 0);
}

QTEST_GUILESS_MAIN(TestTraceFrames)
#include "tst_traceframes.moc"
