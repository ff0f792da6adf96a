// SPDX-License-Identifier: MIT
#pragma once

#include <varda/logbookstore.h>

#include "storethread_p.h"

class LogbookStorePrivate
{
public:
    [[nodiscard]] static LogbookStorePrivate &of(const LogbookStore &store) { return *store.d; }

    void set(qint64 id, QLatin1StringView column, const QVariant &value, const QObject *context,
             const LogbookStore::Done &done);

    StoreThread thread;
    QString file;
    std::chrono::milliseconds busyLimit{30'000};
};
