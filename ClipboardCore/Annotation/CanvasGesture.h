#pragma once

#include "Annotation/AnnotationSession.h"

#include <QFlags>

#include <optional>
#include <variant>

namespace ClipboardCore {

/// Turns presses, drags and releases of the mouse on the canvas into edits of a session. A small value.
///
/// Positions are picture pixels; `scale` is screen points per picture pixel, above 0, and comes with every event, so
/// that tolerances are the same on screen at every zoom.
class CanvasGesture final
{
public:
    struct Mouse
    {
        QPointF location;
        double scale = 1;
        int clickCount = 1;         // 2 for the second press of a double click, and so on
        bool isConstrained = false; // Shift: arrows by eighths of a turn, squares, crops of the same shape
    };

    enum class Edge { left = 1, right = 2, top = 4, bottom = 8 };
    Q_DECLARE_FLAGS(Edges, Edge)
    enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

    struct Cursor
    {
        enum class Shape { frameResize, arrow, openHand, closedHand, resizeLeftRight, resizeUpDown };
        Shape shape = Shape::arrow;
        std::optional<Corner> corner; // of a frameResize
        bool operator==(const Cursor&) const = default;
    };

    // The drags, by what they will do when the mouse is released.
    struct CropDrag
    {
        Edges edges;
        QRectF startCrop;
        QRectF crop; // not yet snapped to the picture
    };
    struct MoveCropDrag
    {
        QPointF start;
        QPointF end;
    };
    struct PlaceDrag
    {
        QPointF start;
        QPointF end;
    };
    struct MoveDrag
    {
        QPointF start;
        QPointF end;
    };
    struct ReshapeDrag
    {
        AnnotationHandle handle = AnnotationHandle::start;
        QPointF grab; // from the pointer to the handle
        QPointF start;
        QPointF end;
        bool isConstrained = false;
    };
    using Drag = std::variant<CropDrag, MoveCropDrag, PlaceDrag, MoveDrag, ReshapeDrag>;

    [[nodiscard]] const std::optional<Drag>& drag() const { return m_drag; }
    [[nodiscard]] bool isInProgress() const { return m_drag.has_value(); }

    /// May select, begin or end typing, and begin a drag.
    void mouseDown(const Mouse& mouse, AnnotationSession& on);
    /// Moves the drag; the session stays as it is.
    void mouseDragged(const Mouse& mouse, const AnnotationSession& on);
    /// Applies the drag: one step of undo, or none when the mouse hardly moved.
    void mouseUp(const Mouse& mouse, AnnotationSession& on);
    /// A press into the live editor of a text.
    void textFieldMouseDown(int clickCount);
    /// Forgets the drag.
    void cancel() { m_drag.reset(); }

    /// The session as it would be if the mouse were released now: what to draw during a drag.
    [[nodiscard]] AnnotationSession applied(const AnnotationSession& to) const;
    /// What a press would begin with a tool that makes marks.
    enum class Aim { nothing, place, move, reshape };
    [[nodiscard]] static Aim aim(QPointF at, const AnnotationSession& on, double scale);
    /// The cursor over `at`; nothing to leave it as it is.
    [[nodiscard]] std::optional<Cursor> cursor(QPointF at, const AnnotationSession& on, double scale) const;

private:
    void cropDown(QPointF at, const AnnotationSession& on);
    void markDown(const Mouse& mouse, AnnotationSession& on);
    /// Where the handle comes to lie.
    [[nodiscard]] static QPointF reshaped(const ReshapeDrag& drag, const AnnotationSession& session);

    std::optional<Drag> m_drag;
    double m_scale = 1;
    int m_downClickCount = 0;
    /// The click that began the text edit; later clicks of the same multiple click do not end it.
    std::optional<int> m_editingClickCount;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CanvasGesture::Edges)

} // namespace ClipboardCore
