#include "Annotation/CanvasGesture.h"

#include "Annotation/Constraint.h"
#include "Annotation/Geometry.h"

#include <utility>

namespace ClipboardCore {
namespace {

// In screen points: a picture pixel is `scale` of them.
constexpr double hitTolerance = 8;
constexpr double minimumCropSide = 24;
constexpr double dragThreshold = 4;

using Edge = CanvasGesture::Edge;
using Edges = CanvasGesture::Edges;
using Corner = CanvasGesture::Corner;
using Cursor = CanvasGesture::Cursor;

template <typename... Functions>
struct Overloaded : Functions...
{
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// The crop's edges within `tolerance` of a point; a crop too narrow to tell them apart is grabbed by its left and top.
Edges edgesUnder(QPointF at, const QRectF& crop, double tolerance)
{
    const QRectF reach = Geometry::grown(crop, tolerance);
    Edges edges;
    if (at.y() >= reach.top() && at.y() <= reach.bottom()) {
        if (std::abs(at.x() - crop.left()) <= tolerance)
            edges |= Edge::left;
        else if (std::abs(at.x() - crop.right()) <= tolerance)
            edges |= Edge::right;
    }
    if (at.x() >= reach.left() && at.x() <= reach.right()) {
        if (std::abs(at.y() - crop.top()) <= tolerance)
            edges |= Edge::top;
        else if (std::abs(at.y() - crop.bottom()) <= tolerance)
            edges |= Edge::bottom;
    }
    return edges;
}

Cursor cursorOver(Edges edges)
{
    const bool isHorizontal = edges & (Edge::left | Edge::right);
    const bool isVertical = edges & (Edge::top | Edge::bottom);
    if (!isVertical)
        return {Cursor::Shape::resizeLeftRight, std::nullopt};
    if (!isHorizontal)
        return {Cursor::Shape::resizeUpDown, std::nullopt};
    if (edges & Edge::top)
        return {Cursor::Shape::frameResize, edges & Edge::left ? Corner::topLeft : Corner::topRight};
    return {Cursor::Shape::frameResize, edges & Edge::left ? Corner::bottomLeft : Corner::bottomRight};
}

/// Computed from where the drag began, so that the opposite edge never moves.
QRectF resizedCrop(const CanvasGesture::CropDrag& drag, QPointF to, double minimumSide)
{
    const QRectF& start = drag.startCrop;
    const double left = drag.edges & Edge::left ? std::min(start.right() - minimumSide, to.x()) : start.left();
    const double top = drag.edges & Edge::top ? std::min(start.bottom() - minimumSide, to.y()) : start.top();
    const double right = drag.edges & Edge::right ? std::max(left + minimumSide, to.x()) : start.right();
    const double bottom = drag.edges & Edge::bottom ? std::max(top + minimumSide, to.y()) : start.bottom();
    return {QPointF(left, top), QPointF(right, bottom)};
}

/// As the same shape. What is dragged decides how large; an axis that is not dragged grows from its middle.
QRectF sameShape(const CanvasGesture::CropDrag& drag, const QRectF& resized, const QRectF& bounds)
{
    const auto fixedShare = [&drag](Edge before, Edge after) {
        return drag.edges & before ? 1.0 : drag.edges & after ? 0.0 : 0.5;
    };
    const double across = drag.edges & (Edge::left | Edge::right) ? resized.width() / drag.startCrop.width() : 0;
    const double down = drag.edges & (Edge::top | Edge::bottom) ? resized.height() / drag.startCrop.height() : 0;
    return Constraint::scaled(drag.startCrop, std::max(across, down),
                              {fixedShare(Edge::left, Edge::right), fixedShare(Edge::top, Edge::bottom)}, bounds);
}

/// The handle that stays where it is while `handle` is dragged.
AnnotationHandle opposite(AnnotationHandle handle)
{
    switch (handle) {
    case AnnotationHandle::start:
        return AnnotationHandle::end;
    case AnnotationHandle::end:
        return AnnotationHandle::start;
    case AnnotationHandle::startXEndY:
        return AnnotationHandle::endXStartY;
    case AnnotationHandle::endXStartY:
        return AnnotationHandle::startXEndY;
    }
    Q_UNREACHABLE();
}

} // namespace

void CanvasGesture::mouseDown(const Mouse& mouse, AnnotationSession& on)
{
    m_drag.reset();
    m_scale = mouse.scale;
    m_downClickCount = mouse.clickCount;
    if (on.editing()) {
        if (!m_editingClickCount || *m_editingClickCount >= mouse.clickCount)
            on.endEditing();
        return;
    }
    if (on.tool() == AnnotationTool::crop)
        cropDown(mouse.location, on);
    else
        markDown(mouse, on);
}

void CanvasGesture::cropDown(QPointF at, const AnnotationSession& on)
{
    const QRectF crop = on.crop();
    if (const Edges edges = edgesUnder(at, crop, hitTolerance / m_scale))
        m_drag = CropDrag{edges, crop, crop};
    else if (Geometry::contains(crop, at))
        m_drag = MoveCropDrag{at, at};
}

void CanvasGesture::markDown(const Mouse& mouse, AnnotationSession& on)
{
    const QPointF at = mouse.location;
    const double tolerance = hitTolerance / m_scale;
    if (const auto handle = on.selectedHandle(at, tolerance)) {
        m_drag = ReshapeDrag{*handle, on.annotations().at(*on.selection()).position(*handle) - at, at, at};
        return;
    }
    if (!Geometry::contains(on.pictureBounds(), at))
        return;
    on.select(at, tolerance);
    const auto selection = on.selection();
    if (!selection) {
        m_drag = PlaceDrag{at, at};
    } else if (mouse.clickCount == 2 && on.annotations().at(*selection).kind == Annotation::Kind::text) {
        on.beginEditing(*selection);
        m_editingClickCount = mouse.clickCount;
    } else {
        m_drag = MoveDrag{at, at};
    }
}

void CanvasGesture::mouseDragged(const Mouse& mouse, const AnnotationSession& on)
{
    if (!m_drag)
        return;
    m_scale = mouse.scale;
    const QPointF at = mouse.location;
    const auto follow = [at](auto& drag) { drag.end = at; };
    const QPointF inside = Geometry::clamped(at, on.pictureBounds());
    std::visit(Overloaded{[&](CropDrag& drag) {
                              drag.crop = resizedCrop(drag, at, minimumCropSide / m_scale);
                              if (mouse.isConstrained)
                                  drag.crop = sameShape(drag, drag.crop, on.pictureBounds());
                          },
                          [&](MoveCropDrag& drag) { follow(drag); },
                          [&](ReshapeDrag& drag) {
                              follow(drag);
                              drag.isConstrained = mouse.isConstrained;
                          },
                          [&](PlaceDrag& drag) {
                              const auto kind = annotationKind(on.tool());
                              const bool isConstrained = mouse.isConstrained && kind && isDragged(*kind);
                              drag.end = isConstrained ? Constraint::end(*kind, drag.start, inside, on.pictureBounds())
                                                       : inside;
                          },
                          [&](MoveDrag& drag) { drag.end = inside; }},
               *m_drag);
}

void CanvasGesture::mouseUp(const Mouse& mouse, AnnotationSession& on)
{
    if (!m_drag)
        return;
    m_scale = mouse.scale;
    on = applied(on);
    m_drag.reset();
    if (on.editing())
        m_editingClickCount = m_downClickCount;
}

void CanvasGesture::textFieldMouseDown(int clickCount)
{
    if (clickCount == 1)
        m_editingClickCount.reset();
}

QPointF CanvasGesture::reshaped(const ReshapeDrag& drag, const AnnotationSession& session)
{
    const QPointF handle = Geometry::clamped(drag.end + drag.grab, session.pictureBounds());
    if (!drag.isConstrained || !session.selection())
        return handle;
    const Annotation& mark = session.annotations().at(*session.selection());
    return Constraint::end(mark.kind, mark.position(opposite(drag.handle)), handle, session.pictureBounds());
}

AnnotationSession CanvasGesture::applied(const AnnotationSession& to) const
{
    AnnotationSession session = to;
    if (!m_drag)
        return session;
    const auto isFar = [this](const auto& drag) {
        return Geometry::length(drag.end - drag.start) * m_scale >= dragThreshold;
    };
    std::visit(Overloaded{[&](const CropDrag& drag) { session.setCrop(drag.crop); },
                          [&](const MoveCropDrag& drag) {
                              if (isFar(drag))
                                  session.moveCrop(drag.end - drag.start);
                          },
                          [&](const PlaceDrag& drag) {
                              if (session.tool() == AnnotationTool::counter)
                                  session.place(drag.end);
                              else if (session.tool() == AnnotationTool::text)
                                  session.place(drag.start);
                              else if (isFar(drag))
                                  session.place(drag.start, drag.end);
                          },
                          [&](const MoveDrag& drag) {
                              if (isFar(drag))
                                  session.moveSelection(drag.end - drag.start);
                          },
                          [&](const ReshapeDrag& drag) {
                              if (isFar(drag))
                                  session.reshapeSelection(drag.handle, reshaped(drag, session));
                          }},
               *m_drag);
    return session;
}

CanvasGesture::Aim CanvasGesture::aim(QPointF at, const AnnotationSession& on, double scale)
{
    const double tolerance = hitTolerance / scale;
    if (on.tool() == AnnotationTool::crop)
        return Aim::nothing;
    if (on.selectedHandle(at, tolerance))
        return Aim::reshape;
    if (!Geometry::contains(on.pictureBounds(), at))
        return Aim::nothing;
    return on.markAt(at, tolerance) ? Aim::move : Aim::place;
}

std::optional<Cursor> CanvasGesture::cursor(QPointF at, const AnnotationSession& on, double scale) const
{
    if (m_drag) {
        if (std::holds_alternative<MoveCropDrag>(*m_drag))
            return Cursor{Cursor::Shape::closedHand, std::nullopt};
        return std::nullopt;
    }
    if (on.tool() != AnnotationTool::crop)
        return std::nullopt;
    if (const Edges edges = edgesUnder(at, on.crop(), hitTolerance / scale))
        return cursorOver(edges);
    return Cursor{Geometry::contains(on.crop(), at) ? Cursor::Shape::openHand : Cursor::Shape::arrow, std::nullopt};
}

} // namespace ClipboardCore
