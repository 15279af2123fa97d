#pragma once

#include "Fonts.h"

#include <QColor>
#include <QRectF>

class QPainter;

/// The few shapes of which every surface is drawn.
namespace Clipboard::Painting {

/// Fills a rounded rectangle; a `line` colour that is valid draws one pixel inside its edge.
void roundedFill(QPainter& painter, const QRectF& rect, qreal radius, const QColor& fill, const QColor& line = {});

/// One pixel inside the edge of a rounded rectangle.
void innerLine(QPainter& painter, const QRectF& rect, qreal radius, const QColor& line);

/// The mark of keyboard focus around `control`, whose own corners have `radius`.
void focusRing(QPainter& painter, const QRectF& control, qreal radius);

/// One line of text from the left edge of `line`, whose height is the style's line height or more (the line box is
/// then centred). Elided at the end when it is wider than `line`; right-to-left text stays in reading order. The width
/// of what is drawn.
qreal textLine(QPainter& painter, const QRectF& line, const Fonts::Style& style, const QColor& color,
               const QString& text, Qt::Alignment horizontal = Qt::AlignLeft);

/// The same of a text that is known to fit, from the left edge and the top of `line`. `direction` is that of the
/// paragraph: a link reads from left to right whatever it is made of.
void glyphs(QPainter& painter, const QRectF& line, const Fonts::Style& style, const QColor& color, const QString& text,
            Qt::LayoutDirection direction = Qt::LayoutDirectionAuto);

/// The colour that `over` gives on an opaque ground.
[[nodiscard]] QColor blended(const QColor& over, const QColor& ground);

} // namespace Clipboard::Painting
