#pragma once

#include <QByteArray>
#include <QString>

/// The form in which texts are compared when case and diacritics do not matter, without locale.
///
/// Canonical decomposition; diacritics dropped; full case folding (Unicode, chapter 3.13); canonical composition, so
/// that a Hangul syllable or a voiced kana is one unit and no part of it is found on its own. Diacritics are the
/// nonspacing marks that sit on a letter without making it another one, told by their combining class: accents and
/// overlays, Hebrew and Arabic points, Thai and Lao tones. Nuktas, viramas, kana voicing marks and vowel signs stay.
namespace ClipboardCore::TextFolding {

/// `utf8` folded; shares its bytes when nothing changes. Any thread. Linear; every run of kept marks is composed in
/// pieces of at most 32, so that a text made of marks stays linear too.
[[nodiscard]] QByteArray folded(const QByteArray& utf8);

/// `text` without its diacritics, letter case as it was. For short texts: long runs of marks are sorted as a whole.
[[nodiscard]] QString withoutDiacritics(const QString& text);

/// True when folding changes nothing but the case of ASCII letters. Such a text can be searched as it is.
[[nodiscard]] bool onlyFoldsASCII(QByteArrayView utf8);

} // namespace ClipboardCore::TextFolding
