// SPDX-License-Identifier: MIT
#include "device/commands.h"
#include "device/wire/frame.h"
#include "device/wire/seriallink.h"
#include "devices.h"

#include <QtTest/qsignalspy.h>
#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

QByteArray nameOf(FaultKind kind)
{
    switch (kind) {
    case FaultKind::Vanish:
        return "vanish";
    case FaultKind::AdapterGone:
        return "adapterGone";
    case FaultKind::PowerOff:
        return "powerOff";
    case FaultKind::DaemonGone:
        return "daemonGone";
    case FaultKind::Freeze:
        return "freeze";
    default:
        return "none";
    }
}

// A link and all that came over it.
struct Wire {
    explicit Wire(const QByteArray &json) : scenario(device(json)), plan(scenario.faults)
    {
        QObject::connect(&link, &SerialLink::notification, &link,
                         [this](const QByteArray &bytes) { sent.append(bytes.toHex()); });
        QObject::connect(&link, &SerialLink::linkDropped, &link,
                         [this] { sent.append("dropped"); });
        QObject::connect(&link, &SerialLink::calamity, &link, [this](const Fault &fault) {
            sent.append("calamity " + nameOf(fault.kind));
        });
    }
    void ask(quint8 command) { link.written(encodeFrame({command, {}})); }
    bool waitFor(qsizetype count)
    {
        return QTest::qWaitFor([&] { return sent.size() >= count; });
    }

    DeviceScenario scenario;
    FaultPlan plan;
    SerialLink link{scenario, plan};
    QList<QByteArray> sent;
};

QByteArray withFault(const QByteArray &fault, const QByteArray &rest = {})
{
    return "{\"faults\":[" + (fault.isEmpty() ? fault : "{" + fault + "}") + "]" + rest + "}";
}

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void notifications_data();
    void notifications();
    void lateNotification();
    void mergedStream();
    void endless();
    void endlessWaitsForCredits();
    void counting();
    void complaints_data();
    void complaints();
};

void TestFaults::answers_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QList<QByteArray>>("sent");
    const auto row = [](const char *fault, const QList<QByteArray> &hex) {
        QTest::newRow(fault) << QByteArray(fault) << hex;
    };
    row("", {"dcdc02002fa40000fe01"});
    row(R"("kind":"wrongCrc")", {"dcdc020075a40000fe01"});
    row(R"("kind":"wrongStart")", {"dcdd02002fa40000fe01"});
    row(R"("kind":"garbage","bytes":"0a0b")", {"0a0b"});
    row(R"("kind":"insert","bytes":"0a0b")", {"0a0bdcdc02002fa40000fe01"});
    row(R"("kind":"append","bytes":"0a0b")", {"dcdc02002fa40000fe010a0b"});
    row(R"("kind":"truncate")", {"dcdc02002fa40000fe"});
    row(R"("kind":"truncate","keep":4)", {"dcdc0200"});
    row(R"("kind":"duplicate")", {"dcdc02002fa40000fe01", "dcdc02002fa40000fe01"});
    row(R"("kind":"wrongCommand","bytes":"01")", {"dcdc0200d0a700000101"});
    row(R"("kind":"wrongLength")", {"dcdc03002fa40000fe01"});
    row(R"("kind":"wrongLength","by":-3)", {"dcdcffff2fa40000fe01"});
    row(R"("kind":"flip")", {"dddc02002fa40000fe01"});
    row(R"("kind":"flip","bit":9)", {"dcde02002fa40000fe01"});
    row(R"("kind":"flip","part":"header","bit":17)", {"dcdc00002fa40000fe01"});
    row(R"("kind":"flip","part":"header","bit":32)", {"dddc02002fa40000fe01"});
    row(R"("kind":"flip","part":"crc","bit":15)", {"dcdc02002f240000fe01"});
    row(R"("kind":"flip","part":"body","bit":7)", {"dcdc02002fa400007e01"});
    row(R"("kind":"flip","part":"body","bit":8)", {"dcdc02002fa40000fe00"});
    row(R"("kind":"refuse")", {"dcdc02000eb40000fe00"});
    row(R"("kind":"silent")", {});
    row(R"("kind":"drop")", {"dropped"});
    row(R"("kind":"garbage","frame":2)", {"dcdc02002fa40000fe01"});
    row(R"("kind":"vanish")", {"calamity vanish"});
    row(R"("kind":"adapterGone")", {"calamity adapterGone"});
    row(R"("kind":"powerOff")", {"calamity powerOff"});
    row(R"("kind":"daemonGone")", {"calamity daemonGone"});
    row(R"("kind":"freeze","ms":5)", {"calamity freeze", "dcdc02002fa40000fe01"});
}

