// SPDX-License-Identifier: MIT
#include <QtCore/qcoreapplication.h>
#include <QtCore/qpointer.h>
#include <QtCore/qtranslator.h>

#include <memory>
#include <optional>

#include <varda/blescanner.h>
#include <varda/vardasession.h>

#include "discoverytimeout.h"
#include "linktest.h"

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
#    if QT_CONFIG(permissions)
#        define HAS_PERMISSIONS
#        include <QtCore/qpermissions.h>
#    endif
#endif

using namespace Qt::StringLiterals;

#ifdef HAS_PERMISSIONS

namespace {

/** The platform's permission system, with somebody who decides. */
struct Platform {
    Qt::PermissionStatus status = Qt::PermissionStatus::Granted;
    int checks = 0;
    int requests = 0;
    std::optional<QBluetoothPermission> checked;
    std::optional<QBluetoothPermission> requested;
    QPointer<const QObject> context;
    bool hasContext = false;
    std::function<void(Qt::PermissionStatus)> answer;
} platform;

} // namespace

// The program's own definitions come before those of Qt Core, which on Linux always grants.

Qt::PermissionStatus QCoreApplication::checkPermission(const QPermission &permission)
{
    ++platform.checks;
    platform.checked = permission.value<QBluetoothPermission>();
    return platform.status;
}

void QCoreApplication::requestPermission(const QPermission &permission,
                                         QtPrivate::QSlotObjectBase *slotObj,
                                         const QObject *context)
{
    ++platform.requests;
    platform.requested = permission.value<QBluetoothPermission>();
    platform.context = context;
    const std::shared_ptr<QtPrivate::QSlotObjectBase> slot(
        slotObj, [](QtPrivate::QSlotObjectBase *object) { object->destroyIfLastRef(); });
    platform.answer = [slot, permission](Qt::PermissionStatus status) {
        if (!platform.context)
            return;
        QPermission answered = permission;
        answered.m_status = status;
        void *arguments[] = {nullptr, &answered};
        slot->call(const_cast<QObject *>(platform.context.data()), arguments);
    };
}

#endif

namespace {

/** Notes what is to be translated in the scanner's context, and translates it. */
class Translator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return qstrcmp(context, "BleScanner") == 0 ? u"<"_s + QString::fromUtf8(source) + u">"_s
                                                   : QString();
    }
};

const auto kRefused = u"scanError Autorisation Bluetooth refusée."_s;
const auto kDenied = u"scanError Autorisation Bluetooth refusée. Activez-la dans Réglages Système "
                     "› Confidentialité et sécurité › Bluetooth."_s;

} // namespace

class TestPermission : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
#ifdef HAS_PERMISSIONS
    void granted();
    void undeterminedThenGranted();
    void undeterminedThenRefused_data();
    void undeterminedThenRefused();
    void denied();
    void translated();
    void scannerGoneBeforeTheAnswer();
    void askedEachTime();
    void session();
#else
    void noPermissionSystem();
#endif
};

void TestPermission::init()
{
    DiscoveryTimeout::replaceBy(200);
#ifdef HAS_PERMISSIONS
    platform = {};
#endif
    LOAD(Simulator::loadDevice(""));
}

#ifdef HAS_PERMISSIONS

void TestPermission::granted()
{
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(3);
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(platform.checks, 1);
    QCOMPARE(platform.requests, 0);
    QCOMPARE(platform.checked->communicationModes(), QBluetoothPermission::Access);
    QCOMPARE(DiscoveryTimeout::asked(), 3000);
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s,
                                           u"found Varda 00:AA:01:01:00:01 -60"_s, u"devices 1"_s,
                                           u"scanning false"_s, u"scanFinished"_s}));
}

void TestPermission::undeterminedThenGranted()
{
    platform.status = Qt::PermissionStatus::Undetermined;
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(7);
    QCOMPARE(m_log.entries(), QStringList(u"devices 0"_s));
    QCOMPARE(platform.requests, 1);
    QCOMPARE(platform.requested->communicationModes(), QBluetoothPermission::Access);
    QCOMPARE(platform.context.data(), &scanner);
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
    QVERIFY(!scanner.isScanning());

    platform.answer(Qt::PermissionStatus::Granted);
    QCOMPARE(DiscoveryTimeout::asked(), 7000);
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s,
                                           u"found Varda 00:AA:01:01:00:01 -60"_s, u"devices 1"_s,
                                           u"scanning false"_s, u"scanFinished"_s}));
}

void TestPermission::undeterminedThenRefused_data()
{
    QTest::addColumn<Qt::PermissionStatus>("answer");
    QTest::newRow("denied") << Qt::PermissionStatus::Denied;
    QTest::newRow("undetermined") << Qt::PermissionStatus::Undetermined;
}

void TestPermission::undeterminedThenRefused()
{
    QFETCH(const Qt::PermissionStatus, answer);

    platform.status = Qt::PermissionStatus::Undetermined;
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    platform.answer(answer);
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, kRefused}));
    QVERIFY(!scanner.isScanning());
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

void TestPermission::denied()
{
    platform.status = Qt::PermissionStatus::Denied;
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, kDenied}));
    QVERIFY(!scanner.isScanning());
    QCOMPARE(platform.requests, 0);
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

void TestPermission::translated()
{
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    platform.status = Qt::PermissionStatus::Undetermined;
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    platform.answer(Qt::PermissionStatus::Denied);
    platform.status = Qt::PermissionStatus::Denied;
    scanner.startScan();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(m_log.entries(),
             QStringList({u"devices 0"_s, u"scanError <Autorisation Bluetooth refusée.>"_s,
                          u"devices 0"_s,
                          u"scanError <Autorisation Bluetooth refusée. Activez-la dans Réglages "
                          "Système › Confidentialité et sécurité › Bluetooth.>"_s}));
}

void TestPermission::scannerGoneBeforeTheAnswer()
{
    platform.status = Qt::PermissionStatus::Undetermined;
    {
        BleScanner scanner;
        m_log.watch(&scanner);
        scanner.startScan();
        QCOMPARE(platform.context.data(), &scanner);
    }
    platform.answer(Qt::PermissionStatus::Granted);
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList(u"devices 0"_s));
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

void TestPermission::askedEachTime()
{
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"scanning true"_s));
    platform.status = Qt::PermissionStatus::Denied;
    m_log.take();
    scanner.startScan();
    QCOMPARE(platform.checks, 2);
    QCOMPARE(m_log.entries(),
             QStringList({u"scanning false"_s, u"scanFinished"_s, u"devices 0"_s, kDenied}));
}

void TestPermission::session()
{
    platform.status = Qt::PermissionStatus::Denied;
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s,
                          u"message Scan error: Autorisation Bluetooth refusée. Activez-la dans "
                          "Réglages Système › Confidentialité et sécurité › Bluetooth."_s,
                          u"Error"_s}));
}

#else

void TestPermission::noPermissionSystem()
{
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    // At once, without a question. What comes next is the system's.
    QCOMPARE(m_log.entries().mid(0, 2), QStringList({u"devices 0"_s, u"scanning true"_s}));
    QVERIFY(m_log.await(u"scanFinished"_s));
}

#endif

QTEST_GUILESS_MAIN(TestPermission)
#include "tst_permission.moc"
