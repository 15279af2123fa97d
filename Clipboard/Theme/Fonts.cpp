#include "Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

#include <map>
#include <tuple>

namespace Clipboard::Fonts {

namespace {

struct Face
{
    QFont font;
    QFontMetricsF metrics;
    int baseline;
};

Face makeFace(const Style& style)
{
    const auto role = style.fixedWidth ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont;
    QFont font(QFontDatabase::systemFont(role).families());
    font.setPixelSize(style.pixelSize);
    font.setWeight(style.weight);
    if (style.fixedWidth) {
        font.setStyleHint(QFont::Monospace);
        // Qt turns ligatures off together with kerning only where letters are spaced by hand; a hundredth of a
        // percent is enough to say so and too little to see.
        font.setLetterSpacing(QFont::PercentageSpacing, 100.01);
    }
    const QFontMetricsF metrics(font);
    const qreal leading = style.lineHeight - metrics.ascent() - metrics.descent();
    return {font, metrics, qRound(leading / 2 + metrics.ascent())};
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

const QFont& font(const Style& style)
{
    return face(style).font;
}

qreal width(const Style& style, const QString& text)
{
    return face(style).metrics.horizontalAdvance(text);
}

int baseline(const Style& style)
{
    return face(style).baseline;
}

} // namespace Clipboard::Fonts
