// SPDX-License-Identifier: MIT
#include <QtCore/qbuffer.h>
#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qsysinfo.h>
#include <QtTest/qsignalspy.h>

#include <algorithm>
#include <memory>
#include <optional>

#include <varda/vardacomputer.h>
#include <varda/vardasession.h>
#include <varda/vardatracefile.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Event = VardaTraceEvent;

/** What is written down of a link and its jobs. */
class TestTrace : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyStep();
    void bytesAsTheyPassed();
    void others();
    void lostLink();
    void silence();
    void credits();
    void refusedConnection();
    void session();
    void deviceDeleted();
    void fullDevice();
    void endedByTheApplication();
    void nothingPrivate_data();
    void nothingPrivate();
    void stillReadable();

private:
    /** What was written since the test began. */
    [[nodiscard]] VardaTraceFile trace();
    [[nodiscard]] QStringList kinds();
    /** The first of this kind. */
    [[nodiscard]] Event first(Event::Kind kind);
    [[nodiscard]] QStringList bytes(Event::Kind kind);

    std::unique_ptr<VardaComputer> m_computer;
    QByteArray m_text;
    std::unique_ptr<QBuffer> m_buffer;
};

void TestTrace::init()
{
    m_text.clear();
    m_buffer = std::make_unique<QBuffer>(&m_text);
    m_buffer->open(QIODevice::WriteOnly);
    m_computer = std::make_unique<VardaComputer>();
    m_computer->setTrace(m_buffer.get(), VardaTrace::Complete);
}

VardaTraceFile TestTrace::trace()
{
    QBuffer written(&m_text);
    written.open(QIODevice::ReadOnly);
    QString error;
    const auto read = VardaTraceFile::read(written, &error);
    if (!read)
        qWarning().noquote() << error;
    return read.value_or(VardaTraceFile());
}

QStringList TestTrace::kinds()
{
    QStringList names;
    const auto events = trace().events;
    for (const Event &event : events)
        names.append(VardaTraceFile::nameOf(event.kind));
    return names;
}

Event TestTrace::first(Event::Kind kind)
{
    const auto events = trace().events;
    for (const Event &event : events) {
        if (event.kind == kind)
            return event;
    }
    return {};
}

QStringList TestTrace::bytes(Event::Kind kind)
{
    QStringList all;
    const auto events = trace().events;
    for (const Event &event : events) {
        if (event.kind == kind)
            all.append(QString::fromLatin1(event.bytes.toHex()));
    }
    return all;
}

void TestTrace::everyStep()
{
    LOAD(Simulator::loadDevice(R"("mtu": 185)"));
    JobSpy spy(m_computer->readIdentity());
    ENDS_WELL(spy);
    JobSpy last(m_computer->disconnectFromComputer());
    ENDS_WELL(last);

    const VardaTraceHeader header = trace().header;
    QCOMPARE(header.version, 1);
    QVERIFY(!header.redacted);
    QCOMPARE(header.qt, QString::fromLatin1(qVersion()));
    QVERIFY(!header.library.isEmpty());

    QStringList expected{u"job"_s,        u"service"_s,  u"others"_s,          u"connect"_s,
                         u"up"_s,         u"services"_s, u"characteristics"_s, u"subscribe"_s,
                         u"subscribed"_s, u"write"_s};
    QCOMPARE(kinds().first(10), expected);
    QCOMPARE(kinds().last(), u"disconnect"_s);
    QCOMPARE(kinds().count(u"job"_s), 1);
    QCOMPARE(kinds().count(u"jobEnd"_s), 1);

    QCOMPARE(first(Event::Job).fields,
             (QJsonObject{{u"job"_s, 1}, {u"name"_s, u"identification"_s}}));
    QCOMPARE(first(Event::JobEnd).fields,
             (QJsonObject{{u"job"_s, 1}, {u"error"_s, u"NoError"_s}, {u"reason"_s, u"None"_s}}));
    QCOMPARE(first(Event::Connect).fields,
             (QJsonObject{{u"address"_s, QString::fromLatin1(kAddress)}, {u"name"_s, u"Varda"_s}}));
    QCOMPARE(first(Event::Service).fields, (QJsonObject{{u"name"_s, u"BlueZ 5.82"_s}}));
    QVERIFY(first(Event::Services)
                .fields[u"uuids"_s]
                .toArray()
                .contains(u"49535343-fe7d-4ae5-8fa9-9fafd205e455"_s));
    const QJsonObject characteristic =
        first(Event::Characteristics).fields[u"characteristics"_s][0].toObject();
    QCOMPARE(characteristic, (QJsonObject{{u"uuid"_s, u"49535343-1e4d-4bd9-ba61-23c647249616"_s},
                                          {u"cccd"_s, true},
                                          {u"flags"_s, QJsonArray{u"write-without-response"_s,
                                                                  u"write"_s, u"notify"_s}}}));
    QCOMPARE(first(Event::Subscribe).fields,
             (QJsonObject{{u"characteristic"_s, u"49535343-1e4d-4bd9-ba61-23c647249616"_s},
                          {u"value"_s, u"0100"_s}}));
    QCOMPARE(first(Event::Computer).fields[u"model"_s], u"Varda"_s);
    QCOMPARE(first(Event::Computer).fields[u"mode"_s], u"Normal"_s);

    qint64 before = 0;
    const auto events = trace().events;
    for (const Event &event : events) {
        QVERIFY(event.at >= before);
        before = event.at;
    }
}

