#include "Annotation/Constraint.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace ClipboardCore {
namespace {

constexpr double unlimited = std::numeric_limits<double>::infinity();

/// How far a point can go along one axis, where `direction` is -1, 0 or 1.
double room(double at, double direction, double minimum, double maximum)
{
    if (direction == 0)
        return unlimited;
    return std::max(direction < 0 ? at - minimum : maximum - at, 0.0);
}

/// The point `reach` away on both axes that `direction` has, or as far as `bounds` allow.
QPointF along(QPointF from, QPointF direction, double reach, const QRectF& bounds)
{
    reach = std::min({reach, room(from.x(), direction.x(), bounds.left(), bounds.right()),
                      room(from.y(), direction.y(), bounds.top(), bounds.bottom())});
    return from + direction * reach;
}

QPointF onEighth(QPointF from, QPointF to, const QRectF& bounds)
{
    const QPointF drag = to - from;
    // Between two directions lies half of an eighth of the circle.
    const double steep = std::tan(std::numbers::pi / 8);
    const double width = std::abs(drag.x());
    const double height = std::abs(drag.y());
    const QPointF direction(width < steep * height ? 0 : std::copysign(1, drag.x()),
                            height < steep * width ? 0 : std::copysign(1, drag.y()));
    const bool isDiagonal = direction.x() != 0 && direction.y() != 0;
    return along(from, direction, isDiagonal ? (width + height) / 2 : std::max(width, height), bounds);
}

/// The side that a square lies on; one that is dragged along an axis lies where there is more room.
double side(double drag, double at, double minimum, double maximum)
{
    return std::copysign(1, drag != 0 ? drag : (maximum - at) - (at - minimum));
}

QPointF onSquare(QPointF from, QPointF to, const QRectF& bounds)
{
    const QPointF drag = to - from;
    return along(from,
                 {side(drag.x(), from.x(), bounds.left(), bounds.right()),
                  side(drag.y(), from.y(), bounds.top(), bounds.bottom())},
                 std::max(std::abs(drag.x()), std::abs(drag.y())), bounds);
}

} // namespace

QPointF Constraint::end(Annotation::Kind kind, QPointF from, QPointF to, const QRectF& bounds)
{
    return kind == Annotation::Kind::arrow ? onEighth(from, to, bounds) : onSquare(from, to, bounds);
}

QRectF Constraint::scaled(const QRectF& rect, double factor, QPointF fixedShares, const QRectF& bounds)
{
    const auto most = [](double share, double length, double room) {
        return share > 0 ? room / (share * length) : unlimited;
    };
    const QPointF fixed(rect.left() + fixedShares.x() * rect.width(), rect.top() + fixedShares.y() * rect.height());
    factor = std::min({factor, most(fixedShares.x(), rect.width(), fixed.x() - bounds.left()),
                       most(1 - fixedShares.x(), rect.width(), bounds.right() - fixed.x()),
                       most(fixedShares.y(), rect.height(), fixed.y() - bounds.top()),
                       most(1 - fixedShares.y(), rect.height(), bounds.bottom() - fixed.y())});
    const QSizeF size = rect.size() * factor;
    return {fixed - QPointF(fixedShares.x() * size.width(), fixedShares.y() * size.height()), size};
}

} // namespace ClipboardCore
