#pragma once

#include <QAccessibleWidget>

class QAbstractButton;

namespace Clipboard {

/// A widget that draws itself as assistive technologies see it: with the role and the focus that Accessibility.h was
/// told, and when it is a button with its action, check mark and shortcut.
class AccessibleElement final : public QAccessibleWidget
{
public:
    /// Where a widget carries what Accessibility.h was told of it.
    static constexpr const char* roleProperty = "accessibleRole";
    static constexpr const char* focusedProperty = "accessibleFocused";
    static constexpr const char* shortcutProperty = "accessibleShortcut";

    explicit AccessibleElement(QWidget* widget);

    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override;

private:
    [[nodiscard]] QAbstractButton* button() const;
    [[nodiscard]] QString shortcut() const;
};

} // namespace Clipboard
