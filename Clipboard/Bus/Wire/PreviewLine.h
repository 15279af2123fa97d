#pragma once

#include "Support/Utf8Text.h"

#include <QString>
#include <QStringView>

/// What is shown of an entry where anything may read it: a terminal acts on some characters instead of showing them.
namespace Clipboard::Bus {

/// The beginning of a text on one line: white space becomes single blanks, what is not shown becomes U+FFFD. At most
/// 200 characters; looks at no more of the text than those may take.
[[nodiscard]] QString previewLine(const ClipboardCore::Utf8Text& text);

/// The text without anything that a terminal would act on: controls but the line feed and the tab, and what turns the
/// direction of writing, become U+FFFD.
[[nodiscard]] QString withoutControls(QStringView text);

} // namespace Clipboard::Bus
