#pragma once

#include "Annotation/AnnotationColor.h"
#include "Annotation/AnnotationSize.h"

#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>
#include <span>

namespace ClipboardCore {

/// A point at which a selected mark can be grabbed, named after the corner of the mark that it is.
enum class AnnotationHandle { start, end, startXEndY, endXStartY };

inline constexpr std::array allAnnotationHandles{AnnotationHandle::start, AnnotationHandle::end,
                                                 AnnotationHandle::startXEndY, AnnotationHandle::endXStartY};

/// One mark on a picture: a plain value, in pixels of the whole picture, origin at the top left, y downward.
struct Annotation
{
    enum class Kind { arrow, rectangle, text, highlight, pixelate, counter };

    Kind kind = Kind::arrow;
    /// As drawn, not normalised: `start` may lie right of or below `end`. A text has its label's top left corner in
    /// both, a counter the centre of its disc.
    QPointF start;
    QPointF end;
    AnnotationColor color;
    AnnotationSize size = AnnotationSize::medium;
    QString text; // of a text only

    /// The handles that the kind offers, in the order in which they are tried.
    [[nodiscard]] std::span<const AnnotationHandle> handles() const;
    [[nodiscard]] QPointF position(AnnotationHandle of) const;
    /// The smallest rectangle with both points in it.
    [[nodiscard]] QRectF spannedRect() const;
    /// Whether `by` is within `reach` pixels of the mark's bare geometry: its line, its outline, its area or its
    /// centre. Always false for a text, whose extent depends on its layout.
    [[nodiscard]] bool isHit(QPointF by, double reach) const;

    /// All six fields equal, coordinates to the last bit.
    friend bool operator==(const Annotation& a, const Annotation& b);
};

/// Whether a mark of that kind is made by dragging from its start to its end, not by a click.
[[nodiscard]] inline bool isDragged(Annotation::Kind kind)
{
    return kind != Annotation::Kind::text && kind != Annotation::Kind::counter;
}

} // namespace ClipboardCore
