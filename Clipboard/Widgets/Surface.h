#pragma once

#include "Shadow.h"

#include <QColor>

class QWidget;

namespace Clipboard {

/// The ground of a floating window: a rounded card in a transparent margin that holds its shadow. Where windows are not
/// composited there is neither margin nor shadow, and the corners are square.
class Surface
{
public:
    Surface(const Shadow& shadow, const QColor& fill)
        : m_shadow(shadow)
        , m_fill(fill)
    {
    }

    void setComposited(bool composited) { m_composited = composited; }
    [[nodiscard]] bool isComposited() const { return m_composited; }

    /// What lies between the window's edge and the card's.
    [[nodiscard]] QMargins margins() const { return m_composited ? m_shadow.margins() : QMargins(); }
    [[nodiscard]] int radius() const { return m_composited ? m_shadow.radius : 0; }

    /// Paints the whole window, whose card is `card`.
    void paint(QPainter& painter, const QRectF& card) const;
    /// The outline alone, for surfaces whose content reaches their edge.
    void paintOutline(QPainter& painter, const QRectF& card) const;

    /// Makes `window` able to have a transparent margin. Call before its native window exists.
    static void prepare(QWidget* window);

private:
    Shadow m_shadow;
    QColor m_fill;
    bool m_composited = true;
};

} // namespace Clipboard
