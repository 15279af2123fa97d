#include "Hint.h"

#include "Painting.h"

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr int capGap = 6;
constexpr qreal usualSpacing = 16;
constexpr qreal leastSpacing = 8;

qreal wordWidth(const Hint& hint)
{
    return std::ceil(Fonts::width(Fonts::caption, hint.word));
}

qreal width(const Hint& hint)
{
    return KeyCap::size(hint.keys).width() + capGap + wordWidth(hint);
}

} // namespace

void paintHints(QPainter& painter, const QRectF& band, const QList<Hint>& hints, const KeyCap::Look& cap,
                const QColor& color)
{
    qsizetype count = 0;
    qreal widths = 0;
    while (count < hints.size()) {
        const qreal more = width(hints.at(count));
        if (widths + more + static_cast<qreal>(count) * leastSpacing > band.width())
            break;
        widths += more;
        ++count;
    }
    const qreal gaps = static_cast<qreal>(std::max<qsizetype>(1, count - 1));
    const qreal spacing = std::min(usualSpacing, std::floor((band.width() - widths) / gaps));
    qreal x = band.left();
    for (const Hint& hint : hints.first(count)) {
        const QSizeF capSize = KeyCap::size(hint.keys);
        KeyCap::draw(painter, {x, std::floor(band.center().y() - capSize.height() / 2)}, hint.keys, cap);
        x += capSize.width() + capGap;
        Painting::textLine(painter, {x, band.y(), wordWidth(hint), band.height()}, Fonts::caption, color, hint.word);
        x += wordWidth(hint) + spacing;
    }
}

} // namespace Clipboard
