// SPDX-License-Identifier: MIT
#include <QtCore/qdatetime.h>
#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qtemporarydir.h>
#include <QtDBus/qdbusargument.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/vardacomputer.h>
#include <varda/vardadoctor.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;
using State = VardaCheck::State;
using Subject = VardaCheck::Subject;

namespace {

void steer(const QString &method, const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s, method);
    message.setArguments(arguments);
    // Not awaited: what is frozen does not answer.
    QDBusConnection::systemBus().send(message);
}

QString stateName(const VardaCheck &check)
{
    const auto subjects = QMetaEnum::fromType<Subject>();
    const auto states = QMetaEnum::fromType<State>();
    return QLatin1StringView(subjects.valueToKey(int(check.subject))) + u' '
           + QLatin1StringView(states.valueToKey(int(check.state)));
}

/** All that is not as it should be, "Clock Warning"; what was skipped is left out. */
QStringList findings(const QList<VardaCheck> &checks)
{
    QStringList found;
    for (const VardaCheck &each : checks) {
        if (each.state != State::Ok && each.state != State::Skipped)
            found.append(stateName(each));
    }
    return found;
}

/** Another program on the same bus. */
class OtherProgram
{
public:
    OtherProgram()
        : m_bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"),
                                              u"other"_s))
    {
    }
    ~OtherProgram() { QDBusConnection::disconnectFromBus(u"other"_s); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    [[nodiscard]] QString call(const QString &path, const QString &interface, const QString &method)
    {
        return m_bus
            .call(QDBusMessage::createMethodCall(u"org.bluez"_s, path, interface, method),
                  QDBus::BlockWithGui)
            .errorName();
    }
    [[nodiscard]] QString callDevice(const QString &method)
    {
        return call(kDevice, u"org.bluez.Device1"_s, method);
    }
    /** The error of the subscription to the data of the computer. */
    [[nodiscard]] QString subscribe()
    {
        const QDBusMessage reply = m_bus.call(
            QDBusMessage::createMethodCall(u"org.bluez"_s, u"/"_s,
                                           u"org.freedesktop.DBus.ObjectManager"_s,
                                           u"GetManagedObjects"_s),
            QDBus::BlockWithGui);
        using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;
        const auto objects = qdbus_cast<Objects>(reply.arguments().value(0));
        for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
            const QVariantMap characteristic = it->value(u"org.bluez.GattCharacteristic1"_s);
            if (characteristic.value(u"Flags"_s).toStringList().contains(u"notify"_s)
                && characteristic.value(u"UUID"_s).toString().startsWith(u"49535343"_s))
                return call(it.key().path(), u"org.bluez.GattCharacteristic1"_s, u"StartNotify"_s);
        }
        return u"no such characteristic"_s;
    }

private:
    static inline const QString kDevice = u"/org/bluez/hci0/dev_00_AA_01_01_00_01"_s;
    QDBusConnection m_bus;
};

/** A folder like /sys/class/rfkill with one switch. */
class Switch
{
public:
    explicit Switch(const QByteArray &type, const QByteArray &soft, const QByteArray &hard)
    {
        const QString folder = m_folder.filePath(u"rfkill0"_s);
        QDir().mkpath(folder);
        write(folder + u"/type"_s, type);
        write(folder + u"/name"_s, "hci0");
        write(folder + u"/soft"_s, soft);
        write(folder + u"/hard"_s, hard);
        qputenv("VARDA_RFKILL", m_folder.path().toLocal8Bit());
    }
    ~Switch() { qputenv("VARDA_RFKILL", {}); }
    Q_DISABLE_COPY_MOVE(Switch)

private:
    static void write(const QString &name, const QByteArray &text)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text + '\n');
    }

    QTemporaryDir m_folder;
};

} // namespace

Q_DECLARE_METATYPE(VardaCheck::Subject)

class TestDoctor : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("VARDA_RFKILL", {}); }
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void healthy_data();
    void healthy();
    void fault_data();
    void fault();
    void serviceGone();
    void serviceFrozen();
    void knownButOff();
    void radioBlock_data();
    void radioBlock();
    void otherKindOfLink();
    void otherProgramConnected();
    void otherProgramSubscribed();
    void clock_data();
    void clock();
    void eachSubjectOnce();
    void changesNothing();
    void leavesALinkThatWasThere();
    void namesNobody();
    void cancelled_data();
    void cancelled();
    void aborted();
    void deleted();
    void computerDeleted_data();
    void computerDeleted();

