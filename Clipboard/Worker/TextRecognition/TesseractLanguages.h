#pragma once

#include <QByteArray>
#include <QStringList>

namespace Clipboard {

/// What Tesseract is asked to read, in its notation ("deu+eng"): the languages of the user, as
/// `QLocale::uiLanguages()` names them and in that order, and English behind them. Each costs memory and time, so only
/// the first few count. Tesseract passes over those whose data is not installed.
/// Its names are those of https://tesseract-ocr.github.io/tessdoc/Data-Files-in-different-versions.html
[[nodiscard]] QByteArray tesseractLanguages(const QStringList& uiLanguages);

} // namespace Clipboard
