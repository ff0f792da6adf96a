// SPDX-License-Identifier: MIT
#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtCore/qbuffer.h>
#include <QtCore/qfile.h>
#include <QtCore/qprocess.h>
#include <QtCore/qtemporarydir.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>
#include <QtDBus/qdbusmetatype.h>
#include <QtDBus/qdbusvirtualobject.h>
#include <QtTest/qtest.h>

#include <utility>

#include <varda/vardacomputer.h>
#include <varda/vardadoctor.h>

#include "jobspy.h"

using namespace Qt::StringLiterals;
using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;
using Reason = VardaJob::Reason;
using State = VardaCheck::State;
using Subject = VardaCheck::Subject;

Q_DECLARE_METATYPE(Objects)

namespace {

bool hasBackEnd = true;

} // namespace

// The program's own definition comes before that of Qt Bluetooth.
QBluetoothDeviceDiscoveryAgent::DiscoveryMethods
QBluetoothDeviceDiscoveryAgent::supportedDiscoveryMethods()
{
    return hasBackEnd ? LowEnergyMethod : NoMethod;
}

namespace {

/** A message bus that this process takes for the system's. */
class Bus
{
public:
    /** @param rules  elements of the configuration */
    explicit Bus(const QByteArray &rules = {})
    {
        QFile file(m_folder.filePath(u"bus.conf"_s));
        if (!file.open(QIODevice::WriteOnly))
            return;
        file.write(R"(<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>
            <servicedir>)"
                   + m_folder.path().toLocal8Bit() + R"(</servicedir><policy context="default">
            <allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>)"
                   + rules + "</busconfig>");
        file.close();
        m_daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                          u"--config-file="_s + file.fileName()});
        if (m_daemon.waitForStarted() && m_daemon.waitForReadyRead())
            qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_daemon.readLine().trimmed());
    }
    ~Bus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Bus)

    [[nodiscard]] QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};

/** A Bluetooth service that only has its name and an adapter, which is off. */
class Service : public QDBusVirtualObject
{
public:
    explicit Service(bool answersAsBluez = true, QString modalias = {})
        : m_answersAsBluez(answersAsBluez),
          m_modalias(std::move(modalias)),
          m_bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"),
                                              u"service"_s))
    {
        qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
        qDBusRegisterMetaType<Objects>();
        m_bus.registerVirtualObject(u"/"_s, this);
        m_bus.registerService(u"org.bluez"_s);
    }
    ~Service() override { QDBusConnection::disconnectFromBus(u"service"_s); }
    Q_DISABLE_COPY_MOVE(Service)

    bool isOn = false;

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (!m_answersAsBluez)
            return connection.send(message.createReply(u"who?"_s));
        const QMap<QString, QVariantMap> adapter{
            {u"org.bluez.Adapter1"_s, {{u"Powered"_s, isOn}, {u"Modalias"_s, m_modalias}}}};
        const Objects objects{{QDBusObjectPath(u"/org/bluez/hci0"_s), adapter}};
        return connection.send(message.createReply(QVariant::fromValue(objects)));
    }

private:
    bool m_answersAsBluez;
    QString m_modalias;
    QDBusConnection m_bus;
};

VardaCheck checkOf(const QList<VardaCheck> &checks, Subject subject)
{
    return checks.value(int(subject));
}

} // namespace

/** Between a program and the system's Bluetooth. Each case needs a process of its own. */
class TestDoctorBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("VARDA_RFKILL", {}); }
    void noBackEnd();
    void noBus();
    void notStarted();
    void forbidden();
    void oldService();
    void unknownVersion();
    void noBluetoothService();
    void replayInATrace();

private:
    void examine();

    QList<VardaCheck> m_checks;
    VardaCheck m_fault;
};

