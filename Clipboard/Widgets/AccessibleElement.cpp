#include "AccessibleElement.h"

#include "Accessibility.h"

#include <QAbstractButton>
#include <QVariant>

namespace Clipboard {

AccessibleElement::AccessibleElement(QWidget* widget)
    : QAccessibleWidget(widget)
{
}

QAccessible::Role AccessibleElement::role() const
{
    return static_cast<QAccessible::Role>(object()->property(roleProperty).toInt());
}

QAbstractButton* AccessibleElement::button() const
{
    return qobject_cast<QAbstractButton*>(object());
}

QString AccessibleElement::shortcut() const
{
    return Accessibility::spokenKeys(object()->property(shortcutProperty).toString());
}

QString AccessibleElement::text(QAccessible::Text kind) const
{
    QString given = QAccessibleWidget::text(kind);
    if (!given.isEmpty())
        return given;
    if (kind == QAccessible::Name && button() != nullptr)
        return button()->text();
    if (kind == QAccessible::Description || kind == QAccessible::Accelerator)
        return shortcut();
    return given;
}

QAccessible::State AccessibleElement::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.modal = role() == QAccessible::Dialog;
    const QVariant focused = object()->property(focusedProperty);
    if (focused.isValid() && !state.disabled)
        state.focusable = true;
    if (focused.toBool())
        state.focused = true;
    if (role() == QAccessible::ListItem) {
        state.selectable = true;
        state.selected = focused.toBool();
    }
    if (const QAbstractButton* control = button()) {
        state.pressed = control->isDown();
        state.checkable = control->isCheckable();
        state.checked = control->isChecked();
        if (role() == QAccessible::RadioButton) {
            state.selectable = true;
            state.selected = control->isChecked();
        }
    }
    return state;
}

QStringList AccessibleElement::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (button() != nullptr && button()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void AccessibleElement::doAction(const QString& name)
{
    if (name != pressAction())
        return QAccessibleWidget::doAction(name);
    if (button() != nullptr && button()->isVisible())
        button()->click();
}

QStringList AccessibleElement::keyBindingsForAction(const QString& name) const
{
    if (name != pressAction() || shortcut().isEmpty())
        return QAccessibleWidget::keyBindingsForAction(name);
    return {shortcut()};
}

} // namespace Clipboard
