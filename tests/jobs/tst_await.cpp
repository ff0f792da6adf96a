// SPDX-License-Identifier: MIT
#ifndef Q_MOC_RUN // that of Qt 6.4 cannot read it
#    include <coroutine>
#endif
#include <memory>
#include <optional>

#include <varda/vardaawait.h>
#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

/** A coroutine that starts at once and goes with this object, if it has not gone before. */
class Task
{
public:
    struct promise_type { // NOLINT(readability-identifier-naming) the language asks for this name
        Task get_return_object()
        {
            return Task(std::coroutine_handle<promise_type>::from_promise(*this));
        }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        void return_void() { }
        void unhandled_exception() { std::terminate(); }
    };

    explicit Task(std::coroutine_handle<promise_type> handle) : m_handle(handle) { }
    Task(Task &&other) noexcept : m_handle(std::exchange(other.m_handle, {})) { }
    Task(const Task &) = delete;
    Task &operator=(const Task &) = delete;
    ~Task() { destroy(); }

    void destroy()
    {
        if (auto handle = std::exchange(m_handle, {}))
            handle.destroy();
    }
    [[nodiscard]] bool isDone() const { return m_handle && m_handle.done(); }

private:
    std::coroutine_handle<promise_type> m_handle;
};

/** What came of it: the error, or -1 for a job that is gone. */
Task wait(VardaReply<QString> *job, QList<int> &ends, QString &owner)
{
    const auto *const ended = co_await varda::done(job);
    ends << (ended ? int(ended->error()) : -1);
    if (ended)
        owner = ended->result();
}

Task waitForTwo(VardaComputer &computer, QStringList &seen)
{
    const auto *const owner = co_await varda::done(computer.readOwner());
    seen << owner->result();
    const auto *const clock = co_await varda::done(computer.readClock());
    seen << QString::number(clock->result());
    co_await varda::done(computer.disconnectFromComputer());
    seen << u"gone"_s;
}

} // namespace

/** Coroutines that wait for jobs: resumed once, on each way to end. */
class TestAwait : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_computer = std::make_unique<VardaComputer>();
        m_ends.clear();
        m_owner.clear();
    }
    void oneAfterTheOther();
    void eachWayToEnd_data();
    void eachWayToEnd();
    void destroyedWhileItWaits();
    void finishedBefore();
    void computerDeletedByTheCoroutine();

private:
    std::unique_ptr<VardaComputer> m_computer;
    QList<int> m_ends;
    QString m_owner;
};

void TestAwait::oneAfterTheOther()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","clock":1000)"));
    QStringList seen;
    const Task task = waitForTwo(*m_computer, seen);
    QTRY_VERIFY(task.isDone());
    QCOMPARE(seen, (QStringList{u"Ada"_s, u"1000"_s, u"gone"_s}));
}

void TestAwait::eachWayToEnd_data()
{
    QTest::addColumn<QString>("deed");
    QTest::addColumn<int>("end");
    QTest::newRow("answer") << u"answer"_s << int(VardaJob::NoError);
    QTest::newRow("cancel") << u"cancel"_s << int(VardaJob::Cancelled);
    QTest::newRow("abort") << u"abort"_s << int(VardaJob::Cancelled);
    QTest::newRow("computer") << u"computer"_s << int(VardaJob::Cancelled);
    QTest::newRow("disconnect") << u"disconnect"_s << int(VardaJob::Cancelled);
    QTest::newRow("delete") << u"delete"_s << -1;
}

void TestAwait::eachWayToEnd()
{
    QFETCH(const QString, deed);
    QFETCH(const int, end);
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    auto *const job = m_computer->readOwner();
    const Task task = wait(job, m_ends, m_owner);
    QTRY_COMPARE(job->state(), VardaJob::Connecting);
    if (deed == "cancel"_L1)
        job->cancel();
    else if (deed == "abort"_L1)
        job->abort();
    else if (deed == "computer"_L1)
        m_computer.reset();
    else if (deed == "disconnect"_L1)
        m_computer->disconnectFromComputer();
    else if (deed == "delete"_L1)
        delete job;
    QCOMPARE(m_ends.size(), deed == "delete"_L1 ? 1 : 0);
    QTRY_VERIFY(task.isDone());
    QCOMPARE(m_ends, QList<int>{end});
    QCOMPARE(m_owner, deed == "answer"_L1 ? u"Ada"_s : QString());
}

void TestAwait::destroyedWhileItWaits()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    auto *const job = m_computer->readOwner();
    JobSpy spy(job);
    Task task = wait(job, m_ends, m_owner);
    task.destroy();
    ENDS_WELL(spy);
    QTRY_VERIFY(!spy.job);
    QVERIFY(m_ends.isEmpty());
}

void TestAwait::finishedBefore()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    auto *const job = m_computer->readOwner();
    job->setAutoDelete(false);
    JobSpy spy(job);
    ENDS_WELL(spy);
    const Task task = wait(job, m_ends, m_owner);
    QVERIFY(task.isDone());
    QCOMPARE(m_owner, u"Ada"_s);
    delete job;
    QCOMPARE(m_ends.size(), 1);
}

void TestAwait::computerDeletedByTheCoroutine()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    const auto waitAndDelete = [](std::unique_ptr<VardaComputer> &computer,
                                  QString &owner) -> Task {
        const auto *const ended = co_await varda::done(computer->readOwner());
        owner = ended->result();
        computer.reset();
    };
    JobSpy *later = nullptr;
    const Task task = waitAndDelete(m_computer, m_owner);
    later = new JobSpy(m_computer->readClock());
    QTRY_VERIFY(task.isDone());
    QCOMPARE(m_owner, u"Ada"_s);
    QVERIFY(later->wait());
    QCOMPARE(later->reason, VardaJob::Reason::ComputerDeleted);
    delete later;
}

QTEST_MAIN(TestAwait)
#include "tst_await.moc"
