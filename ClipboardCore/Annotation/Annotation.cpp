#include "Annotation/Annotation.h"

#include "Annotation/Geometry.h"

namespace ClipboardCore {

std::span<const AnnotationHandle> Annotation::handles() const
{
    switch (kind) {
    case Kind::arrow:
        return std::span(allAnnotationHandles).first(2);
    case Kind::rectangle:
    case Kind::highlight:
    case Kind::pixelate:
        return allAnnotationHandles;
    case Kind::text:
    case Kind::counter:
        return {};
    }
    Q_UNREACHABLE();
}

QPointF Annotation::position(AnnotationHandle of) const
{
    switch (of) {
    case AnnotationHandle::start:
        return start;
    case AnnotationHandle::end:
        return end;
    case AnnotationHandle::startXEndY:
        return {start.x(), end.y()};
    case AnnotationHandle::endXStartY:
        return {end.x(), start.y()};
    }
    Q_UNREACHABLE();
}

QRectF Annotation::spannedRect() const
{
    return Geometry::boundingRect(start, end);
}

bool Annotation::isHit(QPointF by, double reach) const
{
    switch (kind) {
    case Kind::arrow:
        return Geometry::distanceToSegment(by, start, end) <= reach;
    case Kind::rectangle: {
        const std::array corners{start, position(AnnotationHandle::startXEndY), end,
                                 position(AnnotationHandle::endXStartY)};
        for (size_t i = 0; i < corners.size(); ++i) {
            if (Geometry::distanceToSegment(by, corners.at(i), corners.at((i + 1) % corners.size())) <= reach)
                return true;
        }
        return false;
    }
    case Kind::text:
        return false;
    case Kind::highlight:
    case Kind::pixelate:
        return Geometry::contains(Geometry::grown(spannedRect(), reach), by);
    case Kind::counter:
        return Geometry::length(by - start) <= reach;
    }
    Q_UNREACHABLE();
}

bool operator==(const Annotation& a, const Annotation& b)
{
    return a.kind == b.kind && Geometry::areSame(a.start, b.start) && Geometry::areSame(a.end, b.end) &&
           a.color == b.color && a.size == b.size && a.text == b.text;
}

} // namespace ClipboardCore