void TestFaults::answers()
{
    QFETCH(QByteArray, fault);
    QFETCH(QList<QByteArray>, sent);
    Wire wire(withFault(fault.isEmpty() ? fault : R"("step":"answer",)" + fault));
    wire.ask(Reset);
    QCOMPARE(wire.sent, sent);
}

void TestFaults::notifications_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QList<QByteArray>>("sent");
    const auto row = [](const char *fault, const QList<QByteArray> &hex) {
        QTest::newRow(fault) << QByteArray(fault) << hex;
    };
    row("", {"a1a2a3", "b1b2", "c1"});
    row(R"("kind":"lost")", {"a1a2a3", "c1"});
    row(R"("kind":"empty")", {"a1a2a3", "", "c1"});
    row(R"("kind":"garbage","bytes":"0d")", {"a1a2a3", "0d", "c1"});
    row(R"("kind":"insert","bytes":"0d")", {"a1a2a3", "0d", "b1b2", "c1"});
    row(R"("kind":"duplicate")", {"a1a2a3", "b1b2", "b1b2", "c1"});
    row(R"("kind":"truncate")", {"a1a2a3", "b1", "c1"});
    row(R"("kind":"truncate","keep":0)", {"a1a2a3", "", "c1"});
    row(R"("kind":"split")", {"a1a2a3", "b1", "b2", "c1"});
    row(R"("kind":"flip","bit":8)", {"a1a2a3", "b1b3", "c1"});
    row(R"("kind":"flip","part":"body")", {"a1a2a3", "b1b2", "c1"}); // there is none
    row(R"("kind":"swap")", {"a1a2a3", "c1", "b1b2"});
    row(R"("kind":"merge")", {"a1a2a3", "b1b2c1"});
    row(R"("kind":"drop")", {"a1a2a3", "dropped"});
    row(R"("kind":"vanish")", {"a1a2a3", "calamity vanish"});
    row(R"("kind":"freeze","ms":5)", {"a1a2a3", "calamity freeze", "b1b2", "c1"});
}

void TestFaults::notifications()
{
    QFETCH(QByteArray, fault);
    QFETCH(QList<QByteArray>, sent);
    const QByteArray json = withFault(
        fault.isEmpty() ? fault : R"("step":"notification","command":"Reset","nth":2,)" + fault,
        R"(,"responses":{"Reset":{"notifications":["a1a2a3","b1b2","c1"]}})");
    Wire wire(json);
    wire.ask(Reset);
    QCOMPARE(wire.sent, sent);
    // Only that one.
    if (sent.size() > 2) {
        wire.sent.clear();
        wire.ask(Reset);
        QCOMPARE(wire.sent, QList<QByteArray>({"a1a2a3", "b1b2", "c1"}));
    }

    // The last notification has none after it.
    Wire last(QByteArray(json).replace(R"("nth":2)", R"("nth":3)"));
    last.ask(Reset);
    if (fault.contains("swap") || fault.contains("merge"))
        QCOMPARE(last.sent, QList<QByteArray>({"a1a2a3", "b1b2", "c1"}));
}

void TestFaults::lateNotification()
{
    Wire wire(withFault(R"("step":"notification","nth":2,"kind":"late","ms":1)",
                        R"(,"responses":{"Reset":{"notifications":["a1","b1","c1"]}})"));
    wire.ask(Reset);
    QCOMPARE(wire.sent, QList<QByteArray>({"a1"}));
    QVERIFY(wire.waitFor(3));
    QCOMPARE(wire.sent, QList<QByteArray>({"a1", "b1", "c1"}));
}

void TestFaults::mergedStream()
{
    // Garbage between the frames of one stream.
    Wire wire(withFault(R"("step":"answer","kind":"insert","frame":2,"bytes":"0a0b")",
                        R"(,"merge":true,"responses":{"Reset":["01",""]})"));
    wire.ask(Reset);
    QCOMPARE(wire.sent, QList<QByteArray>({"dcdc02002fa40000fe010a0bdcdc01004dc20000fe"}));
}

