// SPDX-License-Identifier: MIT
#include <QtCore/qeventloop.h>
#include <QtCore/qregularexpression.h>
#include <QtCore/qthread.h>

#include <atomic>
#include <functional>
#include <utility>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardacomputer.h>
#include <varda/vardasession.h>

#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

/** Says itself when it is done: how QThread synchronizes is hidden from the thread sanitizer. */
class Thread : public QThread
{
public:
    explicit Thread(std::function<void()> work) : m_work(std::move(work)) { }
    [[nodiscard]] bool isDone() const { return m_done; }

private:
    void run() override
    {
        m_work();
        m_done = true;
    }

    std::function<void()> m_work;
    std::atomic_bool m_done = false;
};

/** Runs @p use in a thread that owns the objects by then; they were made in another one. */
template <typename Use> void inAnotherThread(const QList<QObject *> &objects, Use use)
{
    Thread thread([&] {
        use();
        for (QObject *const object : objects)
            delete object;
    });
    for (QObject *const object : objects)
        object->moveToThread(&thread);
    thread.start();
    QTRY_VERIFY_WITH_TIMEOUT(thread.isDone(), 60'000);
    QVERIFY(thread.wait());
}

} // namespace

/** Objects that are made in one thread and used in another: what they own goes with them. */
class TestOtherThread : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void children();
    void watchdog();
    void session();
    void jobs();
};

void TestOtherThread::children()
{
    LOAD(Simulator::loadScenario("{}"));
    auto *const device = new BleDevice;
    auto *const scanner = new BleScanner;
    auto *const protocol = new VardaBleProtocol(device, BleMode::Gatt);
    const QList<QObject *> owners{device, scanner, protocol};
    QList<int> owned;
    bool together = true;
    inAnotherThread(owners, [&] {
        for (const QObject *const owner : owners) {
            const auto children = owner->findChildren<QObject *>();
            owned.append(int(owner->findChildren<QObject *>(Qt::FindDirectChildrenOnly).size()));
            for (const QObject *const child : children)
                together = together && child->thread() == QThread::currentThread();
        }
    });
    QCOMPARE(owned, QList<int>({1, 1, 2}));
    QVERIFY(together);
}

void TestOtherThread::watchdog()
{
    QTest::failOnWarning(QRegularExpression(u"from another thread|different thread"_s));
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"silent"}])"));
    auto *const device = new BleDevice;
    auto *const protocol = new VardaBleProtocol(device, BleMode::Gatt);
    bool failed = false;
    inAnotherThread({protocol, device}, [device, protocol, &failed] {
        SignalLog log;
        log.watch(device);
        connect(device, &BleDevice::servicesDiscovered, protocol,
                &VardaBleProtocol::setupCharacteristics);
        device->connectTo(knownDevice());
        failed = log.await(
            u"error Notifications activation timed out — peripheral not responding"_s);
    });
    QVERIFY(failed);
}

/** Searching, connecting and a request, with all their waits. */
void TestOtherThread::session()
{
    QTest::failOnWarning(QRegularExpression(u"from another thread|different thread"_s));
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    auto *const session = new VardaSession;
    QString owner;
    inAnotherThread({session}, [session, &owner] {
        QEventLoop loop;
        connect(session, &VardaSession::connectControllerStatus, &loop,
                [session] { session->startCommand(TidemarCommand::Owner); });
        connect(session, &VardaSession::endCommand, &loop, &QEventLoop::quit);
        session->autoConnect();
        loop.exec();
        owner = session->owner();
    });
    QCOMPARE(owner, u"Ada"_s);
}

void TestOtherThread::jobs()
{
    QTest::failOnWarning(QRegularExpression(u"from another thread|different thread"_s));
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    auto *const computer = new VardaComputer;
    QString owner;
    inAnotherThread({computer}, [computer, &owner] {
        QEventLoop loop;
        auto *const job = computer->readOwner();
        connect(job, &VardaJob::finished, &loop, [&] {
            owner = job->result();
            loop.quit();
        });
        loop.exec();
    });
    QCOMPARE(owner, u"Ada"_s);
}

QTEST_GUILESS_MAIN(TestOtherThread)
#include "tst_otherthread.moc"
