#include "Annotation/AnnotationSession.h"

#include "Annotation/AnnotationRenderer.h"
#include "Annotation/DrawingContext.h"
#include "Annotation/Geometry.h"
#include "Annotation/Pixelation.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace ClipboardCore {
namespace {

using Kind = Annotation::Kind;

/// How far a span can move by `by` inside of 0 to `limit`. One that has no room is held at 0.
double clampedMove(double minimum, double length, double by, double limit)
{
    return std::max(0.0, std::min(limit - length, minimum + by)) - minimum;
}

} // namespace

AnnotationSession::AnnotationSession(std::shared_ptr<const Picture> picture, const AnnotationColor& color,
                                     AnnotationSize size, std::shared_ptr<const TextLayout> textLayout)
    : m_picture(std::move(picture))
    , m_measures(m_picture->size(), std::move(textLayout))
    , m_state{{}, pictureBounds(), std::nullopt}
    , m_color(color)
    , m_size(size)
{
}

// ── What it is

bool AnnotationSession::hasPixelatedAreas() const
{
    return std::ranges::any_of(annotations(), [](const Annotation& mark) { return mark.kind == Kind::pixelate; });
}

bool AnnotationSession::hasChanges() const
{
    return crop() != pictureBounds() || std::ranges::any_of(annotations(), [](const Annotation& mark) {
               return mark.kind != Kind::text || !mark.text.isEmpty();
           });
}

