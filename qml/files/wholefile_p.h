// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

class QUrl;

/** Files that QML names by a URL or a path. */
namespace WholeFile {

struct Content {
    QByteArray bytes;
    QString error; ///< one line for people; empty if it was read
};

/** The file's name without its folders. */
QString nameOf(const QUrl &url);
Content read(const QUrl &url, qint64 largest);
/** Replaces the file by one with these bytes, or leaves it as it is and says why. */
QString write(const QUrl &url, const QByteArray &bytes);

} // namespace WholeFile
