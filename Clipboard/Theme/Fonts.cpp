#include "Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>
#include <map>
#include <tuple>

namespace Clipboard::Fonts {

namespace {

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

const Face& face(const Style& style)
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
    return wantsShaping(text) ? face(style).shapingFont : face(style).font;
}

qreal width(const Style& style, const QString& text)
{
    const Face& known = face(style);
    return (wantsShaping(text) ? known.shapingMetrics : known.metrics).horizontalAdvance(text);
}

qreal baseline(const Style& style)
{
    return face(style).baseline;
}

} // namespace Clipboard::Fonts
