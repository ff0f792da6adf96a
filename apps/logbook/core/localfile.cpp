// SPDX-License-Identifier: MIT
#include "localfile.h"

#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qsavefile.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

// No image and no layout is nearly as long, and a wrong file would fill the memory.
constexpr qint64 kLongest = 16LL * 1024 * 1024;

} // namespace

QString LocalFile::path(const QUrl &file)
{
    // The file dialog of Qt 6.4 leaves the scheme out if a name was typed.
    return file.scheme().isEmpty() ? file.path() : file.toLocalFile();
}

bool LocalFile::exists(const QUrl &file)
{
    return QFileInfo::exists(path(file));
}

QVariantMap LocalFile::read(const QUrl &file)
{
    QFile source(path(file));
    QVariantMap result{{u"name"_s, QFileInfo(source.fileName()).fileName()}};
    QString error;
    if (!source.open(QIODevice::ReadOnly))
        error = source.errorString();
    else if (source.size() > kLongest)
        error = qt_error_string(EFBIG);
    const QByteArray bytes = error.isEmpty() ? source.read(kLongest) : QByteArray();
    if (error.isEmpty() && source.error() != QFileDevice::NoError)
        error = source.errorString();
    result.insert(u"bytes"_s, bytes);
    result.insert(u"error"_s, error);
    return result;
}

QString LocalFile::write(const QUrl &file, const QVariant &contents)
{
    QSaveFile target(path(file));
    if (!target.open(QIODevice::WriteOnly))
        return target.errorString();
    target.write(contents.toByteArray());
    return target.commit() ? QString() : target.errorString();
}
