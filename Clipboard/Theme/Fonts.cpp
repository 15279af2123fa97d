#include "Fonts.h"

#include <QCache>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>
#include <map>
#include <memory>
#include <tuple>

namespace Clipboard::Fonts {

namespace {

// Characters of texts whose widths are kept: those of a panel and a sheet, several times over.
constexpr qsizetype knownCharacters = 16'384;

struct Face
{
    QFont font;
    QFontMetricsF metrics;
    QFont shapingFont; // the same but for a fixed-width face
    QFontMetricsF shapingMetrics;
    qreal baseline;
};

// From the first combining mark on: what comes before are letters and signs that each stand alone.
constexpr char16_t firstShaped = 0x0300;
// Dashes, quotation marks, and the ellipsis of a text that was cut, do as well.
constexpr char16_t firstPunctuation = 0x2010;
constexpr char16_t lastPunctuation = 0x2027;

bool wantsShaping(QStringView text)
{
    return std::ranges::any_of(text, [](QChar character) {
        const char16_t code = character.unicode();
        return code >= firstShaped && (code < firstPunctuation || code > lastPunctuation);
    });
}

Face makeFace(const Style& style)
{
    const auto role = style.fixedWidth ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont;
    QFont font(QFontDatabase::systemFont(role).families());
    font.setPixelSize(style.pixelSize);
    font.setWeight(style.weight);
    if (style.fixedWidth)
        font.setStyleHint(QFont::Monospace);
    const QFont shapingFont = font;
    if (style.fixedWidth)
        font.setStyleStrategy(QFont::PreferNoShaping); // programmers' faces draw "->" as an arrow
    const QFontMetricsF metrics(font);
    const qreal leading = style.lineHeight - metrics.ascent() - metrics.descent();
    return {font, metrics, shapingFont, QFontMetricsF(shapingFont), qRound(leading + 2 * metrics.ascent()) / 2.0};
}

const Face& faceOf(const Style& style)
{
    static std::map<std::tuple<int, int, int, bool>, Face> faces;
    const std::tuple key(style.pixelSize, style.lineHeight, static_cast<int>(style.weight), style.fixedWidth);
    auto found = faces.find(key);
    if (found == faces.end())
        found = faces.emplace(key, makeFace(style)).first;
    return found->second;
}

} // namespace

const QFont& font(const Style& style, QStringView text)
{
    return wantsShaping(text) ? faceOf(style).shapingFont : faceOf(style).font;
}

qreal width(const Style& style, const QString& text)
{
    // To shape a text takes as long as to paint it, and nearly all are those of the frame before.
    static QCache<std::pair<const Face*, QString>, qreal> widths(knownCharacters);
    const Face& face = faceOf(style);
    const std::pair key(&face, text);
    if (const qreal* known = widths.object(key))
        return *known;
    const qreal width = (wantsShaping(text) ? face.shapingMetrics : face.metrics).horizontalAdvance(text);
    widths.insert(key, std::make_unique<qreal>(width).release(), std::max<qsizetype>(text.size(), 1));
    return width;
}

qreal baseline(const Style& style)
{
    return faceOf(style).baseline;
}

} // namespace Clipboard::Fonts
