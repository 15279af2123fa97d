#include "Focus/SpatialNav.h"

namespace ClipboardCore::SpatialNav {

namespace {

/// A rectangle's extent along one axis.
struct Span
{
    double min = 0;
    double max = 0;
    [[nodiscard]] double mid() const { return (min + max) / 2; }
};

bool overlap(Span a, Span b)
{
    return a.min < b.max && b.min < a.max;
}

} // namespace

Metrics metrics(const QRectF& source, const QRectF& target, FocusMove move)
{
    const Span sourceX{source.left(), source.right()};
    const Span sourceY{source.top(), source.bottom()};
    const Span targetX{target.left(), target.right()};
    const Span targetY{target.top(), target.bottom()};
    const auto backward = [](Span from, Span to, Span fromAcross, Span toAcross) {
        return Metrics{from.min - to.mid(), from.min - to.max, std::abs(toAcross.mid() - fromAcross.mid()),
                       overlap(fromAcross, toAcross)};
    };
    const auto forward = [](Span from, Span to, Span fromAcross, Span toAcross) {
        return Metrics{to.mid() - from.max, to.min - from.max, std::abs(toAcross.mid() - fromAcross.mid()),
                       overlap(fromAcross, toAcross)};
    };
    switch (move) {
    case FocusMove::up:
        return backward(sourceY, targetY, sourceX, targetX);
    case FocusMove::down:
        return forward(sourceY, targetY, sourceX, targetX);
    case FocusMove::left:
        return backward(sourceX, targetX, sourceY, targetY);
    case FocusMove::right:
        return forward(sourceX, targetX, sourceY, targetY);
    }
    Q_UNREACHABLE();
}

QRectF boundingBox(const QRectF& a, const QRectF& b)
{
    return {QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
            QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom()))};
}

} // namespace ClipboardCore::SpatialNav
