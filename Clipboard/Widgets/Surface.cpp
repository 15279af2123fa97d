#include "Surface.h"

#include "Painting.h"
#include "Theme.h"

#include <QPainter>
#include <QWidget>

namespace Clipboard {

void Surface::paint(QPainter& painter, const QRectF& card) const
{
    if (m_composited) {
        m_shadow.paint(painter, card);
        Painting::roundedFill(painter, card, m_shadow.radius, m_fill);
    } else {
        painter.fillRect(card, m_fill);
    }
    paintOutline(painter, card);
}

void Surface::paintOutline(QPainter& painter, const QRectF& card) const
{
    if (m_composited) {
        Painting::innerLine(painter, card, m_shadow.radius, Theme::outline);
        return;
    }
    painter.setPen(QPen(Theme::outline, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(card.adjusted(0.5, 0.5, -0.5, -0.5));
}

void Surface::prepare(QWidget* window)
{
    window->setAttribute(Qt::WA_TranslucentBackground);
    window->setAttribute(Qt::WA_NoSystemBackground);
}

} // namespace Clipboard