void TestTrace::bytesAsTheyPassed()
{
    LOAD(Simulator::loadDevice(R"("owner": "Ada", "split": 5)"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(bytes(Event::Write), Simulator::frames());
    QStringList sent;
    const QStringList record = Simulator::record({u"notification"_s});
    for (const QString &line : record)
        sent.append(line.section(u' ', -1));
    QCOMPARE(sent.size(), 3);
    QCOMPARE(bytes(Event::Notification), sent);
}

void TestTrace::others()
{
    LOAD(Simulator::loadScenario(R"({"devices":[
        {"name":"Watch","advertise":[{"after":10},{"after":20}]},
        {"name":"Lamp","advertise":[{"after":10}]},
        {"advertise":[{"after":300}]}]})"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(first(Event::Others).fields, (QJsonObject{{u"count"_s, 2}}));
    QVERIFY(!m_text.contains("Watch"));
}

void TestTrace::lostLink()
{
    LOAD(Simulator::loadDevice(
        R"("faults":[{"step":"answer","command":"Owner","kind":"drop","nth":1}])"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(kinds().count(u"down"_s), 1);
    QCOMPARE(kinds().count(u"connect"_s), 2);
}

void TestTrace::silence()
{
    LOAD(
        Simulator::loadDevice(R"("faults":[{"step":"answer","command":"Owner","kind":"silent"}])"));
    auto *const job = m_computer->readOwner();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(kinds().count(u"silence"_s), 1);
    QCOMPARE(first(Event::JobEnd).fields[u"error"_s], u"TimedOut"_s);
    QCOMPARE(first(Event::JobEnd).fields[u"reason"_s], u"NoAnswer"_s);
}

void TestTrace::credits()
{
    LOAD(Simulator::loadDevice(R"("mode": "sps", "credits": "counted")"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    const Event credits = first(Event::Write);
    QCOMPARE(credits.fields,
             (QJsonObject{{u"characteristic"_s, u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s}}));
    QCOMPARE(credits.bytes.size(), 1);
}

void TestTrace::refusedConnection()
{
    LOAD(Simulator::loadDevice(R"("faults":[{"step":"connect","kind":"refuse","nth":1}])"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(first(Event::Failure).fields[u"what"_s], u"controller"_s);
    QCOMPARE(kinds().count(u"connect"_s), 2);
}

void TestTrace::session()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    auto *const ended = VardaTrace::attach(session, m_buffer.get(), VardaTrace::Complete);
    const QPointer<VardaTrace> first(ended);
    m_text.clear();
    m_buffer->seek(0);
    VardaTrace::attach(session, m_buffer.get(), VardaTrace::Complete);
    QVERIFY(!first);
    QSignalSpy connected(&session, &VardaSession::connectControllerStatus);
    session.connectTo(knownDevice());
    QTRY_COMPARE(connected.size(), 1);
    QSignalSpy ends(&session, &VardaSession::endCommand);
    session.startCommand(TidemarCommand::Identification);
    QTRY_COMPARE(ends.size(), 1);
    session.startCommand(TidemarCommand::Time);
    QTRY_COMPARE(ends.size(), 2);
    session.controllerDisconnect();
    QCOMPARE(kinds(), (QStringList{u"connect"_s, u"up"_s, u"services"_s, u"characteristics"_s,
                                   u"subscribe"_s, u"subscribed"_s, u"write"_s, u"notification"_s,
                                   u"computer"_s, u"write"_s, u"notification"_s, u"disconnect"_s}));
}

void TestTrace::deviceDeleted()
{
    LOAD(Simulator::loadDevice(""));
    m_buffer.reset();
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
}

void TestTrace::fullDevice()
{
    QFile full(u"/dev/full"_s);
    if (!full.open(QIODevice::WriteOnly))
        QSKIP("needs /dev/full");
    LOAD(Simulator::loadDevice(""));
    QSignalSpy failed(m_computer.get(), &VardaComputer::traceFailed);
    m_computer->setTrace(&full);
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].toString(), u"No space left on device"_s);
}

void TestTrace::endedByTheApplication()
{
    LOAD(Simulator::loadDevice(""));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    m_computer->setTrace(nullptr);
    const QByteArray before = m_text;
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(m_text, before);
}

namespace {

constexpr auto kPrivate = R"("name":"VSK-S#77/1","address":"5A:C3:E7:91:0D:B6","model":"vskm",
    "owner":"S#Ann/Ö 1234","serial":"5A5B5C5D-3138510D-37373934",
    "layouts":[{"name":"S#Cave/5678"},{"name":"S#Reef/9012"}],
    "logText":["S#Log/3456","S#/home/ann/7890"],)";

QByteArray reversed(QByteArray bytes)
{
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

/** In every form in which it could be in a file. */
bool leaks(const QByteArray &file, const QByteArray &secret)
{
    const QString text = QString::fromUtf8(secret);
    const QByteArray utf16(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    const QByteArray small = file.toLower();
    for (const QByteArray &form : {secret, reversed(secret), text.toLatin1(), utf16}) {
        if (file.contains(form) || small.contains(form.toHex())
            || file.contains(form.toBase64(QByteArray::OmitTrailingEquals).chopped(1)))
            return true;
    }
    return false;
}

} // namespace

void TestTrace::nothingPrivate_data()
{
    QTest::addColumn<int>("split");
    for (const int split : {0, 7})
        QTest::addRow("%d", split) << split;
}

void TestTrace::nothingPrivate()
{
    QFETCH(const int, split);
    LOAD(Simulator::loadScenario(
        R"({"devices":[{"name":"S#Watch/1","address":"66:77:88:99:AA:BB"},{)" + QByteArray(kPrivate)
        + R"("advertise":[{"after":100}],"split":)" + QByteArray::number(split) + "}]}"));
    m_text.clear();
    m_buffer->seek(0);
    m_computer->setTrace(m_buffer.get());
    const QList<VardaJob *> jobs{m_computer->readIdentity(),
                                 m_computer->readConfiguration(),
                                 m_computer->readOwner(),
                                 m_computer->readLog(),
                                 m_computer->readLayouts(),
                                 m_computer->readLayout(0),
                                 m_computer->addLayout("S#Wreck/2468"),
                                 m_computer->writeOwner(u"S#Bob/Ä 1357"_s)};
    JobSpy last(jobs.last());
    for (VardaJob *job : jobs)
        job->setRetries(0); // cut so small, not every answer is sound
    QVERIFY(last.wait());
    m_computer->setTrace(nullptr);
    QCOMPARE(kinds().count(u"jobEnd"_s), 8);

    const QByteArrayList secrets{"S#77/1",
                                 "5A:C3:E7:91:0D:B6",
                                 QByteArray::fromHex("5ac3e7910db6"),
                                 "S#Ann/Ö 1234",
                                 "5A5B5C5D",
                                 QByteArray::fromHex("5d5c5b5a"),
                                 "S#Cave/5678",
                                 "S#Reef/9012",
                                 "S#Log/3456",
                                 "S#/home/ann",
                                 "S#Wreck/2468",
                                 "S#Bob/Ä 1357",
                                 "S#Watch/1",
                                 "66:77:88:99:AA:BB",
                                 QByteArray::fromHex("66778899aabb"),
                                 QDir::homePath().toUtf8() + '/'};
    for (const QByteArray &secret : secrets)
        QVERIFY2(!leaks(m_text, secret), secret);
    if (QSysInfo::machineHostName().size() > 5)
        QVERIFY(!leaks(m_text, QSysInfo::machineHostName().toUtf8()));
    QVERIFY(trace().header.redacted);
    QVERIFY(first(Event::Connect).fields[u"name"_s].toString().startsWith(u"VSK-"_s));
}

void TestTrace::stillReadable()
{
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    m_text.clear();
    m_buffer->seek(0);
    m_computer->setTrace(m_buffer.get());
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    const QByteArray answer = first(Event::Notification).bytes;
    QCOMPARE(answer.size(), 13);
    QCOMPARE(answer.first(4), QByteArray::fromHex("dcdc0500"));
    QCOMPARE(answer[8], '');
    for (const char letter : answer.sliced(9, 3))
        QVERIFY(letter >= 'a' && letter <= 'z');
    QVERIFY(answer.sliced(9, 3) != "Ada");
    QCOMPARE(answer[12], '\0');
    QCOMPARE(bytes(Event::Write), Simulator::frames());
    QCOMPARE(first(Event::JobEnd).fields[u"error"_s], u"NoError"_s);
}

QTEST_MAIN(TestTrace)
#include "tst_trace.moc"
