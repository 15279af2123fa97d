#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// Rounded rectangles as small as tiles, chips and keys, of which a panel is full. On a screen of high density it takes
/// many times as long to work out their edges as to paint their pixels, so those are kept.
namespace Clipboard::SmallShapes {

enum class Part { inside, line };

/// Paints the rectangle's inside, or a line of one pixel within its edge, as QPainter::drawRoundedRect() would, to the
/// last bit. False, and nothing is painted, when it is large, does not stand on whole pixels, or has only one of
/// the device's for each logical pixel.
[[nodiscard]] bool paint(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color, Part part);

} // namespace Clipboard::SmallShapes
