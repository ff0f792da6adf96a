// SPDX-License-Identifier: MIT
#include "run/files.h"

#include "output/terminal.h"
#include "run/failure.h"
#include "run/interrupt.h"

#include <QtCore/qfile.h>
#include <QtCore/qsavefile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void failToWrite(const QString &name, const QString &reason)
{
    throw Failure{ExitCode::JobFailed, u"\"%1\" cannot be written: %2"_s.arg(name, reason), {}};
}

std::optional<struct stat> statusOf(const QString &name)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(name).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

bool isSpecialFile(const QString &name)
{
    const auto status = statusOf(name);
    return status && !S_ISREG(status->st_mode);
}

/** Whether it was; errno says why not. Qt forgets that if a part of it was. */
bool writeAll(int file, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto written = ::write(file, bytes.constData() + done,
                                     std::size_t(bytes.size() - done));
        if (written < 0)
            return false;
        done += written;
    }
    return true;
}

/** A pipe, a device: only there do the bytes arrive. */
void writeInto(const QString &name, const QByteArray &bytes)
{
    const int file = ::open(QFile::encodeName(name).constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    bool written = file >= 0 && writeAll(file, bytes);
    int error = errno;
    if (file >= 0 && ::close(file) != 0 && std::exchange(written, false))
        error = errno;
    if (!written && error == EINTR && Interrupt::number() != 0)
        throw Interrupt::failure();
    if (!written)
        failToWrite(name, qt_error_string(error));
}

/** What a symbolic link leads to is replaced, not the link. */
void replaceFile(const QString &name, const QByteArray &bytes)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        failToWrite(name, file.errorString());
    // Some file systems find out by fsync() that they are full.
    if (!writeAll(file.handle(), bytes) || ::fsync(file.handle()) != 0)
        failToWrite(name, qt_error_string(errno));
    if (!file.commit())
        failToWrite(name, file.errorString());
}

} // namespace

QByteArray readFile(const QString &name, qint64 largest)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Failure{
            ExitCode::UsageError, u"\"%1\" cannot be read: %2"_s.arg(name, file.errorString()), {}};
    }
    const QByteArray bytes = file.read(largest);
    if (file.error() != QFileDevice::NoError || !file.atEnd()) {
        throw Failure{ExitCode::UsageError,
                      u"\"%1\" cannot be read: %2"_s.arg(name, file.atEnd() ? file.errorString()
                                                                            : u"it is too large"_s),
                      {}};
    }
    return bytes;
}

bool isStandardOutput(const QString &name)
{
    const auto status = statusOf(name);
    struct stat output = {};
    return name == "-"_L1
           || (status && ::fstat(STDOUT_FILENO, &output) == 0 && status->st_dev == output.st_dev
               && status->st_ino == output.st_ino);
}

void writeFile(const QString &name, const QByteArray &bytes)
{
    if (isStandardOutput(name))
        printBytes(bytes);
    else if (isSpecialFile(name))
        writeInto(name, bytes);
    else
        replaceFile(name, bytes);
}
