// SPDX-License-Identifier: MIT
#include "wholefile_p.h"

#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qsavefile.h>
#include <QtCore/qurl.h>

using namespace Qt::StringLiterals;

namespace {

/** Empty for what is on another machine. */
QString pathOf(const QUrl &url)
{
    if (url.isLocalFile())
        return url.toLocalFile();
    return url.scheme().isEmpty() ? url.path() : QString();
}

QString elsewhere(const QUrl &url)
{
    return u"\"%1\" is no file of this computer"_s.arg(url.toDisplayString());
}

} // namespace

QString WholeFile::nameOf(const QUrl &url)
{
    return QFileInfo(pathOf(url)).fileName();
}

WholeFile::Content WholeFile::read(const QUrl &url, qint64 largest)
{
    const QString path = pathOf(url);
    if (path.isEmpty())
        return {{}, elsewhere(url)};
    QFile file(path);
    const auto failed = [&](const QString &why) {
        return Content{{}, u"\"%1\" cannot be read: %2"_s.arg(path, why)};
    };
    if (!file.open(QIODevice::ReadOnly))
        return failed(file.errorString());
    const QByteArray bytes = file.read(largest);
    if (file.error() != QFileDevice::NoError)
        return failed(file.errorString());
    return file.atEnd() ? Content{bytes, {}} : failed(u"it is too large"_s);
}

QString WholeFile::write(const QUrl &url, const QByteArray &bytes)
{
    const QString path = pathOf(url);
    if (path.isEmpty())
        return elsewhere(url);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return u"\"%1\" cannot be written: %2"_s.arg(path, file.errorString());
}