private:
    /** Nothing if it has not ended well. */
    [[nodiscard]] QList<VardaCheck> examine();

    std::unique_ptr<VardaComputer> m_computer;
    VardaCheck m_fault;
};

QList<VardaCheck> TestDoctor::examine()
{
    VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    doctor->setAutoDelete(false);
    const std::unique_ptr<VardaDoctor> owner(doctor);
    JobSpy spy(doctor);
    if (!spy.wait(100'000) || spy.error != VardaJob::NoError)
        return {};
    m_fault = doctor->fault();
    return spy.value.value<QList<VardaCheck>>();
}

void TestDoctor::healthy_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QStringList>("found");
    // Their clocks stand still.
    const QStringList clock{u"Clock Warning"_s};
    QTest::newRow("varda") << u"varda"_s << clock;
    QTest::newRow("tidemar") << u"tidemar"_s << clock;
    QTest::newRow("vskm") << u"vskm"_s << clock;
    QTest::newRow("sps") << u"sps"_s << clock;
    QTest::newRow("crowd") << u"crowd"_s << QStringList();
    QTest::newRow("real-timing") << u"real-timing"_s << QStringList();
    QTest::newRow("large-logbook") << u"large-logbook"_s << QStringList();
    QTest::newRow("oldest-layouts") << u"oldest-layouts"_s << QStringList();
    QTest::newRow("every-log-entry") << u"every-log-entry"_s << QStringList();
    QTest::newRow("empty") << u"empty"_s << QStringList{u"Battery Unknown"_s};
    QTest::newRow("firmware-resumed") << u"firmware-resumed"_s << QStringList();
    QTest::newRow("nasty-names") << u"nasty-names"_s << QStringList();
    QTest::newRow("indicate") << u"indicate"_s << QStringList();
    QTest::newRow("merged") << u"merged"_s << QStringList();
    QTest::newRow("notify-and-indicate") << u"notify-and-indicate"_s << QStringList();
}

void TestDoctor::healthy()
{
    QFETCH(const QString, scenario);
    QFETCH(const QStringList, found);
    QFile file(QStringLiteral(VARDA_SCENARIOS "/%1.json").arg(scenario));
    QVERIFY(file.open(QIODevice::ReadOnly));
    LOAD(Simulator::loadScenario(file.readAll()));
    const QList<VardaCheck> checks = examine();
    QCOMPARE(findings(checks), found);
    QCOMPARE(checks.size(), 19);
    QVERIFY(m_fault.state != State::Fault);
}

void TestDoctor::fault_data()
{
    QTest::addColumn<QByteArray>("world");
    QTest::addColumn<QString>("found");
    QTest::addColumn<VardaJob::Error>("error");
    QTest::addColumn<VardaJob::Reason>("reason");
    const auto device = [](const char *keys) {
        return R"("devices":[{)" + QByteArray(keys) + "}]";
    };
    QTest::newRow("no adapter") << QByteArray(R"("adapter":{"present":false},"devices":[{}])")
                                << u"ServiceVersion Unknown Adapter Fault"_s
                                << VardaJob::NoBluetooth << Reason::NoAdapter;
    QTest::newRow("off") << QByteArray(R"("adapter":{"powered":false},"devices":[{}])")
                         << u"Power Fault"_s << VardaJob::NoBluetooth << Reason::AdapterOff;
    QTest::newRow("nobody") << QByteArray(R"("devices":[])") << u"Reach Fault"_s
                            << VardaJob::NotFound << Reason::Silent;
    QTest::newRow("other devices") << device(R"("name":"Headset")") << u"Reach Fault"_s
                                   << VardaJob::NotFound << Reason::Silent;
    QTest::newRow("refused") << device(R"("faults":[{"step":"connect","kind":"refuse"}])")
                             << u"Connection Fault"_s << VardaJob::NotConnected
                             << Reason::LinkFailed;
    QTest::newRow("dropped") << device(R"("faults":[{"step":"connect","kind":"drop"}])")
                             << u"Connection Fault"_s << VardaJob::NotConnected
                             << Reason::LinkFailed;
    QTest::newRow("no subscription")
        << device(R"("faults":[{"step":"subscribe","kind":"refuse"}])") << u"Connection Fault"_s
        << VardaJob::NotConnected << Reason::LinkFailed;
    QTest::newRow("mute") << device(R"("faults":[{"step":"discover","kind":"empty","ms":500}])")
                          << u"ComputerService Fault"_s << VardaJob::NotConnected
                          << Reason::NoService;
    QTest::newRow("other services") << device(R"("mode":"none")") << u"ComputerService Fault"_s
                                    << VardaJob::NotConnected << Reason::NoService;
    QTest::newRow("small MTU") << device(R"("mtu":23)") << u"Mtu Fault"_s << VardaJob::Damaged
                               << Reason::SmallMtu;
    QTest::newRow("no answer") << device(R"("faults":[{"step":"answer","kind":"silent"}])")
                               << u"Answer Fault"_s << VardaJob::TimedOut << Reason::NoAnswer;
    QTest::newRow("damaged answer")
        << device(R"("faults":[{"step":"answer","kind":"wrongCrc"}])") << u"Answer Fault"_s
        << VardaJob::Damaged << Reason::WrongChecksum;
    QTest::newRow("answers in pieces")
        << device(R"("split":16)") << u"Clock Fault"_s << VardaJob::Damaged << Reason::SmallMtu;
    QTest::newRow("bootloader") << device(R"("model":"tidemar","recordVersion":2)")
                                << u"Mode Fault"_s << VardaJob::NoError << Reason::None;
}

void TestDoctor::fault()
{
    QFETCH(const QByteArray, world);
    QFETCH(const QString, found);
    QFETCH(const VardaJob::Error, error);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadScenario('{' + world + '}'));
    Simulator::settle();
    const QList<VardaCheck> checks = examine();
    QCOMPARE(findings(checks).join(u' '), found);
    QCOMPARE(m_fault.error, error);
    QCOMPARE(m_fault.reason, reason);
    QVERIFY(!m_fault.text.isEmpty());
    QVERIFY(!m_fault.remedy.isEmpty());
    QCOMPARE(checks.size(), 19);
}

