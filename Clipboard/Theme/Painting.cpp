#include "Painting.h"

#include "SmallShapes.h"
#include "Theme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace Clipboard::Painting {

void innerLine(QPainter& painter, const QRectF& rect, qreal radius, const QColor& line)
{
    if (SmallShapes::paint(painter, rect, radius, line, SmallShapes::Part::line))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    painter.restore();
}

void roundedFill(QPainter& painter, const QRectF& rect, qreal radius, const QColor& fill, const QColor& line)
{
    if (!SmallShapes::paint(painter, rect, radius, fill, SmallShapes::Part::inside)) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(rect, radius, radius);
        painter.restore();
    }
    if (line.isValid())
        innerLine(painter, rect, radius, line);
}

void focusRing(QPainter& painter, const QRectF& control, qreal radius)
{
    constexpr qreal middle = Theme::ringOutset - Theme::ringWidth / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::accent, Theme::ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(control.adjusted(-middle, -middle, middle, middle), radius + middle, radius + middle);
    painter.restore();
}

qreal textLine(QPainter& painter, const QRectF& line, const Fonts::Style& style, const QColor& color,
               const QString& text, Qt::Alignment horizontal)
{
    QString shown = text;
    qreal width = Fonts::width(style, text);
    if (width > line.width()) {
        shown = QFontMetricsF(Fonts::font(style, text)).elidedText(text, Qt::ElideRight, line.width());
        width = Fonts::width(style, shown);
    }
    qreal x = line.left();
    if (horizontal & Qt::AlignRight)
        x = line.right() - width;
    else if (horizontal & Qt::AlignHCenter)
        x += (line.width() - width) / 2;
    const qreal top = line.top() + (line.height() - style.lineHeight) / 2;
    glyphs(painter, {x, top, width, line.height()}, style, color, shown);
    return width;
}

void glyphs(QPainter& painter, const QRectF& line, const Fonts::Style& style, const QColor& color, const QString& text,
            Qt::LayoutDirection direction)
{
    painter.save();
    painter.setFont(Fonts::font(style, text));
    painter.setPen(color);
    painter.setLayoutDirection(direction); // else the window's, not the text's
    painter.drawText(QPointF(line.left(), line.top() + Fonts::baseline(style)), text);
    painter.restore();
}

QColor blended(const QColor& over, const QColor& ground)
{
    const auto mix = [&](float a, float b) { return a * over.alphaF() + b * (1 - over.alphaF()); };
    return QColor::fromRgbF(mix(over.redF(), ground.redF()), mix(over.greenF(), ground.greenF()),
                            mix(over.blueF(), ground.blueF()));
}

} // namespace Clipboard::Painting
