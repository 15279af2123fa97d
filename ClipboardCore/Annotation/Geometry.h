#pragma once

#include <QPointF>
#include <QRectF>

#include <algorithm>
#include <cmath>

/// Plane geometry to the last bit: Qt compares points and rectangles approximately, and leaves out their right and
/// lower edges or not by their size.
namespace ClipboardCore::Geometry {

[[nodiscard]] inline bool areSame(QPointF a, QPointF b)
{
    return a.x() == b.x() && a.y() == b.y();
}

[[nodiscard]] inline double length(QPointF vector)
{
    return std::hypot(vector.x(), vector.y());
}

[[nodiscard]] inline QRectF boundingRect(QPointF a, QPointF b)
{
    return {QPointF(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
            QPointF(std::max(a.x(), b.x()), std::max(a.y(), b.y()))};
}

[[nodiscard]] inline QRectF grown(const QRectF& rect, double by)
{
    return rect.adjusted(-by, -by, by, by);
}

/// The edges belong to the rectangle.
[[nodiscard]] inline bool contains(const QRectF& rect, QPointF point)
{
    return point.x() >= rect.left() && point.x() <= rect.right() && point.y() >= rect.top() &&
           point.y() <= rect.bottom();
}

/// Whether the two have more in common than an edge.
[[nodiscard]] inline bool overlap(const QRectF& a, const QRectF& b)
{
    return a.left() < b.right() && b.left() < a.right() && a.top() < b.bottom() && b.top() < a.bottom();
}

/// The point of the rectangle that is nearest.
[[nodiscard]] inline QPointF clamped(QPointF point, const QRectF& into)
{
    return {std::clamp(point.x(), into.left(), into.right()), std::clamp(point.y(), into.top(), into.bottom())};
}

[[nodiscard]] inline double distanceToSegment(QPointF point, QPointF a, QPointF b)
{
    const QPointF d = b - a;
    const double squaredLength = QPointF::dotProduct(d, d);
    const double t = squaredLength == 0 ? 0 : std::clamp(QPointF::dotProduct(point - a, d) / squaredLength, 0.0, 1.0);
    return length(a + t * d - point);
}

} // namespace ClipboardCore::Geometry
