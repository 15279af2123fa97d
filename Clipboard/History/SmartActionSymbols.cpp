#include "SmartActionSymbols.h"

#include <QLatin1String>
#include <QtGlobal>

#include <algorithm>
#include <iterator>

namespace Clipboard::SmartActionSymbols {

namespace {

struct Row
{
    const char* key;
    const char* value;
};

// The labels are translated where they are drawn.
constexpr Row symbolsByLabel[] = {
    {QT_TRANSLATE_NOOP("SmartActions", "Clean whitespace"), "scissors"},
    {QT_TRANSLATE_NOOP("SmartActions", "Pretty-print JSON"), "curlybraces"},
    {QT_TRANSLATE_NOOP("SmartActions", "Minify JSON"), "arrow.down.right.and.arrow.up.left"},
    {QT_TRANSLATE_NOOP("SmartActions", "Decode Base64"), "lock.open"},
    {QT_TRANSLATE_NOOP("SmartActions", "URL-decode"), "percent"},
    {QT_TRANSLATE_NOOP("SmartActions", "Convert to date"), "calendar"},
    {QT_TRANSLATE_NOOP("SmartActions", "Decode JWT payload"), "key"},
    {QT_TRANSLATE_NOOP("SmartActions", "Slugify"), "link"},
    {QT_TRANSLATE_NOOP("SmartActions", "QR code"), "qrcode"},
    {QT_TRANSLATE_NOOP("SmartActions", "Open link"), "arrow.up.right.square"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy as Markdown"), "chevron.left.forwardslash.chevron.right"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy domain"), "globe"},
    {QT_TRANSLATE_NOOP("SmartActions", "Strip trackers"), "shield.lefthalf.filled"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy RGB"), "paintpalette"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy HSL"), "drop"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy SwiftUI Color"), "swift"},
    {QT_TRANSLATE_NOOP("SmartActions", "Format"), "wand.and.stars"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy fenced code"), "chevron.left.forwardslash.chevron.right"},
    {QT_TRANSLATE_NOOP("SmartActions", "Minify"), "arrow.down.right.and.arrow.up.left"},
    {QT_TRANSLATE_NOOP("SmartActions", "Escape as string literal"), "quote.opening"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy text (OCR)"), "text.viewfinder"},
    {QT_TRANSLATE_NOOP("SmartActions", "Save to Desktop"), "square.and.arrow.down"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy filename"), "textformat.abc"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy path"), "folder"},
    {QT_TRANSLATE_NOOP("SmartActions", "Copy shell-escaped path"), "terminal"},
    {QT_TRANSLATE_NOOP("SmartActions", "Reveal in Finder"), "magnifyingglass"},
};

constexpr Row drawingsBySymbol[] = {
    {"arrow.down.right.and.arrow.up.left", "compress"},
    {"arrow.up.right.square", "open"},
    {"calendar", "calendar"},
    {"chevron.left.forwardslash.chevron.right", "code"},
    {"curlybraces", "braces"},
    {"doc.on.doc", "copy"},
    {"drop", "drop"},
    {"folder", "folder"},
    {"globe", "globe"},
    {"key", "key"},
    {"link", "link"},
    {"lock.open", "unlock"},
    {"magnifyingglass", "search"},
    {"paintpalette", "palette"},
    {"percent", "percent"},
    {"qrcode", "qr"},
    {"quote.opening", "quote"},
    {"scissors", "scissors"},
    {"shield.lefthalf.filled", "shield"},
    {"square.and.arrow.down", "save"},
    {"swift", "colorcode"},
    {"terminal", "terminal"},
    {"text.viewfinder", "textscan"},
    {"textformat.abc", "abc"},
    {"wand.and.stars", "wand"},
};

template <std::size_t size>
QString find(const Row (&table)[size], const QString& key, const char* otherwise)
{
    const auto* row =
        std::ranges::find_if(table, [&key](const Row& candidate) { return key == QLatin1String(candidate.key); });
    return QLatin1String(row == std::end(table) ? otherwise : row->value);
}

} // namespace

QString name(const QString& label)
{
    return find(symbolsByLabel, label, "doc.on.doc");
}

QString iconName(const QString& label)
{
    return find(drawingsBySymbol, name(label), "copy");
}

} // namespace Clipboard::SmartActionSymbols
