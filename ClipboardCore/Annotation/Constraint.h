#pragma once

#include "Annotation/Annotation.h"

#include <QPointF>
#include <QRectF>

/// What a drag becomes while it is constrained. Nothing that begins inside of `bounds` leaves them.
namespace ClipboardCore::Constraint {

/// Where a mark of that kind ends that begins at `from` and is dragged to `to`: an arrow in one of eight directions,
/// any other mark as a square.
[[nodiscard]] QPointF end(Annotation::Kind kind, QPointF from, QPointF to, const QRectF& bounds);

/// `rect`, `factor` times as large, or as large as it can be inside of `bounds`. The point that lies at those shares of
/// its width and height stays.
[[nodiscard]] QRectF scaled(const QRectF& rect, double factor, QPointF fixedShares, const QRectF& bounds);

} // namespace ClipboardCore::Constraint
