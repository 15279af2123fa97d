#pragma once

#include "Annotation/TextLayout.h"

#include <QCache>
#include <QMutex>
#include <QPainterPath>
#include <QStringList>

#include <memory>

class QColor;
class QPainter;

namespace Clipboard {

/// Lays out lines in the bold interface font, once and at one large size, and scales what it found: every measure and
/// every outline is exactly proportional to the size of the font. Made on the main thread, used on any.
class QtTextLayout final : public ClipboardCore::TextLayout
{
public:
    QtTextLayout();

    [[nodiscard]] ClipboardCore::FontMetrics metrics(ClipboardCore::TextFont of) const override;
    [[nodiscard]] double width(const QString& line, ClipboardCore::TextFont font) const override;
    [[nodiscard]] QRectF glyphBounds(const QString& line, ClipboardCore::TextFont font) const override;

    /// How far from the line's origin the caret stands before the character at `position`, 0 to the line's length.
    [[nodiscard]] double caretX(const QString& line, ClipboardCore::TextFont font, qsizetype position) const;
    /// The position between two characters that is nearest to `x`, and never inside one that is seen as one.
    [[nodiscard]] qsizetype positionAt(const QString& line, ClipboardCore::TextFont font, double x) const;

    void draw(QPainter& painter, const ClipboardCore::TextLine& line, QPointF baseline, const QColor& color) const;

private:
    /// A line at the reference size, seen from its origin on the baseline.
    struct Line
    {
        double width = 0;
        QRectF bounds;
        QPainterPath outlines;
        bool hasPictures = false; // glyphs without an outline, such as coloured emoji
        QList<double> carets;     // one a position
        QList<bool> isStop;       // whether the caret can stand there
    };
    using SharedLine = std::shared_ptr<const Line>;

    [[nodiscard]] SharedLine line(const QString& text) const;
    [[nodiscard]] Line layOut(const QString& text) const;

    QStringList m_families;
    ClipboardCore::FontMetrics m_metrics; // at the reference size
    mutable QMutex m_mutex;
    mutable QCache<QString, SharedLine> m_lines;
};

} // namespace Clipboard
