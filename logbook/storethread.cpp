// SPDX-License-Identifier: MIT
#include "storethread_p.h"

#include <QtCore/qcoreapplication.h>

StoreThread::StoreThread() : m_worker(new QObject), m_desk(new QObject)
{
    m_thread.setObjectName(QStringLiteral("varda-logbook"));
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

StoreThread::~StoreThread()
{
    m_closing = true;
    QMetaObject::invokeMethod(
        m_worker,
        [this] {
            m_database.reset();
            m_thread.quit();
        },
        Qt::QueuedConnection);
    m_thread.wait();
    // With the application, if its event loop has ended.
    if (auto *const application = QCoreApplication::instance();
        application && application->thread() == m_desk->thread())
        m_desk->setParent(application);
    // After what has been posted to it, which a deletion by itself could overtake.
    QMetaObject::invokeMethod(
        m_desk, [desk = m_desk] { desk->deleteLater(); }, Qt::QueuedConnection);
}

void StoreThread::run(std::function<void()> work, std::function<void(const LogbookError &)> failed,
                      const QObject *context, std::function<void()> ended)
{
    // Asked on its own thread only.
    const QPointer<const QObject> alive(context);
    const bool always = !context;
    auto deliver = [alive, always, ended = std::move(ended)] {
        if (always || alive)
            ended();
    };
    QMetaObject::invokeMethod(
        m_worker,
        [this, work = std::move(work), failed = std::move(failed),
         deliver = std::move(deliver)]() mutable {
            try {
                if (m_closing)
                    throw logbookError(LogbookError::Closed);
                work();
            } catch (const LogbookError &error) {
                failed(error);
            }
            // Moved: what the caller's function holds must not be deleted on this thread.
            QMetaObject::invokeMethod(m_desk, std::move(deliver), Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void StoreThread::post(std::function<void(Database &)> work, const QObject *context,
                       const std::function<void(const LogbookError &)> &done)
{
    post<bool>(
        [work = std::move(work)](Database &database) {
            work(database);
            return true;
        },
        context,
        [done](const LogbookResult<bool> &result) {
            if (done)
                done(result.error);
        });
}

void StoreThread::open(const QString &file, std::chrono::milliseconds busyLimit,
                       const QObject *context,
                       const std::function<void(const LogbookError &)> &done)
{
    auto result = std::make_shared<LogbookError>();
    run(
        [this, file, busyLimit] {
            m_database.reset();
            m_database = std::make_unique<Database>(file, busyLimit);
        },
        [result](const LogbookError &error) { *result = error; }, context,
        [result, done] {
            if (done)
                done(*result);
        });
}

void StoreThread::close(const QObject *context,
                        const std::function<void(const LogbookError &)> &done)
{
    auto result = std::make_shared<LogbookError>();
    run([this] { m_database.reset(); }, [result](const LogbookError &error) { *result = error; },
        context,
        [result, done] {
            if (done)
                done(*result);
        });
}

Database &StoreThread::opened()
{
    if (!m_database)
        throw logbookError(LogbookError::NotOpen);
    return *m_database;
}
