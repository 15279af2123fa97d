#include "SmartActionSymbols.h"

#include <QLatin1String>

#include <algorithm>
#include <iterator>

namespace Clipboard::SmartActionSymbols {

namespace {

struct Row
{
    const char* key;
    const char* value;
};

constexpr Row symbolsByLabel[] = {
    {"Clean whitespace", "scissors"},
    {"Pretty-print JSON", "curlybraces"},
    {"Minify JSON", "arrow.down.right.and.arrow.up.left"},
    {"Decode Base64", "lock.open"},
    {"URL-decode", "percent"},
    {"Convert to date", "calendar"},
    {"Decode JWT payload", "key"},
    {"Slugify", "link"},
    {"QR code", "qrcode"},
    {"Open link", "arrow.up.right.square"},
    {"Copy as Markdown", "chevron.left.forwardslash.chevron.right"},
    {"Copy domain", "globe"},
    {"Strip trackers", "shield.lefthalf.filled"},
    {"Copy RGB", "paintpalette"},
    {"Copy HSL", "drop"},
    {"Copy SwiftUI Color", "swift"},
    {"Format", "wand.and.stars"},
    {"Copy fenced code", "chevron.left.forwardslash.chevron.right"},
    {"Minify", "arrow.down.right.and.arrow.up.left"},
    {"Escape as string literal", "quote.opening"},
    {"Copy text (OCR)", "text.viewfinder"},
    {"Save to Desktop", "square.and.arrow.down"},
    {"Copy filename", "textformat.abc"},
    {"Copy path", "folder"},
    {"Copy shell-escaped path", "terminal"},
    {"Reveal in Finder", "magnifyingglass"},
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
