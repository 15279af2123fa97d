#pragma once

#include "Annotation/Annotation.h"
#include "Annotation/TextLayout.h"

#include <QList>
#include <QSize>
#include <QSizeF>

#include <memory>

namespace ClipboardCore {

/// How large marks are on one picture, in its pixels. A cheap value.
class AnnotationMeasures final
{
public:
    AnnotationMeasures(QSize picture, std::shared_ptr<const TextLayout> textLayout);

    [[nodiscard]] double strokeWidth(const Annotation& of) const;
    /// As wide at its base as it is long; no longer than the arrow.
    [[nodiscard]] double arrowHeadLength(const Annotation& of) const;
    [[nodiscard]] double counterDiameter(const Annotation& of) const;
    /// The side of a block of the pixelated picture.
    [[nodiscard]] int pixelateBlockSize() const;

    [[nodiscard]] TextFont textFont(const Annotation& of) const;
    /// Between the label's edge and its text: to the left and right, and above and below.
    [[nodiscard]] QSizeF textPadding(const Annotation& of) const;
    /// The label's rectangle: as wide as its widest line, rounded up, and its padding. An empty text is one line.
    [[nodiscard]] QRectF textLabel(const Annotation& of) const;
    [[nodiscard]] double textLabelRadius(const Annotation& of) const;
    /// One line a piece of the text between line feeds, in the colour that is read best on the mark's.
    [[nodiscard]] QList<TextLine> textLines(const Annotation& of) const;
    /// Where the first line begins on its baseline, and how far down the next one is.
    [[nodiscard]] QPointF firstBaseline(const Annotation& of) const;
    [[nodiscard]] double lineHeight(const Annotation& of) const;

    /// What is kept inside the picture when the mark moves: strokes are not counted.
    [[nodiscard]] QRectF bounds(const Annotation& of) const;
    /// All that drawing the mark can touch, up to the blur of its edges: strokes, arrow heads and overhanging glyphs
    /// too.
    [[nodiscard]] QRectF drawnBounds(const Annotation& of) const;
    /// Whether `point` is within `tolerance` of the mark as it is seen.
    [[nodiscard]] bool isHit(const Annotation& mark, QPointF point, double tolerance) const;

    [[nodiscard]] const TextLayout& textLayout() const { return *m_textLayout; }

private:
    QSize m_picture;
    std::shared_ptr<const TextLayout> m_textLayout;
};

} // namespace ClipboardCore
