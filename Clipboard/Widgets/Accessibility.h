#pragma once

#include <QAccessible>
#include <QString>

class QWidget;

/// What assistive technologies are told of elements that draw themselves. In the panel the keyboard stays with a text
/// field while the focus moves over rows and controls, so the focus is told here too. Free while nobody listens.
namespace Clipboard::Accessibility {

/// Says what a widget is. A dialog is modal; list items and radio buttons tell whether they are selected. To be called
/// by the widget's constructor, before anybody can have asked.
void setRole(QWidget* widget, QAccessible::Role role);

/// Says that the element has the focus of its window, or no longer has it, while the keyboard is elsewhere.
void setFocused(QWidget* widget, bool focused);

/// Has a notice read out. Its name is the text; call it once the notice is on the screen.
void announce(QWidget* notice);

/// The key that does what the button does, as it is drawn on key caps.
void setShortcut(QWidget* button, const QString& keys);

/// Drawn keys in words: "Ctrl+⌫" is "Ctrl+Backspace".
[[nodiscard]] QString spokenKeys(const QString& keys);

} // namespace Clipboard::Accessibility