QList<AnnotationSession::Index> AnnotationSession::drawOrder() const
{
    QList<Index> order(annotations().size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_partition(order.begin(), order.end(),
                          [this](Index i) { return annotations().at(i).kind == Kind::pixelate; });
    return order;
}

std::optional<int> AnnotationSession::counterNumber(Index at) const
{
    if (at < 0 || at >= annotations().size() || annotations().at(at).kind != Kind::counter)
        return std::nullopt;
    const auto isCounter = [](const Annotation& mark) { return mark.kind == Kind::counter; };
    return static_cast<int>(std::count_if(annotations().cbegin(), annotations().cbegin() + at + 1, isCounter));
}

const Annotation* AnnotationSession::selectedMark() const
{
    return selection() ? &annotations().at(*selection()) : nullptr;
}

// ── Tool, colour, size

void AnnotationSession::chooseTool(AnnotationTool tool)
{
    endEditing();
    m_tool = tool;
    if (tool == AnnotationTool::crop)
        m_state.selection.reset();
}

void AnnotationSession::setColor(const AnnotationColor& color)
{
    m_color = color;
    const Annotation* selected = selectedMark();
    if (!selected || selected->kind == Kind::pixelate)
        return;
    Annotation mark = *selected;
    mark.color = color;
    restyleSelected(mark);
}

void AnnotationSession::setSize(AnnotationSize size)
{
    m_size = size;
    const Annotation* selected = selectedMark();
    if (!selected || selected->kind == Kind::pixelate || selected->kind == Kind::highlight)
        return;
    Annotation mark = *selected;
    mark.size = size;
    restyleSelected(mark);
}

void AnnotationSession::changeSize(int steps)
{
    const int wanted = static_cast<int>(m_size) + steps;
    setSize(std::clamp(static_cast<AnnotationSize>(wanted), allAnnotationSizes.front(), allAnnotationSizes.back()));
}

void AnnotationSession::restyleSelected(const Annotation& mark)
{
    if (mark == *selectedMark())
        return;
    if (!m_editing)
        record();
    m_state.annotations[*selection()] = mark;
}

// ── New marks and texts

void AnnotationSession::place(QPointF from, QPointF to)
{
    endEditing();
    const auto kind = annotationKind(m_tool);
    if (!kind || !isDragged(*kind) || Geometry::areSame(from, to))
        return;
    record();
    m_state.annotations.append({*kind, from, to, m_color, m_size, {}});
}

void AnnotationSession::place(QPointF at)
{
    endEditing();
    const auto kind = annotationKind(m_tool);
    if (!kind || isDragged(*kind))
        return;
    const bool isText = kind == Kind::text;
    if (isText)
        m_editingStart = m_state;
    else
        record();
    m_state.annotations.append({*kind, at, at, m_color, m_size, {}});
    if (isText) {
        m_editing = annotations().size() - 1;
        m_state.selection = m_editing;
    }
}

void AnnotationSession::beginEditing(Index at)
{
    if (m_editing || at < 0 || at >= annotations().size() || annotations().at(at).kind != Kind::text)
        return;
    m_isNudging = false;
    m_editingStart = m_state;
    m_editing = at;
    m_state.selection = at;
}

void AnnotationSession::setText(const QString& text)
{
    if (m_editing)
        m_state.annotations[*m_editing].text = text;
}

void AnnotationSession::endEditing()
{
    m_isNudging = false;
    if (!m_editing || !m_editingStart)
        return;
    const Index edited = *std::exchange(m_editing, std::nullopt);
    const Snapshot start = *std::exchange(m_editingStart, std::nullopt);
    if (annotations().at(edited).text.isEmpty()) {
        m_state.annotations.removeAt(edited);
        m_state.selection.reset();
    }
    if (annotations() == start.annotations)
        return;
    m_undoStack.append(start);
    m_redoStack.clear();
}

// ── The selection

void AnnotationSession::select(QPointF at, double tolerance)
{
    endEditing();
    m_state.selection = markAt(at, tolerance);
}

std::optional<AnnotationSession::Index> AnnotationSession::markAt(QPointF at, double tolerance) const
{
    const QList<Index> order = drawOrder();
    const auto topmost = std::find_if(order.crbegin(), order.crend(),
                                      [&](Index i) { return m_measures.isHit(annotations().at(i), at, tolerance); });
    return topmost == order.crend() ? std::nullopt : std::optional(*topmost);
}

std::optional<AnnotationHandle> AnnotationSession::selectedHandle(QPointF at, double tolerance) const
{
    const Annotation* mark = selectedMark();
    if (!mark)
        return std::nullopt;
    for (const AnnotationHandle handle : mark->handles()) {
        const QPointF offset = mark->position(handle) - at;
        if (std::abs(offset.x()) <= tolerance && std::abs(offset.y()) <= tolerance)
            return handle;
    }
    return std::nullopt;
}

void AnnotationSession::moveSelection(QPointF by)
{
    endEditing();
    if (!selection())
        return;
    Annotation mark = *selectedMark();
    const QRectF bounds = m_measures.bounds(mark);
    const QPointF move(clampedMove(bounds.x(), bounds.width(), by.x(), pictureBounds().width()),
                       clampedMove(bounds.y(), bounds.height(), by.y(), pictureBounds().height()));
    if (move.isNull())
        return;
    mark.start += move;
    mark.end += move;
    replaceSelected(mark);
}

void AnnotationSession::nudgeSelection(QPointF by)
{
    const bool wasNudging = m_isNudging;
    const qsizetype steps = m_undoStack.size();
    moveSelection(by);
    m_isNudging = wasNudging;
    if (m_undoStack.size() == steps)
        return; // against the edge of the picture
    if (wasNudging)
        m_undoStack.removeLast(); // the step before it holds where the run began
    m_isNudging = m_undoStack.last().annotations != annotations();
    if (!m_isNudging)
        m_undoStack.removeLast(); // back where it began
}

void AnnotationSession::reshapeSelection(AnnotationHandle handle, QPointF to)
{
    endEditing();
    if (!selection())
        return;
    Annotation mark = *selectedMark();
    const bool movesStartX = handle == AnnotationHandle::start || handle == AnnotationHandle::startXEndY;
    const bool movesStartY = handle == AnnotationHandle::start || handle == AnnotationHandle::endXStartY;
    (movesStartX ? mark.start : mark.end).setX(to.x());
    (movesStartY ? mark.start : mark.end).setY(to.y());
    if (mark != *selectedMark())
        replaceSelected(mark);
}

void AnnotationSession::replaceSelected(const Annotation& mark)
{
    record();
    m_state.annotations[*selection()] = mark;
}

void AnnotationSession::deleteSelection()
{
    endEditing();
    if (!selection())
        return;
    record();
    m_state.annotations.removeAt(*selection());
    m_state.selection.reset();
}

// ── History

void AnnotationSession::record()
{
    m_isNudging = false;
    m_undoStack.append(m_state);
    m_redoStack.clear();
}

void AnnotationSession::undo()
{
    travel(m_undoStack, m_redoStack);
}

void AnnotationSession::redo()
{
    travel(m_redoStack, m_undoStack);
}

void AnnotationSession::travel(QList<Snapshot>& from, QList<Snapshot>& onto)
{
    endEditing(); // may add a step, or leave none to redo
    if (from.isEmpty())
        return;
    onto.append(m_state);
    m_state = from.takeLast();
    if (m_tool == AnnotationTool::crop)
        m_state.selection.reset();
}

// ── Crop

void AnnotationSession::setCrop(const QRectF& crop)
{
    const QRectF wanted = crop.normalized();
    const double width = pictureBounds().width();
    const double height = pictureBounds().height();
    const double x0 = std::round(std::clamp(wanted.left(), 0.0, width - 1));
    const double y0 = std::round(std::clamp(wanted.top(), 0.0, height - 1));
    const double x1 = std::max(std::round(std::min(wanted.right(), width)), x0 + 1);
    const double y1 = std::max(std::round(std::min(wanted.bottom(), height)), y0 + 1);
    const QRectF snapped(x0, y0, x1 - x0, y1 - y0);
    if (snapped == this->crop())
        return;
    endEditing();
    record();
    m_state.crop = snapped;
}

void AnnotationSession::moveCrop(QPointF by)
{
    const auto moved = [](double minimum, double move, double room) {
        return std::min(room, std::max(0.0, std::round(minimum + move)));
    };
    const QSizeF room = pictureBounds().size() - crop().size();
    setCrop(
        {QPointF(moved(crop().x(), by.x(), room.width()), moved(crop().y(), by.y(), room.height())), crop().size()});
}

// ── Drawing

void AnnotationSession::draw(DrawingContext& in, const QRectF& region, double scale) const
{
    AnnotationRenderer(*this, in, region, scale).drawPicture();
    drawAnnotations(in, region, scale, nullptr);
}

void AnnotationSession::drawAnnotations(DrawingContext& in, const QRectF& region, double scale,
                                        const std::shared_ptr<const Picture>& pixelatedPicture) const
{
    auto pixels = pixelatedPicture;
    if (!pixels && hasPixelatedAreas())
        pixels = makePixelatedPicture();
    AnnotationRenderer(*this, in, region, scale).drawMarks(pixels.get());
}

std::shared_ptr<const Picture> AnnotationSession::makePixelatedPicture() const
{
    return pixelated(*m_picture, m_measures.pixelateBlockSize());
}

std::shared_ptr<const Picture> AnnotationSession::flatten() const
{
    const auto context = m_picture->rgbaContext(crop().size().toSize());
    const auto pixels = hasPixelatedAreas() ? makePixelatedPicture() : nullptr;
    if (!context || (hasPixelatedAreas() && !pixels))
        return nullptr; // rather no result than one that shows what was covered
    {
        AnnotationRenderer renderer(*this, *context, crop(), 1);
        renderer.drawPicture();
        renderer.drawMarks(pixels.get());
    }
    return context->takePicture();
}

QList<QRectF> AnnotationSession::changedAreas(const AnnotationSession& before) const
{
    const auto isDrawnAlike = [&](Index i) {
        return annotations().at(i) == before.annotations().at(i) && counterNumber(i) == before.counterNumber(i) &&
               (editing() == i) == (before.editing() == i);
    };
    QList<QRectF> areas;
    for (Index i = 0; i < std::max(annotations().size(), before.annotations().size()); ++i) {
        const bool isHere = i < annotations().size();
        const bool wasHere = i < before.annotations().size();
        if (isHere && wasHere && isDrawnAlike(i))
            continue;
        if (isHere)
            areas.append(m_measures.drawnBounds(annotations().at(i)));
        if (wasHere)
            areas.append(m_measures.drawnBounds(before.annotations().at(i)));
    }
    return areas;
}

} // namespace ClipboardCore
