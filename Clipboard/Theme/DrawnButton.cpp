#include "DrawnButton.h"

#include "Painting.h"

#include <QEvent>
#include <QHoverEvent>
#include <QPainter>

namespace Clipboard {

namespace {

constexpr QMargins ringMargins{Theme::ringOutset, Theme::ringOutset, Theme::ringOutset, Theme::ringOutset};

} // namespace

DrawnButton::DrawnButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
}

void DrawnButton::setRing(bool ring)
{
    if (m_ring == ring)
        return;
    m_ring = ring;
    update();
}

bool DrawnButton::hasRing() const
{
    return m_ring || hasFocus();
}

QRect DrawnButton::controlRect() const
{
    return rect().marginsRemoved(ringMargins);
}

void DrawnButton::setControlGeometry(const QRect& control)
{
    setGeometry(control.marginsAdded(ringMargins));
}

QRect DrawnButton::controlRectIn(const QWidget* ancestor) const
{
    return {mapTo(ancestor, controlRect().topLeft()), controlRect().size()};
}

QSize DrawnButton::sizeHint() const
{
    return controlSize().grownBy(ringMargins);
}

bool DrawnButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        setHovered(controlRect().contains(static_cast<QHoverEvent*>(event)->position().toPoint()));
        break;
    case QEvent::HoverLeave:
    case QEvent::Hide:
        setHovered(false);
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        update();
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

void DrawnButton::setHovered(bool hovered)
{
    if (m_hovered == hovered)
        return;
    m_hovered = hovered;
    update();
}

void DrawnButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange)
        update();
    QAbstractButton::changeEvent(event);
}

void DrawnButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF control(controlRect());
    paintControl(painter, control);
    if (hasRing())
        Painting::focusRing(painter, control, cornerRadius());
}

bool DrawnButton::hitButton(const QPoint& position) const
{
    return controlRect().contains(position);
}

} // namespace Clipboard
