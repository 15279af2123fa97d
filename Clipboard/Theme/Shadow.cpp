#include "Shadow.h"

#include "Theme.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Clipboard {

namespace {

/// Coverage of a blurred half-plane `distance` inside its edge: the normal distribution with CSS's deviation, blur / 2.
double blurredEdge(double distance, double blur)
{
    return 0.5 * (1 + std::erf(distance / (blur / 2 * M_SQRT2)));
}

/// One corner of the shadow with the straight run that follows it, as nine parts that stretch. A rounded corner of a
/// blur several times its radius differs from the product of two blurred edges by less than one grey level in ten, so
/// the product is drawn.
struct NinePatch
{
    QPixmap pixmap;
    int corner; // pixels from an outer edge to where nothing changes any more
};

NinePatch makeNinePatch(const Shadow& shadow)
{
    const int corner = 2 * shadow.blur;
    const int side = 2 * corner + 1;
    std::vector<double> profile(static_cast<std::size_t>(side));
    for (int i = 0; i < side; ++i) {
        const int fromEdge = std::min(i, side - 1 - i);
        profile[static_cast<std::size_t>(i)] = blurredEdge(fromEdge + 0.5 - shadow.blur, shadow.blur);
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double coverage = profile[static_cast<std::size_t>(x)] * profile[static_cast<std::size_t>(y)];
            line[x] = qRgba(0, 0, 0, qRound(coverage * shadow.opacity * 255));
        }
    }
    return {QPixmap::fromImage(image), corner};
}

const NinePatch& ninePatch(const Shadow& shadow)
{
    static std::vector<std::pair<Shadow, NinePatch>> made;
    const auto found = std::find_if(made.begin(), made.end(), [&](const auto& entry) { return entry.first == shadow; });
    if (found != made.end())
        return found->second;
    return made.emplace_back(shadow, makeNinePatch(shadow)).second;
}

/// Where a nine-patch is cut along one axis, in its own pixels and in the target.
struct Cuts
{
    qreal source[4];
    qreal target[4];
};

Cuts cutsAlong(qreal start, qreal length, int corner)
{
    const qreal reach = std::min<qreal>(corner, length / 2);
    const qreal side = 2 * corner + 1;
    return {{0, reach, side - reach, side}, {start, start + reach, start + length - reach, start + length}};
}

} // namespace

void Shadow::paint(QPainter& painter, const QRectF& card) const
{
    const NinePatch& patch = ninePatch(*this);
    const QRectF area = card.translated(0, offset).adjusted(-blur, -blur, blur, blur);
    const Cuts across = cutsAlong(area.x(), area.width(), patch.corner);
    const Cuts down = cutsAlong(area.y(), area.height(), patch.corner);
    painter.save();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue; // the card covers it
            const QRectF target(QPointF(across.target[column], down.target[row]),
                                QPointF(across.target[column + 1], down.target[row + 1]));
            const QRectF source(QPointF(across.source[column], down.source[row]),
                                QPointF(across.source[column + 1], down.source[row + 1]));
            painter.drawPixmap(target, patch.pixmap, source);
        }
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::outerEdge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(card.adjusted(-0.5, -0.5, 0.5, 0.5), radius + 0.5, radius + 0.5);
    painter.restore();
}

} // namespace Clipboard
