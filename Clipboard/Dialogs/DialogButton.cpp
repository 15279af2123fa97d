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
    : DrawnButton(radius, parent)
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

DialogButton::Look DialogButton::look() const
{
    if (!m_destructive)
        return {controlFill(), Theme::controlLine, Theme::text, {}};
    const bool lit = isHovered() || isDown();
    return {lit ? Theme::dangerFillHover : Theme::dangerFill, {}, Theme::onDanger, {}};
}

void DialogButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    Painting::textLine(painter, control, m_destructive ? Fonts::primaryButton : Fonts::button, look.label, text(),
                       Qt::AlignHCenter);
    const QSizeF cap = KeyCap::size(m_keys);
    const QPointF capTopLeft(control.right() - capInset - cap.width(), control.center().y() - cap.height() / 2);
    KeyCap::draw(painter, capTopLeft, m_keys, m_destructive ? KeyCap::danger : KeyCap::normal);
}

} // namespace Clipboard
