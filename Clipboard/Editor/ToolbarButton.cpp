#include "ToolbarButton.h"

#include "Accessibility.h"

#include <QKeyEvent>

namespace Clipboard {

ToolbarButton::ToolbarButton(const QString& name, qreal cornerRadius, QWidget* parent)
    : DrawnButton(cornerRadius, parent)
{
    setFocusPolicy(Qt::TabFocus); // the ring is the keyboard's: a click leaves the focus with the canvas
    setText(name);
    setAccessibleName(name);
}

void ToolbarButton::setIsChoice()
{
    setCheckable(true);
    Accessibility::setRole(this, QAccessible::RadioButton);
}

ToolbarButton::Look ToolbarButton::look() const
{
    if (!isEnabled())
        return {{}, {}, Theme::textDisabled, Theme::textDisabled};
    if (isChecked())
        return {Theme::rowSel, Theme::rowSelLine, Theme::text, Theme::text};
    if (isDown())
        return {Theme::controlPress, {}, Theme::text, Theme::text};
    if (isHovered())
        return {Theme::control, {}, Theme::text, Theme::text};
    return {{}, {}, Theme::text2, Theme::text2};
}

QRect ToolbarButton::tipAnchor() const
{
    const QWidget* toolbar = parentWidget();
    QRect anchor = controlRectIn(window());
    anchor.setTop(toolbar->mapTo(window(), QPoint()).y());
    anchor.setHeight(toolbar->height());
    return anchor;
}

void ToolbarButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return click();
    DrawnButton::keyPressEvent(event);
}

} // namespace Clipboard
