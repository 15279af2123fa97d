#pragma once

#include <QString>

namespace Clipboard {

/// What is drawn for the smart action of that label: the label itself stays the same in every language.
[[nodiscard]] QString shownActionLabel(const QString& label);

} // namespace Clipboard
