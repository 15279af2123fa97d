#include "MenuButton.h"

#include "Accessibility.h"
#include "TintedIcon.h"

namespace Clipboard {

namespace {

constexpr QSize controlMeasure{28, 24};
constexpr int signSize = 16;

} // namespace

MenuButton::MenuButton(QWidget* parent)
    : DrawnButton(Theme::buttonRadius, parent)
{
    Accessibility::setRole(this, QAccessible::ButtonMenu);
    setText(tr("Menu"));
    setAccessibleName(text());
    setTip(text(), QStringLiteral("F10"));
}

QSize MenuButton::controlSize() const
{
    return controlMeasure;
}

MenuButton::Look MenuButton::look() const
{
    if (isDown())
        return {Theme::controlPress, {}, {}, Theme::text};
    return {isHovered() ? Theme::controlHover : QColor(), {}, {}, isHovered() ? Theme::text : Theme::text2};
}

void MenuButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    drawIcon(painter, control, {QLatin1String("menu"), signSize, look.sign});
}

} // namespace Clipboard
