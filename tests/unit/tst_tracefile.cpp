// SPDX-License-Identifier: MIT
#include <QtCore/qbuffer.h>
#include <QtTest/qtest.h>

#include <varda/vardatracefile.h>

using namespace Qt::StringLiterals;

/** Reading a trace, and writing it again. */
class TestTraceFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void read();
    void written();
    void wrong_data();
    void wrong();
    void cutShort();
    void unknownEvent();
    void fullDevice();
};

namespace {

constexpr auto kHeader = R"({"format":"varda-trace","library":"0.1.0","qt":"6.4.2",)"
                         R"("redacted":true,"system":"Debian","version":1})"
                         "\n";

std::optional<VardaTraceFile> readFrom(QByteArray text, QString *error = nullptr)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return VardaTraceFile::read(buffer, error);
}

} // namespace

void TestTraceFile::read()
{
    const auto trace = readFrom(QByteArray(kHeader)
                                + R"({"at":0.25,"event":"connect","name":"Varda"})"
                                  "\n\n"
                                  R"({"at":1500,"bytes":"DCdc01","event":"write"})"
                                  "\n");
    QVERIFY(trace);
    QCOMPARE(trace->header.version, 1);
    QVERIFY(trace->header.redacted);
    QCOMPARE(trace->header.library, u"0.1.0"_s);
    QCOMPARE(trace->header.qt, u"6.4.2"_s);
    QCOMPARE(trace->header.system, u"Debian"_s);
    QVERIFY(!trace->cutShort);
    QCOMPARE(trace->events.size(), 2);
    QCOMPARE(trace->events[0].at, 250);
    QCOMPARE(trace->events[0].kind, VardaTraceEvent::Connect);
    QCOMPARE(trace->events[0].fields, (QJsonObject{{u"name"_s, u"Varda"_s}}));
    QCOMPARE(trace->events[1].at, 1'500'000);
    QCOMPARE(trace->events[1].kind, VardaTraceEvent::Write);
    QCOMPARE(trace->events[1].bytes, QByteArray::fromHex("dcdc01"));
    QCOMPARE(trace->events[1].fields, QJsonObject());
}

void TestTraceFile::written()
{
    VardaTraceFile trace;
    trace.header.redacted = false;
    trace.header.library = u"1.2"_s;
    VardaTraceEvent event;
    event.at = 1'234'567;
    event.kind = VardaTraceEvent::Notification;
    event.bytes = QByteArray::fromHex("00ff");
    trace.events.append(event);
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(trace.write(buffer));
    QCOMPARE(text, R"({"format":"varda-trace","library":"1.2","qt":"","redacted":false,)"
                   R"("system":"","version":1})"
                   "\n"
                   R"({"at":1234.567,"bytes":"00ff","event":"notification"})"
                   "\n");
}

void TestTraceFile::wrong_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const QByteArray header(kHeader);
    const auto add = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromLatin1(error);
    };
    add("empty", "", "line 1: this is not a trace");
    add("no JSON", "dc dc 01\n", "line 1: this is not a trace");
    add("other JSON", "{\"version\":1}\n", "line 1: this is not a trace");
    add("blank first line", "\n" + header, "line 1: this is not a trace");
    add("version 0", QByteArray(header).replace("\"version\":1", "\"version\":0"),
        "line 1: \"version\" is not a positive number");
    add("newer", QByteArray(header).replace("\"version\":1", "\"version\":99"),
        "line 1: this trace was made by a newer version of the program");
    add("no event", header + "{\"at\":1}\n", "line 2: \"event\" is missing");
    add("no time", header + "{\"event\":\"up\"}\n",
        "line 2: \"at\" is not a number of milliseconds");
    add("negative time", header + "{\"at\":-1,\"event\":\"up\"}\n",
        "line 2: \"at\" is not a number of milliseconds");
    add("no hex", header + "{\"at\":1,\"event\":\"write\",\"bytes\":\"dcx\"}\n",
        "line 2: \"bytes\" is not hexadecimal");
    add("half a byte", header + "{\"at\":1,\"event\":\"write\",\"bytes\":\"dcd\"}\n",
        "line 2: \"bytes\" is not hexadecimal");
    add("a list", header + "[1]\n", "line 2: this is not an object");
    add("broken", header + "{\"at\":1,\n{\"at\":1,\"event\":\"up\"}\n",
        "line 2: unterminated object");
    add("too long", header + "{\"at\":1,\"event\":\"" + QByteArray(1 << 20, 'x') + "\"}\n",
        "line 2: it is too long");
}

void TestTraceFile::wrong()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, error);
    QString said;
    QVERIFY(!readFrom(text, &said));
    QCOMPARE(said, error);
}

void TestTraceFile::cutShort()
{
    const auto trace = readFrom(QByteArray(kHeader)
                                + "{\"at\":1,\"event\":\"up\"}\n{\"at\":2,\"ev");
    QVERIFY(trace);
    QVERIFY(trace->cutShort);
    QCOMPARE(trace->events.size(), 1);
}

void TestTraceFile::unknownEvent()
{
    const QByteArray line = R"({"at":1,"depth":7,"event":"dived"})"
                            "\n";
    const auto trace = readFrom(QByteArray(kHeader) + line);
    QVERIFY(trace);
    QCOMPARE(trace->events.size(), 1);
    QCOMPARE(trace->events[0].kind, VardaTraceEvent::Unknown);
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(trace->write(buffer));
    QCOMPARE(text, QByteArray(kHeader) + line);
}

void TestTraceFile::fullDevice()
{
    QFile full(u"/dev/full"_s);
    if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        QSKIP("needs /dev/full");
    QVERIFY(!VardaTraceFile().write(full));
}

QTEST_GUILESS_MAIN(TestTraceFile)
#include "tst_tracefile.moc"
