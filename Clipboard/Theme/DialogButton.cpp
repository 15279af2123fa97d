#include "DialogButton.h"

#include "Accessibility.h"
#include "KeyCap.h"
#include "Painting.h"

namespace Clipboard {

namespace {

constexpr int radius = 8;
constexpr int capInset = 9;

} // namespace

DialogButton::DialogButton(const QString& text, QString keys, bool destructive, QWidget* parent)
    : DrawnButton(parent)
    , m_keys(std::move(keys))
    , m_destructive(destructive)
{
    setText(text);
    setFocusPolicy(Qt::StrongFocus);
    Accessibility::setShortcut(this, m_keys);
}

QSize DialogButton::controlSize() const
{
    const QSizeF cap = KeyCap::size(m_keys);
    const qreal width = Fonts::width(Fonts::primaryButton, text()) + 2 * (cap.width() + 2 * capInset);
    return {qRound(width), height};
}

qreal DialogButton::cornerRadius() const
{
    return radius;
}

void DialogButton::paintControl(QPainter& painter, const QRectF& control)
{
    if (m_destructive) {
        const bool lit = isHovered() || isDown();
        Painting::roundedFill(painter, control, radius, lit ? Theme::dangerFillHover : Theme::dangerFill);
    } else {
        const QColor hover = isHovered() ? Theme::controlHover : Theme::control;
        Painting::roundedFill(painter, control, radius, isDown() ? Theme::controlPress : hover, Theme::controlLine);
    }
    Painting::textLine(painter, control, m_destructive ? Fonts::primaryButton : Fonts::button,
                       m_destructive ? Theme::onDanger : Theme::text, text(), Qt::AlignHCenter);
    const QSizeF cap = KeyCap::size(m_keys);
    const QPointF capTopLeft(control.right() - capInset - cap.width(), control.center().y() - cap.height() / 2);
    KeyCap::draw(painter, capTopLeft, m_keys, m_destructive ? KeyCap::danger : KeyCap::normal);
}

} // namespace Clipboard
