// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

class QImage;

/** Compares what the app looks like with pictures of how it is to look. */
namespace Pictures {

/**
 * What is wrong, or nothing. The picture and what differs are then in VARDA_PICTURES_FAILED.
 * If VARDA_UPDATE_GOLDEN is set, the picture becomes the one to compare with.
 */
QString compare(const QImage &picture, const QString &name);

} // namespace Pictures
