#include "SmallShapes.h"

#include <QCache>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>

#include <cmath>
#include <optional>

namespace Clipboard {

namespace {

using SmallShapes::Part;

constexpr int mostBytes = 64 * 1024;
// At twice the usual density the tile of a row takes 5 KB, the ends of a chip 7, all that are ever in a panel some 200.
constexpr int cachedBytes = 512 * 1024;

struct Shape
{
    QSize pixels;
    qreal ratio; // device pixels a logical one
    qreal radius;
    QRgb color;
    Part part;

    bool operator==(const Shape&) const = default;
};

size_t qHash(const Shape& shape, size_t seed)
{
    return qHashMulti(seed, shape.pixels.width(), shape.pixels.height(), shape.ratio, shape.radius, shape.color,
                      static_cast<int>(shape.part));
}

bool isWhole(qreal value)
{
    return value == std::floor(value);
}

int bytesOf(QSize pixels)
{
    return pixels.width() * pixels.height() * int{sizeof(QRgb)};
}

/// What of the rectangle decides its pixels; nothing when its place does as well, or how the painter mixes colours.
std::optional<QSize> wholePixels(const QPainter& painter, const QRectF& rect)
{
    const QTransform& transform = painter.deviceTransform();
    const qreal ratio = painter.device()->devicePixelRatio();
    // Where a logical pixel is one of the device a picture is mixed with its ground by other steps, which round
    // otherwise; there are a quarter as many pixels there, and time enough.
    if (ratio <= 1 || transform.type() > QTransform::TxScale || transform.m11() != ratio || transform.m22() != ratio ||
        painter.opacity() != 1 || painter.paintEngine()->type() != QPaintEngine::Raster)
        return std::nullopt;
    const QRectF place = transform.mapRect(rect);
    if (!isWhole(place.x()) || !isWhole(place.y()) || !isWhole(place.width()) || !isWhole(place.height()))
        return std::nullopt;
    return place.size().toSize();
}

/// How many of the shape's columns at either end are its own: those between them are all the same.
int endOf(const Shape& shape)
{
    return static_cast<int>(std::ceil((shape.radius + 1) * shape.ratio));
}

QPixmap made(const Shape& shape)
{
    QPixmap pixmap(shape.pixels);
    pixmap.setDevicePixelRatio(shape.ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect(QPointF(), pixmap.deviceIndependentSize());
    const QColor color = QColor::fromRgba(shape.color);
    if (shape.part == Part::line) {
        painter.setPen(QPen(color, 1));
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), shape.radius - 0.5, shape.radius - 0.5);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(rect, shape.radius, shape.radius);
    }
    return pixmap;
}

/// A shape whose middle was cut down to one column, at the width that it has.
void paintWithMiddle(QPainter& painter, const QRectF& rect, const QPixmap& pixmap, const Shape& shape)
{
    const int end = endOf(shape);
    const qreal width = end / shape.ratio;
    const int height = shape.pixels.height();
    painter.drawPixmap(QRectF(rect.left(), rect.top(), width, rect.height()), pixmap, QRectF(0, 0, end, height));
    painter.drawPixmap(rect.adjusted(width, 0, -width, 0), pixmap, QRectF(end, 0, 1, height));
    painter.drawPixmap(QRectF(rect.right() - width, rect.top(), width, rect.height()), pixmap,
                       QRectF(end + 1, 0, end, height));
}

} // namespace

bool SmallShapes::paint(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color, Part part)
{
    const std::optional<QSize> pixels = wholePixels(painter, rect);
    if (!pixels || pixels->isEmpty() || bytesOf(*pixels) > mostBytes)
        return false;
    static QCache<Shape, QPixmap> cache(cachedBytes);
    Shape shape{*pixels, painter.device()->devicePixelRatio(), radius, color.rgba(), part};
    const int narrow = 2 * endOf(shape) + 1;
    const bool isWide = pixels->width() > 2 * narrow;
    if (isWide)
        shape.pixels.setWidth(narrow);
    const QPixmap* cached = cache.object(shape);
    const QPixmap pixmap = cached != nullptr ? *cached : made(shape);
    if (cached == nullptr)
        cache.insert(shape, new QPixmap(pixmap), bytesOf(shape.pixels)); // the cache owns it
    if (isWide)
        paintWithMiddle(painter, rect, pixmap, shape);
    else
        painter.drawPixmap(rect.topLeft(), pixmap);
    return true;
}

} // namespace Clipboard
