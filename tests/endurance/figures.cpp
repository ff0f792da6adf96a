// SPDX-License-Identifier: MIT
#include "figures.h"

#include <QtCore/qdir.h>
#include <QtCore/qfile.h>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

// Qt's hooks for tools that watch it; these two places are where it tells of each QObject.
Q_CORE_EXPORT extern quintptr qtHookData[];

namespace {

constexpr int kAddObject = 3;
constexpr int kRemoveObject = 4;

std::atomic<qint64> objects = 0;

void added(QObject *)
{
    ++objects;
}

void removed(QObject *)
{
    --objects;
}

qint64 residentNow()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QFile::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

double megabytes(qint64 bytes)
{
    return double(bytes) / 1e6;
}

} // namespace

void countObjects()
{
    qtHookData[kAddObject] = quintptr(&added);
    qtHookData[kRemoveObject] = quintptr(&removed);
}

Figures figures()
{
    const qint64 descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                   .entryList(QDir::AllEntries | QDir::NoDotAndDotDot
                                              | QDir::System)
                                   .size();
    return {objects, descriptors, qint64(::mallinfo2().uordblks), residentNow()};
}

qint64 peakResident()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}

void print(const char *what, const Figures &figures)
{
    std::printf("%-28s %6lld objects %4lld descriptors %8.2f MB heap %8.2f MB resident\n", what,
                figures.objects, figures.descriptors, megabytes(figures.heap),
                megabytes(figures.resident));
    std::fflush(stdout);
}
