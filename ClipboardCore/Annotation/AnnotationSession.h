#pragma once

#include "Annotation/AnnotationMeasures.h"
#include "Annotation/AnnotationTool.h"
#include "Annotation/Picture.h"

#include <QList>

namespace ClipboardCore {

class DrawingContext;

/// The document of the annotation editor: a picture, its crop, its marks, the selection and the history of changes.
///
/// A value: a copy costs as much as a few pointers, and a copy may be drawn or flattened on another thread. An
/// operation whose precondition fails (nothing selected, another tool, no such mark, nothing changed) does nothing and
/// records nothing. Coordinates are finite, in pixels of the whole picture. A selection is always the index of a mark.
class AnnotationSession final
{
public:
    using Index = qsizetype;

    AnnotationSession(std::shared_ptr<const Picture> picture, const AnnotationColor& color, AnnotationSize size,
                      std::shared_ptr<const TextLayout> textLayout);

    [[nodiscard]] const std::shared_ptr<const Picture>& picture() const { return m_picture; }
    [[nodiscard]] QRectF pictureBounds() const { return {QPointF(), QSizeF(m_picture->size())}; }
    /// The part that is exported: whole pixels, at least one, inside the picture.
    [[nodiscard]] QRectF crop() const { return m_state.crop; }
    /// Oldest first.
    [[nodiscard]] const QList<Annotation>& annotations() const { return m_state.annotations; }
    [[nodiscard]] AnnotationTool tool() const { return m_tool; }
    [[nodiscard]] const AnnotationColor& color() const { return m_color; } // of new marks
    [[nodiscard]] AnnotationSize size() const { return m_size; }           // of new marks
    [[nodiscard]] std::optional<Index> selection() const { return m_state.selection; }
    /// The text that is being typed.
    [[nodiscard]] std::optional<Index> editing() const { return m_editing; }
    [[nodiscard]] bool canUndo() const { return !m_undoStack.isEmpty(); }
    [[nodiscard]] bool canRedo() const { return !m_redoStack.isEmpty(); }
    [[nodiscard]] bool hasPixelatedAreas() const;
    /// Whether leaving would lose something: a crop, or a mark that is no empty text.
    [[nodiscard]] bool hasChanges() const;
    /// Bottom to top: the pixelated areas in list order, then all other marks.
    [[nodiscard]] QList<Index> drawOrder() const;
    /// The step number of a counter, from 1; nothing for any other mark.
    [[nodiscard]] std::optional<int> counterNumber(Index at) const;
    [[nodiscard]] const AnnotationMeasures& measures() const { return m_measures; }

    // What ends a running text edit first is marked *.
    void chooseTool(AnnotationTool tool); // *
    /// Also of the selected mark, if it has one. While a text is typed it is part of that edit's single step.
    void setColor(const AnnotationColor& color);
    void setSize(AnnotationSize size);
    /// That many sizes larger, or as many as there are.
    void changeSize(int steps);
    /// Adds a mark that was dragged, with the tools that drag.
    void place(QPointF from, QPointF to); // *
    /// Adds a mark that was clicked: a counter, or a text, whose typing begins.
    void place(QPointF at); // *

    void beginEditing(Index at);
    void setText(const QString& text);
    /// Removes a text that was left empty. All that was typed becomes one step, or none when nothing changed.
    void endEditing();

    /// Selects markAt(), or nothing.
    void select(QPointF at, double tolerance); // *
    /// The topmost mark within `tolerance` pixels.
    [[nodiscard]] std::optional<Index> markAt(QPointF at, double tolerance) const;
    /// The selected mark's handle in the square of ±`tolerance` pixels around `at`.
    [[nodiscard]] std::optional<AnnotationHandle> selectedHandle(QPointF at, double tolerance) const;
    /// Stops at the edges of the picture.
    void moveSelection(QPointF by); // *
    /// Moves it, too. Nudges that follow each other with nothing between them are one step.
    void nudgeSelection(QPointF by);                            // *
    void reshapeSelection(AnnotationHandle handle, QPointF to); // *, not clamped
    void deleteSelection();                                     // *
    /// Marks, crop and selection; tool, colour and size stay. With the crop tool nothing is selected afterwards.
    void undo(); // *
    void redo(); // *

    /// Snapped to whole pixels inside the picture. Ends a text edit only when the crop changes.
    void setCrop(const QRectF& crop);
    void moveCrop(QPointF by);

    /// Draws `region` of the picture with its marks at the context's origin, each pixel `scale` units large.
    void draw(DrawingContext& in, const QRectF& region, double scale) const;
    /// The marks alone; the text that is being typed as an empty label. Makes the pixelated picture when it is needed
    /// and none is given: a pass over all pixels, so keep one a picture. Marks outside of `region` cost nothing.
    void drawAnnotations(DrawingContext& in, const QRectF& region, double scale,
                         const std::shared_ptr<const Picture>& pixelatedPicture) const;
    /// One pixel a block, each component the truncated mean over the block's pixels. Null when memory is missing.
    [[nodiscard]] std::shared_ptr<const Picture> makePixelatedPicture() const;
    /// The crop with its marks as a new picture. Null when memory is missing.
    [[nodiscard]] std::shared_ptr<const Picture> flatten() const;

    /// What has to be drawn again where `before` of the same picture is on screen: the areas of the marks that differ.
    [[nodiscard]] QList<QRectF> changedAreas(const AnnotationSession& before) const;

private:
    struct Snapshot
    {
        QList<Annotation> annotations;
        QRectF crop;
        std::optional<Index> selection;
    };

    void record();
    void replaceSelected(const Annotation& mark);
    void restyleSelected(const Annotation& mark);
    void travel(QList<Snapshot>& from, QList<Snapshot>& onto);
    [[nodiscard]] const Annotation* selectedMark() const;

    std::shared_ptr<const Picture> m_picture;
    AnnotationMeasures m_measures;
    Snapshot m_state;
    AnnotationTool m_tool = AnnotationTool::arrow;
    AnnotationColor m_color;
    AnnotationSize m_size;
    std::optional<Index> m_editing;
    std::optional<Snapshot> m_editingStart;
    QList<Snapshot> m_undoStack;
    QList<Snapshot> m_redoStack;
    bool m_isNudging = false; // the last step is a run of nudges, and nothing happened since
};

} // namespace ClipboardCore
