#include "QtTextLayout.h"

#include "Fonts.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QMutexLocker>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <limits>

using ClipboardCore::FontMetrics;
using ClipboardCore::TextFont;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

// Large enough that the sixty-fourths of a pixel in which outlines are given do not show at any size.
constexpr int referenceSize = 128;
constexpr qsizetype keptLines = 256; // labels and counters of a document that is full of them

double scaleOf(TextFont font)
{
    return font.size / referenceSize;
}

/// A font of its own each time: copies share what is loaded with them, which one thread may use at a time.
QFont referenceFont(const QStringList& families)
{
    QFont font(families);
    font.setPixelSize(referenceSize);
    font.setWeight(QFont::Bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QRectF scaled(const QRectF& rect, double by)
{
    return {rect.topLeft() * by, rect.size() * by};
}

} // namespace

QtTextLayout::QtTextLayout()
    : m_families(Fonts::font(Fonts::body).families() << u"Helvetica"_s)
    , m_lines(keptLines)
{
    const QFontMetricsF metrics(referenceFont(m_families));
    m_metrics = {metrics.ascent(), metrics.descent(), std::max(metrics.leading(), 0.0)};
}

FontMetrics QtTextLayout::metrics(TextFont of) const
{
    const double scale = scaleOf(of);
    return {m_metrics.ascent * scale, m_metrics.descent * scale, m_metrics.leading * scale};
}

double QtTextLayout::width(const QString& line, TextFont font) const
{
    return this->line(line)->width * scaleOf(font);
}

QRectF QtTextLayout::glyphBounds(const QString& line, TextFont font) const
{
    return scaled(this->line(line)->bounds, scaleOf(font));
}

double QtTextLayout::caretX(const QString& line, TextFont font, qsizetype position) const
{
    return this->line(line)->carets.at(position) * scaleOf(font);
}

qsizetype QtTextLayout::positionAt(const QString& line, TextFont font, double x) const
{
    const SharedLine laidOut = this->line(line);
    const double wanted = x / scaleOf(font);
    qsizetype nearest = 0;
    for (qsizetype i = 1; i < laidOut->carets.size(); ++i) {
        if (laidOut->isStop[i] && std::abs(laidOut->carets[i] - wanted) < std::abs(laidOut->carets[nearest] - wanted))
            nearest = i;
    }
    return nearest;
}

void QtTextLayout::draw(QPainter& painter, const ClipboardCore::TextLine& line, QPointF baseline,
                        const QColor& color) const
{
    const SharedLine laidOut = this->line(line.text);
    painter.save();
    painter.translate(baseline);
    painter.scale(scaleOf(line.font), scaleOf(line.font));
    if (laidOut->hasPictures) {
        painter.setPen(color);
        painter.setFont(referenceFont(m_families));
        painter.drawText(QPointF(), line.text);
    } else {
        // A path caches what it is drawn from, so each thread draws one of its own.
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawPath(QTransform().map(laidOut->outlines));
    }
    painter.restore();
}

QtTextLayout::SharedLine QtTextLayout::line(const QString& text) const
{
    const QMutexLocker locker(&m_mutex);
    if (const SharedLine* known = m_lines.object(text))
        return *known;
    auto laidOut = std::make_shared<const Line>(layOut(text));
    m_lines.insert(text, new SharedLine(laidOut)); // the cache owns it
    return laidOut;
}

QtTextLayout::Line QtTextLayout::layOut(const QString& text) const
{
    QString oneLine = text;
    oneLine.replace(QChar::LineSeparator, u' ').replace(QChar::ParagraphSeparator, u' ');
    QTextLayout layout(oneLine, referenceFont(m_families));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setUseDesignMetrics(true);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(std::numeric_limits<int>::max() / 256.0); // the toolkit counts in sixty-fourths
    layout.endLayout();

    Line result;
    result.outlines.setFillRule(Qt::WindingFill);
    result.width = line.naturalTextWidth();
    const double left = line.naturalTextRect().left(); // a line from right to left ends at the far right
    const QPointF origin(left, line.y() + line.ascent());
    for (const QGlyphRun& run : line.glyphRuns()) {
        const QRawFont font = run.rawFont();
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size(); ++i) {
            const QPointF at = positions[i] - origin;
            const QPainterPath outline = font.pathForGlyph(glyphs[i]).translated(at);
            const QRectF picture = outline.isEmpty() ? font.boundingRect(glyphs[i]).translated(at) : QRectF();
            result.outlines.addPath(outline);
            result.bounds |= outline.boundingRect() | picture;
            result.hasPictures = result.hasPictures || !picture.isEmpty();
        }
    }
    for (int position = 0; position <= text.size(); ++position) {
        result.carets.append(line.cursorToX(position) - left);
        result.isStop.append(layout.isValidCursorPosition(position));
    }
    return result;
}

} // namespace Clipboard
