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
    qreal baseline;
};

Face makeFace(const Style& style)
{
    const auto role = style.fixedWidth ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont;
    QFont font(QFontDatabase::systemFont(role).families());
    font.setPixelSize(style.pixelSize);
    font.setWeight(style.weight);
    if (style.fixedWidth) {
        font.setStyleHint(QFont::Monospace);
        // Programmers' faces draw "->" as an arrow. Scripts that cannot do without shaping are shaped all the same.
        font.setStyleStrategy(QFont::PreferNoShaping);
    }
    const QFontMetricsF metrics(font);
    const qreal leading = style.lineHeight - metrics.ascent() - metrics.descent();
    return {font, metrics, qRound(leading + 2 * metrics.ascent()) / 2.0};
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

qreal baseline(const Style& style)
{
    return face(style).baseline;
}

} // namespace Clipboard::Fonts
