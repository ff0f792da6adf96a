// SPDX-License-Identifier: MIT
#include <QtCore/qbuffer.h>
#include <QtCore/qjsonobject.h>
#include <QtTest/qsignalspy.h>

#include <algorithm>
#include <utility>

#include <varda/vardacomputer.h>
#include <varda/vardasession.h>
#include <varda/vardatrace.h>
#include <varda/vardatracefile.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Event = VardaTraceEvent;

/** What a trace says of a link that does not work. */
class TestTraceFailures : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void failure_data();
    void failure();
    void noBluetooth();
    void bluetoothLost();
    void tooManyNotifications();
    void lostInAnAnswer();
    void refusingDevice();
    void deviceThatEndsInAnAnswer();
    void slowReader();
};

namespace {

/** Takes no line with this in it, or keeps more than it should. */
class Device : public QIODevice
{
public:
    explicit Device(QByteArray refused, qint64 unsent = 0)
        : m_refused(std::move(refused)), m_unsent(unsent)
    {
        open(QIODevice::WriteOnly);
    }
    [[nodiscard]] qint64 bytesToWrite() const override { return m_unsent; }
    int refusals = 0;

protected:
    qint64 readData(char * /*data*/, qint64 /*most*/) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        if (m_unsent > 0 || !QByteArray(data, size).contains(m_refused))
            return size;
        ++refusals;
        setErrorString(u"the tape is at its end"_s);
        return -1;
    }

private:
    QByteArray m_refused;
    qint64 m_unsent;
};

/** What it writes down of Bluetooth itself. */
QList<Event> bluetoothIn(const QByteArray &text)
{
    QByteArray copy = text;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    QList<Event> found;
    const auto trace = VardaTraceFile::read(buffer);
    for (const Event &event : trace ? trace->events : QList<Event>()) {
        if (event.kind == Event::Bluetooth)
            found.append(event);
    }
    return found;
}

} // namespace

void TestTraceFailures::failure_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QJsonObject>("failure");

    QTest::addRow("noService") << QByteArray(R"("faults":[{"step":"discover","kind":"empty"}])")
                               << QJsonObject{{u"what"_s, u"noService"_s}};
    QTest::addRow("noCharacteristics")
        << QByteArray(R"("dataService":{"characteristicPresent":false})")
        << QJsonObject{{u"what"_s, u"noCharacteristics"_s}};
    QTest::addRow("subscription") << QByteArray(
        R"("clock":1000,"faults":[{"step":"subscribe","kind":"silent"}])")
                                  << QJsonObject{{u"what"_s, u"subscription"_s}};
    QTest::addRow("service") << QByteArray(R"("faults":[{"step":"subscribe","kind":"refuse"}])")
                             << QJsonObject{{u"what"_s, u"service"_s},
                                            {u"error"_s, u"DescriptorWriteError"_s}};
}

void TestTraceFailures::failure()
{
    QFETCH(const QByteArray, device);
    QFETCH(const QJsonObject, failure);
    LOAD(Simulator::loadDevice(device));
    QByteArray text;
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    VardaComputer computer;
    computer.setTrace(&buffer);
    VardaJob *const job = computer.readOwner();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QVERIFY(spy.error != VardaJob::NoError);
    computer.setTrace(nullptr);

    QVERIFY(buffer.seek(0));
    const auto trace = VardaTraceFile::read(buffer);
    QVERIFY(trace);
    const auto found = std::find_if(
        trace->events.cbegin(), trace->events.cend(),
        [](const Event &event) { return event.kind == Event::Failure; });
    QVERIFY2(found != trace->events.cend(), text);
    QCOMPARE(found->fields, failure);
}

void TestTraceFailures::noBluetooth()
{
    LOAD(Simulator::loadScenario(R"({"adapter":{"powered":false},"devices":[{}]})"));
    QByteArray text;
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    VardaComputer computer;
    computer.setTrace(&buffer);
    JobSpy spy(computer.readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.reason, VardaJob::Reason::AdapterOff);
    const QList<Event> events = bluetoothIn(text);
    QVERIFY(!events.isEmpty());
    QCOMPARE(events.first().fields, (QJsonObject{{u"reason"_s, u"AdapterOff"_s}}));
}

void TestTraceFailures::bluetoothLost()
{
    LOAD(
        Simulator::loadDevice(R"("faults":[{"step":"answer","command":"Owner","kind":"silent"}])"));
    QByteArray text;
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    VardaComputer computer;
    computer.setTrace(&buffer);
    VardaJob *const job = computer.readOwner();
    job->setRetries(0);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Running);
    QVERIFY(bluetoothIn(text).isEmpty());
    Simulator::setPowered(false);
    QVERIFY(spy.wait());
    const QList<Event> events = bluetoothIn(text);
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().fields, (QJsonObject{{u"reason"_s, u"AdapterOff"_s}}));
}

/** A session gives up such an answer; a redacted trace does not wait for its end. */
void TestTraceFailures::tooManyNotifications()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Owner","kind":"endless","ms":0}])"));
    QByteArray text;
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    VardaSession session;
    VardaTrace::attach(session, &buffer);
    QSignalSpy connected(&session, &VardaSession::connectControllerStatus);
    session.connectTo(knownDevice());
    QTRY_COMPARE(connected.size(), 1);
    session.startCommand(TidemarCommand::Owner);
    QTRY_VERIFY_WITH_TIMEOUT(text.count(R"("event":"notification")") >= 4096, 60'000);
    session.controllerDisconnect();
}

/** The answer is not whole, and is there nevertheless. */
void TestTraceFailures::lostInAnAnswer()
{
    LOAD(Simulator::loadDevice(
        R"("split":4,"faults":[{"step":"notification","command":"Owner","kind":"drop","nth":2,"times":1}])"));
    QByteArray text;
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    VardaComputer computer;
    computer.setTrace(&buffer);
    JobSpy spy(computer.readOwner());
    ENDS_WELL(spy);
    QVERIFY(text.contains(R"("event":"down")"));
    QVERIFY(text.indexOf(R"("event":"notification")") < text.indexOf(R"("event":"down")"));
}

void TestTraceFailures::refusingDevice()
{
    Device device("varda-trace");
    VardaComputer computer;
    QSignalSpy failed(&computer, &VardaComputer::traceFailed);
    computer.setTrace(&device);
    QVERIFY(failed.isEmpty());
    QTRY_COMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].toString(), u"the tape is at its end"_s);
}

/** Its lines are written together, and nothing behind the one that fails. */
void TestTraceFailures::deviceThatEndsInAnAnswer()
{
    LOAD(Simulator::loadDevice(R"("split":4,"owner":"Ada Lindqvist")"));
    Device device("notification");
    VardaComputer computer;
    QSignalSpy failed(&computer, &VardaComputer::traceFailed);
    computer.setTrace(&device);
    VardaJob *const job = computer.readOwner();
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(failed.size(), 1);
    QCOMPARE(device.refusals, 1);
}

/** Such as a socket whose other end does not read. */
void TestTraceFailures::slowReader()
{
    Device device({}, 17 << 20);
    VardaComputer computer;
    QSignalSpy failed(&computer, &VardaComputer::traceFailed);
    computer.setTrace(&device);
    QTRY_COMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].toString(), u"its reader is too slow"_s);
}

QTEST_MAIN(TestTraceFailures)
#include "tst_tracefailures.moc"
