#include "DrawnButton.h"

#include "Accessibility.h"
#include "HoverTip.h"
#include "Painting.h"

#include <QEvent>
#include <QHoverEvent>
#include <QPainter>
#include <QTimerEvent>

namespace Clipboard {

namespace {

constexpr QMargins ringMargins{Theme::ringOutset, Theme::ringOutset, Theme::ringOutset, Theme::ringOutset};

} // namespace

DrawnButton::DrawnButton(qreal cornerRadius, QWidget* parent)
    : QAbstractButton(parent)
    , m_cornerRadius(cornerRadius)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
    Accessibility::setRole(this, QAccessible::Button);
}

DrawnButton::~DrawnButton()
{
    delete m_tip; // belongs to the window, which may outlive the button
}

void DrawnButton::setRing(bool ring)
{
    Accessibility::setFocused(this, ring);
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
    case QEvent::MouseButtonPress:
        hideTip();
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
    if (hovered && !m_tipText.isEmpty())
        m_tipTimer.start(Theme::tooltipDelay, this);
    else
        hideTip();
    update();
}

void DrawnButton::setTip(const QString& text, const QString& keys)
{
    m_tipText = text;
    m_tipKeys = keys;
    Accessibility::setShortcut(this, keys);
}

void DrawnButton::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_tipTimer.timerId())
        return QAbstractButton::timerEvent(event);
    m_tipTimer.stop();
    m_tip = new HoverTip(m_tipText, m_tipKeys, tipAnchor(), window());
}

void DrawnButton::hideTip()
{
    m_tipTimer.stop();
    if (m_tip == nullptr)
        return;
    m_tip->hide();
    m_tip->deleteLater(); // the window may be in the middle of hiding all that is in it
    m_tip.clear();
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
    const Look colors = look();
    if (colors.fill.isValid())
        Painting::roundedFill(painter, control, m_cornerRadius, colors.fill);
    if (colors.line.isValid())
        Painting::innerLine(painter, control, m_cornerRadius, colors.line);
    paintContent(painter, control, colors);
    if (hasRing())
        Painting::focusRing(painter, control, m_cornerRadius);
}

QColor DrawnButton::controlFill() const
{
    if (isDown())
        return Theme::controlPress;
    return isHovered() ? Theme::controlHover : Theme::control;
}

bool DrawnButton::hitButton(const QPoint& position) const
{
    return controlRect().contains(position);
}

} // namespace Clipboard
