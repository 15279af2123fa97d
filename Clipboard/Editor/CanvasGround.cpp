#include "CanvasGround.h"

#include "CanvasViewport.h"
#include "Shadow.h"
#include "Theme.h"

#include <QImage>
#include <QPainter>

namespace Clipboard {

namespace {

constexpr QColor ground = Theme::rgb(0x232427);
constexpr QColor pictureOutline = Theme::rgb(0x000000, 153);
constexpr Shadow pictureShadow{8, 32, 0.40, 0};

// From here on single pixels are looked at, not blurred into each other.
constexpr double crispFrom = 2;

} // namespace

void CanvasGround::paint(QPainter& painter, const QRect& part)
{
    painter.fillRect(part, ground);
}

void CanvasGround::paintPicture(QPainter& painter, const QImage& image, const CanvasViewport& viewport,
                                const QRect& part)
{
    const QRectF picture = viewport.pictureRect();
    const bool isInside = picture.contains(part);
    if (!isInside || image.hasAlphaChannel())
        paint(painter, part);
    if (!isInside) {
        pictureShadow.paint(painter, picture);
        painter.setPen(QPen(pictureOutline, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(picture.adjusted(-0.5, -0.5, 0.5, 0.5));
    }
    // Only the pixels of the image that are seen in this part: the painter scales no more than it must.
    const QSizeF pixel(picture.width() / image.width(), picture.height() / image.height());
    const QRectF seen = picture & part;
    if (seen.isEmpty())
        return;
    const QRect source = QRectF((seen.x() - picture.x()) / pixel.width(), (seen.y() - picture.y()) / pixel.height(),
                                seen.width() / pixel.width(), seen.height() / pixel.height())
                             .toAlignedRect()
                             .adjusted(-1, -1, 1, 1)
                             .intersected(image.rect());
    const QRectF target(picture.x() + source.x() * pixel.width(), picture.y() + source.y() * pixel.height(),
                        source.width() * pixel.width(), source.height() * pixel.height());
    const double devicePixels = pixel.width() * painter.device()->devicePixelRatioF();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, devicePixels > 1 && devicePixels < crispFrom);
    painter.drawImage(target, image, source);
}

} // namespace Clipboard
