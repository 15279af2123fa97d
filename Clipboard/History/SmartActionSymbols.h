#pragma once

#include <QString>

/// What is drawn beside the label of a smart action.
namespace Clipboard::SmartActionSymbols {

/// The symbol that stands for the action, by its untranslated label; "doc.on.doc" for a label that is not known.
[[nodiscard]] QString name(const QString& label);

/// The name of our own drawing of that symbol, as TintedIcon takes it.
[[nodiscard]] QString iconName(const QString& label);

} // namespace Clipboard::SmartActionSymbols
