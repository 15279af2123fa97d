#pragma once

#include <QIODevice>
#include <QStringList>

#include <optional>

namespace Clipboard {

/// The lines of text in the picture that is open for reading, in reading order, trimmed and without empty ones; no line
/// when there is no text or no language data is installed. Nothing when the picture cannot be read or passes the bounds
/// of PictureReading. `uiLanguages` are the user's, as `QLocale::uiLanguages()` names them. Takes seconds on a large
/// picture.
[[nodiscard]] std::optional<QStringList> recognizeText(QIODevice& picture, const QStringList& uiLanguages);

} // namespace Clipboard
