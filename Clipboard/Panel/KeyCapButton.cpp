#include "KeyCapButton.h"

#include "KeyCap.h"

namespace Clipboard {

KeyCapButton::KeyCapButton(const QString& keys, const QString& help, QWidget* parent)
    : DrawnButton(parent)
{
    setText(keys);
    setAccessibleName(help);
    setTip(help, keys);
}

QSize KeyCapButton::controlSize() const
{
    const QSizeF cap = KeyCap::size(text());
    return {qRound(cap.width()), qRound(cap.height())};
}

qreal KeyCapButton::cornerRadius() const
{
    return Theme::keyCapRadius;
}

void KeyCapButton::paintControl(QPainter& painter, const QRectF& control)
{
    KeyCap::Look look;
    if (isHovered())
        look.fill = Theme::controlHover;
    if (isDown())
        look.fill = Theme::controlPress;
    const QSizeF cap = KeyCap::size(text());
    KeyCap::draw(painter, {control.right() - cap.width(), control.top()}, text(), look);
}

} // namespace Clipboard
