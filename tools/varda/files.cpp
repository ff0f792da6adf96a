// SPDX-License-Identifier: MIT
#include "files.h"

#include "failure.h"

#include <QtCore/qfile.h>
#include <QtCore/qsavefile.h>

using namespace Qt::StringLiterals;

namespace {

// Far more than a computer holds.
constexpr qint64 kLargest = 64 << 20;

} // namespace

QByteArray readFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Failure{
            ExitCode::UsageError, u"\"%1\" cannot be read: %2"_s.arg(name, file.errorString()), {}};
    }
    const QByteArray bytes = file.read(kLargest);
    if (file.error() != QFileDevice::NoError || !file.atEnd()) {
        throw Failure{ExitCode::UsageError,
                      u"\"%1\" cannot be read: %2"_s.arg(name, file.atEnd() ? file.errorString()
                                                                            : u"it is too large"_s),
                      {}};
    }
    return bytes;
}

void writeFile(const QString &name, const QByteArray &bytes)
{
    QSaveFile file(name);
    // A device or a pipe can only be written to directly.
    file.setDirectWriteFallback(true);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
                         && file.commit();
    if (!written) {
        throw Failure{ExitCode::JobFailed,
                      u"\"%1\" cannot be written: %2"_s.arg(name, file.errorString()),
                      {}};
    }
}
