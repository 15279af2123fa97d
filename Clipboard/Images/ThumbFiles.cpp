#include "ThumbFiles.h"

#include "PictureReading.h"
#include "PictureTranscoder.h"
#include "Support/PrivateFolder.h"
#include "WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// The preview's width at twice the density, which nearly every screen has at most.
constexpr int longestSide = 2 * 348;

/// Only beside the pictures that ImageBlobs named: an entry may refer to a file in a folder that is not ours.
bool isStored(const QString& picture)
{
    static const QRegularExpression name(u"^[0-9a-f]{64}\\.png$"_s);
    return name.match(QFileInfo(picture).fileName()).hasMatch();
}

int longerSide(QSize size)
{
    return std::max(size.width(), size.height());
}

bool wantsSmallCopy(const QString& picture, QSize size)
{
    return longerSide(size) > longestSide && isStored(picture);
}

void store(const QString& picture, const QImage& pixels)
{
    QImage small = PictureReading::scaledDown(pixels, longestSide);
    if (small.depth() > 32)
        small.convertTo(QImage::Format_ARGB32);
    const auto png = PictureTranscoder::toPNG(small);
    if (!png)
        return;
    const QString target = ThumbFiles::path(picture);
    ClipboardCore::createPrivateFolder(QFileInfo(target).path());
    writeWhole(target, *png);
    // The picture may have been released meanwhile; whoever does that removes the picture first.
    if (!QFile::exists(picture))
        ThumbFiles::remove(picture);
}

} // namespace

QString ThumbFiles::folderIn(const QString& picturesFolder)
{
    return picturesFolder + u"/thumbnails"_s;
}

QString ThumbFiles::path(const QString& picture)
{
    const QFileInfo file(picture);
    return folderIn(file.path()) + u'/' + file.fileName();
}

QImage ThumbFiles::read(const QString& picture, int maxPixel)
{
    const bool hasCopy = wantsSmallCopy(picture, PictureReading::announcedSize(picture));
    if (hasCopy && maxPixel <= longestSide) {
        const QImage small = PictureReading::readFile(path(picture));
        if (longerSide(small.size()) == longestSide)
            return PictureReading::scaledDown(small, maxPixel);
    }
    const QImage image = PictureReading::readFile(picture, hasCopy ? std::max(maxPixel, longestSide) : maxPixel);
    if (hasCopy && (maxPixel <= longestSide || !QFile::exists(path(picture))))
        store(picture, image);
    return PictureReading::scaledDown(image, maxPixel);
}

void ThumbFiles::make(const QString& picture)
{
    if (!QFile::exists(path(picture)))
        Q_UNUSED(read(picture, longestSide))
}

void ThumbFiles::make(const QString& picture, const QImage& pixels)
{
    if (wantsSmallCopy(picture, pixels.size()))
        store(picture, pixels);
}

void ThumbFiles::remove(const QString& picture)
{
    if (isStored(picture))
        QFile::remove(path(picture));
}

} // namespace Clipboard
