#include "RecognitionPicture.h"

#include <cmath>

namespace Clipboard {

namespace {

// Time and memory of the recognition grow with the pixels; a 4K screenshot, doubled, has 33 million of them and takes
// a few seconds and 350 MB. What has more is scaled down to that.
constexpr qint64 maxPixels = qint64{7680} * 4320;

// Letters on a screen are 9 to 14 pixels high, those that the recognizer has learnt from two to three times that.
// Doubled, even captions of 9 pixels read without a fault; letters of 80 and more read a little worse.
constexpr int enlargement = 2;

constexpr int middleGrey = 127;

/// Whether what can be seen of the picture is light on average.
bool isLight(const QImage& pixels)
{
    qint64 light = 0;
    qint64 cover = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            light += qint64{qGray(line[x])} * qAlpha(line[x]);
            cover += qAlpha(line[x]);
        }
    }
    return light > middleGrey * cover;
}

/// Light letters that were copied without their ground would vanish on white: the ground is what contrasts.
QImage flattened(QImage picture)
{
    picture.convertTo(QImage::Format_ARGB32);
    const int ground = isLight(picture) ? 0 : 255;
    QImage flat(picture.size(), QImage::Format_Grayscale8);
    if (flat.isNull())
        return flat;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        uchar* to = flat.scanLine(y);
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(from[x]);
            to[x] = uchar((qGray(from[x]) * alpha + ground * (255 - alpha)) / 255);
        }
    }
    return flat;
}

bool isDark(const QImage& grey)
{
    qint64 light = 0;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar* line = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            light += line[x];
    }
    return light < qint64{middleGrey} * grey.width() * grey.height();
}

QSize recognitionSize(QSize size)
{
    const qint64 pixels = qint64{size.width()} * size.height();
    if (pixels * enlargement * enlargement <= maxPixels)
        return size * enlargement;
    if (pixels <= maxPixels)
        return size;
    const double factor = std::sqrt(double(maxPixels) / double(pixels));
    return QSize(int(size.width() * factor), int(size.height() * factor)).expandedTo({1, 1});
}

} // namespace

QImage recognitionPicture(QImage picture)
{
    if (picture.isNull())
        return {};
    if (picture.hasAlphaChannel())
        picture = flattened(std::move(picture));
    else
        picture.convertTo(QImage::Format_Grayscale8);
    // The recognizer finds light text too, but only after it has tried to read it as dark: that takes half as long
    // again.
    if (isDark(picture))
        picture.invertPixels();
    const QSize size = recognitionSize(picture.size());
    if (size != picture.size())
        picture = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    picture.convertTo(QImage::Format_Grayscale8);
    return picture;
}

} // namespace Clipboard