void TestDoctorBus::examine()
{
    VardaComputer computer;
    VardaDoctor *const doctor = VardaDoctor::examine(computer);
    connect(doctor, &VardaJob::finished, this, [=, this] { m_fault = doctor->fault(); });
    JobSpy spy(doctor);
    ENDS_WELL(spy);
    m_checks = spy.value.value<QList<VardaCheck>>();
    QCOMPARE(m_checks.size(), 19);
    QCOMPARE(m_fault.state, State::Fault);
    QCOMPARE(m_fault.error, VardaJob::NoBluetooth);
    QVERIFY(!m_fault.remedy.isEmpty());
}

void TestDoctorBus::noBackEnd()
{
    hasBackEnd = false;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    examine();
    QCOMPARE(m_fault.subject, Subject::QtBluetooth);
    QCOMPARE(m_fault.reason, Reason::NotSupported);
    QCOMPARE(checkOf(m_checks, Subject::Bus).state, State::Skipped);
}

void TestDoctorBus::noBus()
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    examine();
    QCOMPARE(m_fault.subject, Subject::Bus);
    QCOMPARE(m_fault.reason, Reason::ServiceGone);
    QCOMPARE(checkOf(m_checks, Subject::QtBluetooth).state, State::Ok);
}

/** To look must not start the service. */
void TestDoctorBus::notStarted()
{
    const Bus bus;
    const QString started = bus.folder() + u"/started"_s;
    QFile file(bus.folder() + u"/org.bluez.service"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[D-BUS Service]\nName=org.bluez\nExec=/usr/bin/touch " + started.toLocal8Bit()
               + "\n");
    file.close();
    QDBusConnection other = QDBusConnection::connectToBus(
        qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"), u"other"_s);
    other.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                              u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
    examine();
    QCOMPARE(m_fault.subject, Subject::BluetoothService);
    QCOMPARE(m_fault.reason, Reason::ServiceGone);
    QVERIFY(!QFile::exists(started));
    // But it could be started.
    other.send(QDBusMessage::createMethodCall(u"org.bluez"_s, u"/"_s, u"org.example"_s, u"Any"_s));
    QTRY_VERIFY(QFile::exists(started));
}

void TestDoctorBus::forbidden()
{
    const Bus bus(R"(<policy context="default"><deny send_destination="org.bluez"/></policy>)");
    const Service service;
    examine();
    QCOMPARE(m_fault.subject, Subject::Permission);
    QCOMPARE(m_fault.reason, Reason::PermissionDenied);
    QCOMPARE(checkOf(m_checks, Subject::Bus).state, State::Ok);
}

void TestDoctorBus::oldService()
{
    const Bus bus;
    const Service service(true, u"usb:v1D6Bp0246d0529"_s);
    examine();
    QCOMPARE(m_fault.subject, Subject::ServiceVersion);
    QCOMPARE(m_fault.reason, Reason::NotSupported);
    QCOMPARE(m_fault.text, u"BlueZ 5.41 is too old"_s);
}

/** What cannot be found out is no fault. */
void TestDoctorBus::unknownVersion()
{
    const Bus bus;
    const Service service(true, u"usb:v1234p0246d0529"_s); // another's number
    examine();
    QCOMPARE(checkOf(m_checks, Subject::ServiceVersion).state, State::Unknown);
    QCOMPARE(m_fault.subject, Subject::Power);
    QCOMPARE(m_fault.reason, Reason::AdapterOff);
}

void TestDoctorBus::noBluetoothService()
{
    const Bus bus;
    const Service service(false);
    examine();
    QCOMPARE(m_fault.subject, Subject::BluetoothService);
    QCOMPARE(m_fault.reason, Reason::ServiceGone);
}

/** A trace of it says so, lest somebody takes it for that of a computer. */
void TestDoctorBus::replayInATrace()
{
    const Bus bus;
    Service service(true, u"varda:replay"_s);
    service.isOn = true;
    QByteArray text;
    QBuffer trace(&text);
    QVERIFY(trace.open(QIODevice::WriteOnly));
    VardaComputer computer;
    computer.setTrace(&trace);
    computer.readOwner();
    QTRY_VERIFY(text.contains(R"("name":"replay")"));
}

QTEST_GUILESS_MAIN(TestDoctorBus)
#include "tst_doctorbus.moc"
