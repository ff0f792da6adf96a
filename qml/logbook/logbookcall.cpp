// SPDX-License-Identifier: MIT
#include "logbookcall.h"

void LogbookCall::finish(const QVariant &value, const LogbookError &error)
{
    if (!error)
        m_value = value;
    m_error = error;
    m_isFinished = true;
    Q_EMIT finished(this);
}
