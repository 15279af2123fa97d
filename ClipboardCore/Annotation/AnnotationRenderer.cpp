#include "Annotation/AnnotationRenderer.h"

#include "Annotation/DrawingContext.h"
#include "Annotation/Geometry.h"

namespace ClipboardCore {
namespace {

/// A saved state of the context that is put back at the end of the block.
class SavedState final
{
public:
    explicit SavedState(DrawingContext& context)
        : m_context(context)
    {
        m_context.save();
    }
    ~SavedState() { m_context.restore(); }
    Q_DISABLE_COPY_MOVE(SavedState)

private:
    DrawingContext& m_context;
};

} // namespace

AnnotationRenderer::AnnotationRenderer(const AnnotationSession& session, DrawingContext& context, const QRectF& region,
                                       double scale)
    : m_session(session)
    , m_measures(session.measures())
    , m_context(context)
    , m_visible(Geometry::grown(region, 1 / scale))
{
    m_context.save();
    m_context.scale(scale, scale);
    m_context.translate(-region.topLeft());
    m_context.clip(region);
}

AnnotationRenderer::~AnnotationRenderer()
{
    m_context.restore();
}

void AnnotationRenderer::drawPicture()
{
    m_context.drawPicture(*m_session.picture(), m_session.pictureBounds(), DrawingContext::Interpolation::smooth);
}

void AnnotationRenderer::drawMarks(const Picture* pixelatedPicture)
{
    const QList<AnnotationSession::Index> order = m_session.drawOrder();
    for (const auto index : order) {
        if (Geometry::overlap(m_measures.drawnBounds(m_session.annotations().at(index)), m_visible))
            drawMark(index, pixelatedPicture);
    }
}

void AnnotationRenderer::drawMark(AnnotationSession::Index index, const Picture* pixelatedPicture)
{
    const Annotation& mark = m_session.annotations().at(index);
    const SavedState saved(m_context);
    switch (mark.kind) {
    case Annotation::Kind::arrow:
        return drawArrow(mark);
    case Annotation::Kind::rectangle:
        return m_context.strokeRectangle(mark.spannedRect(), {mark.color, m_measures.strokeWidth(mark)});
    case Annotation::Kind::text:
        return drawText(mark, m_session.editing() == index);
    case Annotation::Kind::highlight:
        m_context.setAlpha(0.4);
        return m_context.fillRectangle(mark.spannedRect(), mark.color);
    case Annotation::Kind::pixelate:
        if (pixelatedPicture)
            drawPixelated(mark, *pixelatedPicture);
        return;
    case Annotation::Kind::counter:
        return drawCounter(mark, *m_session.counterNumber(index));
    }
}

void AnnotationRenderer::drawArrow(const Annotation& mark)
{
    const QPointF way = mark.end - mark.start;
    const double length = Geometry::length(way);
    if (length == 0)
        return;
    const QPointF direction = way / length;
    const double head = m_measures.arrowHeadLength(mark);
    const QPointF base = mark.end - direction * head;
    // The shaft goes on into the head, which covers its round end.
    m_context.strokeLine(mark.start, base + direction * (0.3 * head),
                         {mark.color, m_measures.strokeWidth(mark), Pen::Cap::round});
    const QPointF aside = QPointF(-direction.y(), direction.x()) * (head / 2);
    m_context.fillPolygon(std::array{mark.end, base + aside, base - aside}, mark.color);
}

void AnnotationRenderer::drawPixelated(const Annotation& mark, const Picture& pixelatedPicture)
{
    // The blocks of all areas line up, whatever their corners.
    m_context.clip(mark.spannedRect());
    m_context.drawPicture(pixelatedPicture,
                          {QPointF(), QSizeF(pixelatedPicture.size()) * m_measures.pixelateBlockSize()},
                          DrawingContext::Interpolation::none);
}

void AnnotationRenderer::drawCounter(const Annotation& mark, int number)
{
    const double diameter = m_measures.counterDiameter(mark);
    m_context.fillEllipse(m_measures.bounds(mark), mark.color);

    const TextLine digits{QString::number(number), {diameter * 0.55}, mark.color.contrasting()};
    const QRectF glyphs = m_measures.textLayout().glyphBounds(digits.text, digits.font);
    const double room = diameter * 0.7;
    const double shrunk = std::min(1.0, glyphs.width() > 1 ? room / glyphs.width() : room);
    m_context.translate(mark.start);
    m_context.scale(shrunk, shrunk);
    m_context.drawText(digits, -glyphs.center());
}

void AnnotationRenderer::drawText(const Annotation& mark, bool isBeingTyped)
{
    m_context.fillRoundedRectangle(m_measures.textLabel(mark), m_measures.textLabelRadius(mark), mark.color);
    if (isBeingTyped)
        return; // the live editor stands over the label
    QPointF baseline = m_measures.firstBaseline(mark);
    const QList<TextLine> lines = m_measures.textLines(mark);
    for (const TextLine& line : lines) {
        m_context.drawText(line, baseline);
        baseline.ry() += m_measures.lineHeight(mark);
    }
}

} // namespace ClipboardCore
