// SPDX-License-Identifier: MIT
#include "row.h"

#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

void Row::print() const
{
    const QJsonObject row{{u"name"_s, QString::fromUtf8(name)},
                          {u"value"_s, value},
                          {u"reference"_s, reference ? QJsonValue(*reference) : QJsonValue()},
                          {u"unit"_s, QString::fromUtf8(unit)}};
    std::printf("%s\n", QJsonDocument(row).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

double quantile(QList<double> values, double part)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at(qsizetype(part * double(values.size() - 1)));
}

qint64 threadTime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}
