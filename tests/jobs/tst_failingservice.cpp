// SPDX-License-Identifier: MIT
#include <QtCore/qscopeguard.h>
#include <QtCore/qthread.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>
#include <QtDBus/qdbusvirtualobject.h>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** A service in BlueZ's place that answers all that it is asked with the same. */
class Service : public QDBusVirtualObject
{
public:
    explicit Service(QString error) : m_error(std::move(error)) { }

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        return connection.send(m_error.isEmpty() ? message.createReply(u"nonsense"_s)
                                                 : message.createErrorReply(m_error, u"no"_s));
    }

private:
    QString m_error;
};

} // namespace

/** What the system's bus reports when the Bluetooth service cannot do what it is asked. */
class TestFailingService : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void error_data();
    void error();
};

void TestFailingService::error_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<VardaJob::Reason>("reason");
    const QString bus = u"org.freedesktop.DBus.Error."_s;
    QTest::newRow("not allowed") << QString(bus + u"AccessDenied"_s) << Reason::PermissionDenied;
    QTest::newRow("not there") << QString(bus + u"ServiceUnknown"_s) << Reason::ServiceGone;
    QTest::newRow("cannot be started")
        << QString(bus + u"Spawn.ChildExited"_s) << Reason::ServiceGone;
    QTest::newRow("no such unit") << u"org.freedesktop.systemd1.NoSuchUnit"_s
                                  << Reason::ServiceGone;
    QTest::newRow("no reply") << QString(bus + u"NoReply"_s) << Reason::ServiceFrozen;
    QTest::newRow("time-out") << QString(bus + u"Timeout"_s) << Reason::ServiceFrozen;
    QTest::newRow("timed out") << QString(bus + u"TimedOut"_s) << Reason::ServiceFrozen;
    // Then it is the search that fails, for Qt asks the same.
    QTest::newRow("another") << u"org.bluez.Error.Failed"_s << Reason::NoAdapter;
    QTest::newRow("nonsense") << QString() << Reason::NoAdapter;
}

void TestFailingService::error()
{
    QFETCH(const QString, error);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadScenario("{}"));
    const auto endDaemon = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s,
        u"EndDaemon"_s);
    QCOMPARE(QDBusConnection::systemBus().call(endDaemon).type(), QDBusMessage::ReplyMessage);
    QDBusConnection bus = QDBusConnection::connectToBus(
        qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"), u"service"_s);
    // In a thread of its own, since Qt waits for it. What the registration adds goes there with it.
    QThread thread;
    auto *const service = new Service(error);
    QVERIFY(bus.registerVirtualObject(u"/"_s, service, QDBusConnection::SubPath));
    service->moveToThread(&thread);
    QObject::connect(&thread, &QThread::finished, service, &QObject::deleteLater);
    thread.start();
    const auto end = qScopeGuard([&] {
        bus.unregisterService(u"org.bluez"_s);
        bus.unregisterObject(u"/"_s, QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(u"service"_s);
        thread.quit();
        thread.wait();
    });
    QVERIFY(bus.registerService(u"org.bluez"_s));

    VardaComputer computer;
    JobSpy spy(computer.readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, reason);
}

QTEST_MAIN(TestFailingService)
#include "tst_failingservice.moc"