void TestDoctor::serviceGone()
{
    LOAD(Simulator::loadDevice(""));
    steer(u"EndDaemon"_s);
    Simulator::settle();
    const QList<VardaCheck> checks = examine();
    steer(u"StartDaemon"_s);
    QCOMPARE(findings(checks), QStringList(u"BluetoothService Fault"_s));
    QCOMPARE(m_fault.reason, Reason::ServiceGone);
    QCOMPARE(m_fault.remedy, u"Start it. (systemctl start bluetooth)"_s);
}

void TestDoctor::serviceFrozen()
{
    LOAD(Simulator::loadDevice(""));
    steer(u"Freeze"_s, {10'000U});
    // It does not report that it is frozen.
    const auto ping = QDBusMessage::createMethodCall(
        u"org.bluez"_s, u"/"_s, u"org.freedesktop.DBus.ObjectManager"_s, u"GetManagedObjects"_s);
    QTRY_COMPARE(QDBusConnection::systemBus().call(ping, QDBus::BlockWithGui, 1000).type(),
                 QDBusMessage::ErrorMessage);
    const QList<VardaCheck> checks = examine();
    QCOMPARE(findings(checks), QStringList(u"BluetoothService Fault"_s));
    QCOMPARE(m_fault.reason, Reason::ServiceFrozen);
}

void TestDoctor::knownButOff()
{
    LOAD(Simulator::loadDevice(R"("known":true,"advertise":[])"));
    m_computer->setDevice(BleDeviceInfo::fromAddress(QString::fromLatin1(kAddress), u"Varda"_s));
    const QList<VardaCheck> checks = examine();
    QCOMPARE(findings(checks), QStringList(u"Reach Fault"_s));
    QCOMPARE(m_fault.text, u"the computer is known here, but it is off or too far away"_s);
    QCOMPARE(m_fault.reason, Reason::Silent);
}

void TestDoctor::radioBlock_data()
{
    QTest::addColumn<QByteArray>("adapter");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("soft");
    QTest::addColumn<QByteArray>("hard");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("remedy");
    const QByteArray off = R"({"powered":false})";
    const QByteArray gone = R"({"present":false})";
    const QString unblock = u"End airplane mode. (rfkill unblock bluetooth)"_s;
    const QString blocked = u"RadioBlock Fault"_s;
    QTest::newRow("by a program") << off << QByteArray("bluetooth") << QByteArray("1")
                                  << QByteArray("0") << blocked << unblock;
    QTest::newRow("by hand") << off << QByteArray("bluetooth") << QByteArray("0") << QByteArray("1")
                             << blocked << u"Use the machine's key or slide for wireless."_s;
    QTest::newRow("and the adapter is gone")
        << gone << QByteArray("bluetooth") << QByteArray("1") << QByteArray("0")
        << u"ServiceVersion Unknown RadioBlock Fault"_s << unblock;
    QTest::newRow("another radio")
        << off << QByteArray("wlan") << QByteArray("1") << QByteArray("0") << u"Power Fault"_s
        << u"Switch it on. (bluetoothctl power on)"_s;
    QTest::newRow("another adapter")
        << QByteArray("{}") << QByteArray("bluetooth") << QByteArray("1") << QByteArray("0")
        << QString() << QString();
}

void TestDoctor::radioBlock()
{
    QFETCH(const QByteArray, adapter);
    QFETCH(const QByteArray, type);
    QFETCH(const QByteArray, soft);
    QFETCH(const QByteArray, hard);
    QFETCH(const QString, found);
    QFETCH(const QString, remedy);
    const Switch radio(type, soft, hard);
    LOAD(Simulator::loadScenario(R"({"adapter":)" + adapter + R"(,"devices":[{}]})"));
    Simulator::settle();
    QCOMPARE(findings(examine()).join(u' '), found);
    QCOMPARE(m_fault.remedy, remedy);
}

void TestDoctor::otherKindOfLink()
{
    LOAD(Simulator::loadDevice(R"("mode":"sps")"));
    m_computer->setLinkMode(BleMode::Gatt);
    QCOMPARE(findings(examine()), QStringList(u"LinkMode Fault"_s));
    QCOMPARE(m_fault.reason, Reason::OtherLinkMode);
}

void TestDoctor::otherProgramConnected()
{
    LOAD(Simulator::loadDevice(R"("known":true)"));
    OtherProgram other;
    QCOMPARE(other.callDevice(u"Connect"_s), QString());
    QCOMPARE(findings(examine()), QStringList(u"OtherProgram Warning"_s));
}

void TestDoctor::otherProgramSubscribed()
{
    LOAD(Simulator::loadDevice(R"("known":true)"));
    OtherProgram other;
    QCOMPARE(other.callDevice(u"Connect"_s), QString());
    QTRY_COMPARE(other.subscribe(), QString());
    QCOMPARE(findings(examine()),
             (QStringList{u"OtherProgram Warning"_s, u"Subscription Fault"_s}));
    QCOMPARE(m_fault.error, VardaJob::Repeated);
    QCOMPARE(m_fault.reason, Reason::OtherSubscriber);
}

void TestDoctor::clock_data()
{
    QTest::addColumn<int>("late");
    QTest::addColumn<QStringList>("found");
    const QStringList warning{u"Clock Warning"_s};
    // A busy machine takes its time between the scenario and the question.
    QTest::newRow("right") << 0 << QStringList();
    QTest::newRow("one minute late") << 60 << QStringList();
    QTest::newRow("almost two minutes early") << -115 << QStringList();
    QTest::newRow("late") << 121 << warning;
    QTest::newRow("early") << -200 << warning;
    QTest::newRow("in another time zone") << 3600 << warning;
}

void TestDoctor::clock()
{
    QFETCH(const int, late);
    QFETCH(const QStringList, found);
    const QDateTime now = QDateTime::currentDateTime().addSecs(-late);
    LOAD(Simulator::loadDevice(R"("clock":")" + now.toString(u"yyyy-MM-ddTHH:mm:ss"_s).toLatin1()
                               + R"(","clockRuns":true)"));
    QCOMPARE(findings(examine()), found);
}

void TestDoctor::eachSubjectOnce()
{
    LOAD(Simulator::loadDevice(""));
    VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    QList<int> told;
    QList<qint64> known;
    connect(doctor, &VardaDoctor::checked, this, [&](const VardaCheck &check) {
        told.append(int(check.subject));
        known.append(doctor->checks().size());
    });
    JobSpy spy(doctor);
    ENDS_WELL(spy);
    QList<int> expected;
    for (int each = 0; each <= 18; ++each)
        expected.append(each);
    QCOMPARE(told, expected);
    QCOMPARE(known.constLast(), 19);
    QCOMPARE(spy.done, 19);
    QCOMPARE(spy.total, 19);
    QTest::qWait(0);
    QCOMPARE(spy.ends, 1);
}

/** It only asks what a computer is, its clock and its log, and leaves no link behind. */
void TestDoctor::changesNothing()
{
    LOAD(Simulator::loadDevice(R"("clock":1000)"));
    const QJsonObject before = Simulator::state();
    QCOMPARE(findings(examine()), QStringList(u"Clock Warning"_s));
    QStringList commands;
    const QStringList frames = Simulator::frames();
    for (const QString &each : frames)
        commands.append(each.right(2));
    QCOMPARE(commands, (QStringList{u"01"_s, u"03"_s, u"21"_s, u"07"_s, u"1d"_s}));
    QCOMPARE(Simulator::state(), before);
    QCOMPARE(m_computer->state(), VardaComputer::Unconnected);
}

void TestDoctor::leavesALinkThatWasThere()
{
    LOAD(Simulator::loadDevice(""));
    JobSpy connection(m_computer->connectToComputer());
    ENDS_WELL(connection);
    QCOMPARE(findings(examine()), QStringList());
    QCOMPARE(m_computer->state(), VardaComputer::Connected);
    QCOMPARE(Simulator::count(u"Disconnect"_s), 0);
}

/** What it finds may be shown to anybody. */
void TestDoctor::namesNobody()
{
    LOAD(
        Simulator::loadDevice(R"("model":"vskm","name":"VSK-1234567","owner":"Grace Hopper",)"
                              R"("serial":"00420017-3138510D-37373934",)"
                              R"("faults":[{"step":"answer","kind":"silent","nth":2,"times":0}])"));
    for (int i = 0; i < 2; ++i) { // healthy as far as the identification, then not at all
        QString all;
        const QList<VardaCheck> checks = examine();
        QVERIFY(!checks.isEmpty());
        for (const VardaCheck &each : checks)
            all += each.lookedAt + u'\n' + each.text + u'\n' + each.remedy + u'\n';
        for (const auto *secret : {"VSK-", "1234567", "00:AA", "Hopper", "00420017"})
            QVERIFY2(!all.contains(QLatin1StringView(secret)), secret);
    }
}

void TestDoctor::cancelled_data()
{
    QTest::addColumn<int>("after"); // which subject
    QTest::newRow("at once") << -1;
    QTest::newRow("looking at the adapter") << int(Subject::Power);
    QTest::newRow("in the search") << int(Subject::OtherProgram);
    QTest::newRow("connecting") << int(Subject::Reach);
    QTest::newRow("asking") << int(Subject::Mtu);
    QTest::newRow("reading the log") << int(Subject::Clock);
}

void TestDoctor::cancelled()
{
    QFETCH(const int, after);
    LOAD(Simulator::loadDevice(""));
    VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    connect(doctor, &VardaDoctor::checked, this, [=](const VardaCheck &check) {
        if (int(check.subject) == after)
            doctor->cancel();
    });
    JobSpy spy(doctor);
    if (after < 0)
        doctor->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ByCaller);
    QVERIFY(!spy.value.isValid());
    QTRY_COMPARE(m_computer->state(), VardaComputer::Unconnected);
    QTRY_VERIFY(!spy.job);
    QCOMPARE(spy.ends, 1);
}

void TestDoctor::aborted()
{
    LOAD(Simulator::loadDevice(R"("faults":[{"step":"answer","kind":"silent"}])"));
    VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    JobSpy spy(doctor);
    QTRY_COMPARE(Simulator::frames().size(), 1);
    doctor->abort();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QTRY_COMPARE(m_computer->state(), VardaComputer::Unconnected);
}

/** What it has asked the computer for ends too. */
void TestDoctor::deleted()
{
    LOAD(Simulator::loadDevice(R"("faults":[{"step":"answer","kind":"silent"}])"));
    const VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    QTRY_COMPARE(Simulator::frames().size(), 1);
    QVERIFY(m_computer->currentJob());
    delete doctor;
    QTRY_VERIFY(!m_computer->currentJob());
}

void TestDoctor::computerDeleted_data()
{
    cancelled_data();
}

void TestDoctor::computerDeleted()
{
    QFETCH(const int, after);
    LOAD(Simulator::loadDevice(""));
    VardaDoctor *const doctor = VardaDoctor::examine(*m_computer);
    connect(doctor, &VardaDoctor::checked, this, [=, this](const VardaCheck &check) {
        if (int(check.subject) == after)
            m_computer.reset();
    });
    JobSpy spy(doctor);
    if (after < 0)
        m_computer.reset();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ComputerDeleted);
    QTRY_VERIFY(!spy.job);
    QCOMPARE(spy.ends, 1);
}

QTEST_MAIN(TestDoctor)
#include "tst_doctor.moc"