void TestFaults::endless()
{
    Wire wire(withFault(R"("step":"answer","command":"Reset","kind":"endless","frame":2)",
                        R"(,"split":6,"responses":{"Reset":["01","02",""]})"));
    wire.ask(Reset);
    const QList<QByteArray> first{"dcdc02002fa4", "0000fe01", "dcdc02004c94", "0000fe02"};
    QCOMPARE(wire.sent, first);
    QVERIFY(wire.waitFor(10));
    QCOMPARE(wire.sent.mid(4, 6), QList<QByteArray>({"dcdc02004c94", "0000fe02", "dcdc02004c94",
                                                     "0000fe02", "dcdc02004c94", "0000fe02"}));

    // Until the link ends, or the host asks for something else.
    wire.ask(Sync);
    const qsizetype size = wire.sent.size();
    QVERIFY(wire.sent.last() != "0000fe02");
    QSignalSpy spy(&wire.link, &SerialLink::notification);
    QVERIFY(!spy.wait(20));
    QCOMPARE(wire.sent.size(), size);

    wire.ask(Reset);
    QVERIFY(wire.waitFor(size + 8));
    wire.link.reset();
    spy.clear();
    QVERIFY(!spy.wait(20));
}

void TestFaults::endlessWaitsForCredits()
{
    Wire wire(withFault(R"("step":"answer","kind":"endless")", R"(,"credits":"counted")"));
    wire.link.creditsGranted(QByteArray(1, 3));
    QSignalSpy spy(&wire.link, &SerialLink::credits);
    wire.ask(Reset);
    QVERIFY(spy.wait());
    QCOMPARE(wire.sent.size(), 3);
    QCOMPARE(spy.first().at(0).toString(), u"creditsExhausted"_s);
    QCOMPARE(spy.first().at(2).toInt(), 1);
    QVERIFY(!spy.wait(20));
    // What could not be sent does not pile up.
    wire.link.creditsGranted(QByteArray(1, 2));
    QCOMPARE(spy.at(1).at(0).toString(), u"credits"_s);
    QCOMPARE(spy.at(1).at(2).toInt(), 1);
    QVERIFY(wire.waitFor(5));
    QCOMPARE(wire.sent.size(), 5);
}

void TestFaults::counting()
{
    const DeviceScenario scenario = device(R"({"faults":[
        {"step":"answer","command":"Time","kind":"silent","nth":2},
        {"step":"answer","command":7,"kind":"drop","nth":4,"times":2}]})");
    FaultPlan plan(scenario.faults);
    QStringList seen;
    for (int i = 0; i < 6; ++i) {
        QVERIFY(!plan.next(Step::Answer, Owner));
        const std::optional<Fault> fault = plan.next(Step::Answer, Time);
        seen << (!fault ? u"-"_s : fault->kind == FaultKind::Silent ? u"silent"_s : u"drop"_s);
    }
    QCOMPARE(seen, QString(u"- silent - drop drop -"_s).split(u' '));
}

void TestFaults::complaints_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *fault, const char *reason) {
        QTest::newRow(fault) << QByteArray(fault) << QString::fromLatin1(reason);
    };
    row(R"("step":"answer","kind":"swap")",
        R"(devices[0].faults[0].kind: "swap" cannot happen at step "answer")");
    row(R"("step":"notification","kind":"endless")",
        R"(devices[0].faults[0].kind: "endless" cannot happen at step "notification")");
    row(R"("step":"discover","kind":"refuse")",
        R"(devices[0].faults[0].kind: "refuse" cannot happen at step "discover")");
    row(R"("step":"connect","kind":"freeze")", "devices[0].faults[0].ms: is missing");
    row(R"("step":"answer","kind":"flip","part":"tail")",
        R"(devices[0].faults[0].part: "tail" is not one of all, header, crc, body)");
    row(R"("step":"answer","kind":"wrongLength","by":70000)",
        "devices[0].faults[0].by: 70000 is not between -65535 and 65535");
}

void TestFaults::complaints()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, reason);
    QCOMPARE(complaint(withFault(fault)), reason);
}

QTEST_GUILESS_MAIN(TestFaults)

#include "tst_faults.moc"
