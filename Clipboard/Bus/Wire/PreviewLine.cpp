#include "PreviewLine.h"

#include <algorithm>

namespace Clipboard::Bus {

namespace {

constexpr qsizetype longestPreview = 200;
// What they take at most, and some white space between them.
constexpr qsizetype previewedBytes = 1024;

/// C0, DEL and C1; what overrides or isolates directions; and line and paragraph separators.
bool isActedOn(QChar character)
{
    const char16_t code = character.unicode();
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x200E || code == 0x200F || code == 0x061C ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString previewLine(const ClipboardCore::Utf8Text& text)
{
    // What is cut through at the end becomes a sign of its own, and is cut off with the rest.
    const bool isCut = text.byteCount() > previewedBytes;
    QString line = QString::fromUtf8(text.utf8().first(std::min(text.byteCount(), previewedBytes))).simplified();
    if (isCut && line.endsWith(QChar::ReplacementCharacter))
        line.chop(1);
    if (line.size() > longestPreview) {
        line.truncate(longestPreview);
        if (line.back().isHighSurrogate())
            line.chop(1);
    }
    return withoutControls(line);
}

QString withoutControls(QStringView text)
{
    QString shown = text.toString();
    std::ranges::replace_if(
        shown, [](QChar c) { return c != u'\n' && c != u'\t' && isActedOn(c); }, QChar(QChar::ReplacementCharacter));
    return shown;
}

} // namespace Clipboard::Bus
