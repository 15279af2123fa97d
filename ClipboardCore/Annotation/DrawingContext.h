#pragma once

#include "Annotation/AnnotationColor.h"
#include "Annotation/TextLayout.h"

#include <QPointF>
#include <QRectF>

#include <cstdint>
#include <memory>
#include <span>

namespace ClipboardCore {

class Picture;

/// How a line is stroked. Corners are joined round.
struct Pen
{
    enum class Cap { butt, round };

    AnnotationColor color;
    double width = 1; // in the units of the current transform, centred on the line
    Cap cap = Cap::butt;
};

/// Something to draw on: a window or a bitmap. x grows to the right, y downward, the origin is the top left corner.
/// Edges are antialiased; what is drawn covers what is there (source over). Each context is used by one thread at a
/// time.
class DrawingContext
{
public:
    enum class Interpolation { none, smooth };

    DrawingContext() = default;
    virtual ~DrawingContext() = default;
    Q_DISABLE_COPY_MOVE(DrawingContext)

    /// The transform, the clip and the alpha; calls nest and come in pairs.
    virtual void save() = 0;
    virtual void restore() = 0;
    // Each applies to what is drawn later, in the coordinates that the calls before it made.
    virtual void translate(QPointF by) = 0;
    virtual void scale(double x, double y) = 0;
    /// Narrows the clip to what it has in common with `to`.
    virtual void clip(const QRectF& to) = 0;
    /// The opacity, 0 to 1, of all that is drawn; replaces the one before. 1 at first.
    virtual void setAlpha(double alpha) = 0;

    virtual void fillRectangle(const QRectF& rect, const AnnotationColor& color) = 0;
    virtual void fillRoundedRectangle(const QRectF& rect, double radius, const AnnotationColor& color) = 0;
    virtual void fillEllipse(const QRectF& in, const AnnotationColor& color) = 0;
    /// Non-zero winding rule; the last corner is joined to the first.
    virtual void fillPolygon(std::span<const QPointF> corners, const AnnotationColor& color) = 0;
    virtual void strokeRectangle(const QRectF& rect, const Pen& pen) = 0;
    virtual void strokeLine(QPointF from, QPointF to, const Pen& pen) = 0;
    /// Stretches the whole picture over `into`, upright.
    virtual void drawPicture(const Picture& picture, const QRectF& into, Interpolation interpolation) = 0;
    /// Draws the line with its origin, on the baseline, at `baseline`: exactly the glyphs that TextLayout measures.
    virtual void drawText(const TextLine& line, QPointF baseline) = 0;
};

/// A context that draws into memory, in the pixels of Picture.
class BitmapContext : public DrawingContext
{
public:
    /// Row `y` from the top, to be written in place: width × 4 bytes.
    [[nodiscard]] virtual std::span<std::uint8_t> row(int y) = 0;
    /// What was drawn, without a copy; nothing may be drawn or written afterwards.
    [[nodiscard]] virtual std::shared_ptr<const Picture> takePicture() = 0;
};

} // namespace ClipboardCore
