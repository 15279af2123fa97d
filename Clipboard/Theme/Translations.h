#pragma once

#include <QLocale>

class QCoreApplication;

namespace Clipboard {

/// Loads the wording for this platform, whatever the locale, as source texts name other keys and programs ("⌘V"); and
/// on top of it the first of the locale's languages that there is a translation for.
void installTranslations(QCoreApplication& application, const QLocale& locale = QLocale::system());

} // namespace Clipboard
