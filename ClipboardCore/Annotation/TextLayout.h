#pragma once

#include "Annotation/AnnotationColor.h"

#include <QRectF>
#include <QString>

namespace ClipboardCore {

/// The system's emphasized (bold) interface font at a size in pixels; "Helvetica-Bold" where there is none.
struct TextFont
{
    double size = 0;
    bool operator==(const TextFont&) const = default;
};

/// What lines of a font have in common, in pixels, all of them positive.
struct FontMetrics
{
    double ascent = 0;
    double descent = 0;
    double leading = 0;

    [[nodiscard]] double lineHeight() const { return ascent + descent + leading; }
};

/// One line of text, ready to be drawn. It holds no line feed.
struct TextLine
{
    QString text;
    TextFont font;
    AnnotationColor color;
};

/// Measures lines of text, unhinted, so that a measure does not depend on the scale at which a line is drawn.
/// Every call may come from any thread. Callers ask for the same few lines again and again: keep what was laid out.
class TextLayout
{
public:
    TextLayout() = default;
    virtual ~TextLayout() = default;
    Q_DISABLE_COPY_MOVE(TextLayout)

    [[nodiscard]] virtual FontMetrics metrics(TextFont of) const = 0;
    /// The typographic width: how far the pen moves. 0 for an empty line.
    [[nodiscard]] virtual double width(const QString& line, TextFont font) const = 0;
    /// The box around what the glyphs paint, seen from the line's origin on the baseline, y downward, so that what
    /// rises above the baseline has a negative y. Empty when nothing is painted.
    [[nodiscard]] virtual QRectF glyphBounds(const QString& line, TextFont font) const = 0;
};

} // namespace ClipboardCore
