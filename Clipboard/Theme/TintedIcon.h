#pragma once

#include "Theme.h"

#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace Clipboard {

/// One of the program's own drawings in a colour and size of choice.
struct TintedIcon
{
    QLatin1String name; // of the drawing, without extension
    int size = 16;      // logical pixels
    QColor color = Theme::text2;
    qreal stroke = 1.75;          // on the 24 × 24 grid of the drawings
    QColor ground = Theme::panel; // what shows through cut-out parts
};

/// The drawing at that many device pixels a logical pixel. Kept in a bounded cache; null for a name that does not
/// exist.
[[nodiscard]] QPixmap tintedPixmap(const TintedIcon& icon, qreal devicePixelRatio);

/// Paints the drawing centred in `rect`.
void drawIcon(QPainter& painter, const QRectF& rect, const TintedIcon& icon);

} // namespace Clipboard
