#pragma once

class QCoreApplication;

namespace Clipboard {

/// Loads the wording for this platform, whatever the locale: source texts name other keys and programs ("⌘V").
void installTranslations(QCoreApplication& application);

} // namespace Clipboard
