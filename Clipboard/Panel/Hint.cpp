#include "Hint.h"

#include "Painting.h"

#include <cmath>

namespace Clipboard {

namespace {
constexpr int capGap = 6;
} // namespace

qreal Hint::paint(QPainter& painter, const QRectF& band, qreal left, const KeyCap::Look& cap, const QColor& color) const
{
    const QSizeF capSize = KeyCap::size(keys);
    KeyCap::draw(painter, {left, std::floor(band.center().y() - capSize.height() / 2)}, keys, cap);
    const qreal wordLeft = left + capSize.width() + capGap;
    const qreal wordWidth = std::ceil(Fonts::width(Fonts::caption, word));
    Painting::textLine(painter, {wordLeft, band.y(), wordWidth, band.height()}, Fonts::caption, color, word);
    return wordLeft + wordWidth;
}

} // namespace Clipboard
