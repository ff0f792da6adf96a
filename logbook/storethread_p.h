// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>
#include <QtCore/qthread.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include <varda/logbookresult.h>

#include "database_p.h"

/**
 * The thread that SQLite runs on. Work is done there in the order in which it was posted; its end
 * comes back to the thread that made this, from the event loop, also after this is gone.
 */
class StoreThread
{
public:
    StoreThread();
    /** Waits for the work that runs; the rest ends with Closed. */
    ~StoreThread();
    Q_DISABLE_COPY_MOVE(StoreThread)

    void open(const QString &file, std::chrono::milliseconds busyLimit, const QObject *context,
              const std::function<void(const LogbookError &)> &done);
    void close(const QObject *context, const std::function<void(const LogbookError &)> &done);

    /** Work that gives a T; it throws a LogbookError. */
    template <typename T>
    void post(std::function<T(Database &)> work, const QObject *context,
              std::function<void(const LogbookResult<T> &)> callback)
    {
        auto result = std::make_shared<LogbookResult<T>>();
        run([this, result, work = std::move(work)] { result->value = work(opened()); },
            [result](const LogbookError &error) { result->error = error; }, context,
            [result, callback = std::move(callback)] {
                if (callback)
                    callback(*result);
            });
    }
    /** Work that gives nothing. */
    void post(std::function<void(Database &)> work, const QObject *context,
              const std::function<void(const LogbookError &)> &done);

private:
    void run(std::function<void()> work, std::function<void(const LogbookError &)> failed,
             const QObject *context, std::function<void()> ended);
    [[nodiscard]] Database &opened();

    QThread m_thread;
    QObject *m_worker; ///< lives on the thread
    QObject *m_desk;   ///< lives where this was made, until all ends have been delivered
    std::unique_ptr<Database> m_database;
    std::atomic_bool m_closing = false;
};
