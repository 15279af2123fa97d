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

// At twice the usual density the tile of a row takes 12 KB, a chip of the filter 40, a whole panel some 250.
constexpr int mostBytes = 64 * 1024;
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

} // namespace

bool SmallShapes::paint(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color, Part part)
{
    const std::optional<QSize> pixels = wholePixels(painter, rect);
    if (!pixels || pixels->isEmpty() || qint64{pixels->width()} * pixels->height() > mostBytes / int{sizeof(QRgb)})
        return false;
    static QCache<Shape, QPixmap> cache(cachedBytes);
    const Shape shape{*pixels, painter.device()->devicePixelRatio(), radius, color.rgba(), part};
    if (const QPixmap* cached = cache.object(shape)) {
        painter.drawPixmap(rect.topLeft(), *cached);
        return true;
    }
    const QPixmap pixmap = made(shape);
    painter.drawPixmap(rect.topLeft(), pixmap);
    cache.insert(shape, new QPixmap(pixmap), bytesOf(*pixels)); // the cache owns it
    return true;
}

} // namespace Clipboard
