#include "KeyCapButton.h"

#include "KeyCap.h"

namespace Clipboard {

KeyCapButton::KeyCapButton(const QString& keys, const QString& help, QWidget* parent)
    : DrawnButton(Theme::keyCapRadius, parent)
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

KeyCapButton::Look KeyCapButton::look() const
{
    return {}; // the cap has a ground of its own
}

void KeyCapButton::paintContent(QPainter& painter, const QRectF& control, const Look& /*look*/)
{
    KeyCap::draw(painter, control.topLeft(), text(), {controlFill(), Theme::controlLine, Theme::text2});
}

} // namespace Clipboard
