// SPDX-License-Identifier: MIT
#include "pictures.h"

#include <QtCore/qdir.h>
#include <QtGui/qimage.h>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// Of 255. Another processor rounds blended colours differently by one or two. Nobody sees less than
// this, and all colours of the theme that are meant to differ are further apart.
constexpr int kChannel = 6;
// An edge may be blended into the pixel beside it. What has moved by two is not where it was.
constexpr int kBeside = 1;
// Less than the thinnest symbol or letter has, more than the tips of some round ones.
constexpr int kPixels = 12;

bool isNear(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) <= kChannel
           && std::abs(qGreen(one) - qGreen(other)) <= kChannel
           && std::abs(qBlue(one) - qBlue(other)) <= kChannel;
}

bool isAround(const QImage &image, int x, int y, QRgb colour)
{
    for (int row = std::max(y - kBeside, 0); row <= std::min(y + kBeside, image.height() - 1);
         ++row) {
        for (int column = std::max(x - kBeside, 0);
             column <= std::min(x + kBeside, image.width() - 1); ++column) {
            if (isNear(image.pixel(column, row), colour))
                return true;
        }
    }
    return false;
}

bool saveSmall(const QImage &picture, const QString &file)
{
    constexpr int kSmallest = 0;
    return picture.convertToFormat(QImage::Format_RGB888).save(file, "PNG", kSmallest);
}

/** Pale, with what differs in red; how many pixels that are. */
int markDifferences(const QImage &picture, const QImage &wanted, QImage &marked)
{
    int count = 0;
    marked = QImage(wanted.size(), QImage::Format_RGB32);
    for (int y = 0; y < wanted.height(); ++y) {
        for (int x = 0; x < wanted.width(); ++x) {
            const bool isSame = isAround(wanted, x, y, picture.pixel(x, y))
                                && isAround(picture, x, y, wanted.pixel(x, y));
            const int pale = 192 + qGray(wanted.pixel(x, y)) / 4;
            marked.setPixel(x, y, isSame ? qRgb(pale, pale, pale) : qRgb(255, 0, 0));
            count += isSame ? 0 : 1;
        }
    }
    return count;
}

} // namespace

QString Pictures::compare(const QImage &picture, const QString &name)
{
    const QString reference = u"" QUICK_TEST_SOURCE_DIR "/pictures/"_s + name + u".png"_s;
    if (qEnvironmentVariableIsSet("VARDA_UPDATE_GOLDEN"))
        return saveSmall(picture, reference) ? QString() : reference + u" cannot be written"_s;
    const QImage wanted(reference);
    const QDir folder(qEnvironmentVariable("VARDA_PICTURES_FAILED", QDir::tempPath()));
    const QString file = folder.filePath(name + u".png"_s);
    QImage marked;
    const int count = picture.size() == wanted.size() ? markDifferences(picture, wanted, marked)
                                                      : -1;
    if (count >= 0 && count <= kPixels)
        return {};
    folder.mkpath(u"."_s);
    picture.save(file);
    if (count < 0)
        return u"%1 is not as large as %2"_s.arg(file, reference);
    const QString difference = folder.filePath(name + u"-difference.png"_s);
    marked.save(difference);
    return u"%1 differs from %2 in %3 pixels: see %4"_s.arg(file, reference)
        .arg(count)
        .arg(difference);
}
