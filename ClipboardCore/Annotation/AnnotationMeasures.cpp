#include "Annotation/AnnotationMeasures.h"

#include "Annotation/Geometry.h"

#include <utility>

namespace ClipboardCore {
namespace {

int longestSide(QSize size)
{
    return std::max(size.width(), size.height());
}

} // namespace

AnnotationMeasures::AnnotationMeasures(QSize picture, std::shared_ptr<const TextLayout> textLayout)
    : m_picture(picture)
    , m_textLayout(std::move(textLayout))
{
}

double AnnotationMeasures::strokeWidth(const Annotation& of) const
{
    return ClipboardCore::strokeWidth(of.size, longestSide(m_picture));
}

double AnnotationMeasures::arrowHeadLength(const Annotation& of) const
{
    constexpr double headPerStroke = 5.5;
    return std::min(Geometry::length(of.end - of.start), headPerStroke * strokeWidth(of));
}

double AnnotationMeasures::counterDiameter(const Annotation& of) const
{
    return ClipboardCore::counterDiameter(of.size, longestSide(m_picture));
}

int AnnotationMeasures::pixelateBlockSize() const
{
    constexpr double blockPerSide = 0.01;
    constexpr int smallestBlock = 20;
    return std::max(static_cast<int>(std::round(longestSide(m_picture) * blockPerSide)), smallestBlock);
}

TextFont AnnotationMeasures::textFont(const Annotation& of) const
{
    return {fontSize(of.size, longestSide(m_picture))};
}

QSizeF AnnotationMeasures::textPadding(const Annotation& of) const
{
    const double size = textFont(of).size;
    return {std::round(size * 0.4), std::round(size * 0.2)};
}

QRectF AnnotationMeasures::textLabel(const Annotation& of) const
{
    const QList<TextLine> lines = textLines(of);
    double widest = 0;
    for (const TextLine& line : lines)
        widest = std::max(widest, m_textLayout->width(line.text, line.font));
    const QSizeF padding = textPadding(of);
    return {of.start, QSizeF(std::ceil(widest) + 2 * padding.width(),
                             2 * padding.height() + static_cast<double>(lines.size()) * lineHeight(of))};
}

double AnnotationMeasures::textLabelRadius(const Annotation& of) const
{
    const QRectF label = textLabel(of);
    return std::min({textFont(of).size * 0.3, label.height() / 2, label.width() / 2});
}

QList<TextLine> AnnotationMeasures::textLines(const Annotation& of) const
{
    QList<TextLine> lines;
    const QList<QStringView> pieces = QStringView(of.text).split(u'\n');
    for (const QStringView piece : pieces)
        lines.append({piece.toString(), textFont(of), of.color.contrasting()});
    return lines;
}

QPointF AnnotationMeasures::firstBaseline(const Annotation& of) const
{
    const QSizeF padding = textPadding(of);
    return of.start + QPointF(padding.width(), padding.height() + m_textLayout->metrics(textFont(of)).ascent);
}

double AnnotationMeasures::lineHeight(const Annotation& of) const
{
    return m_textLayout->metrics(textFont(of)).lineHeight();
}

QRectF AnnotationMeasures::bounds(const Annotation& of) const
{
    switch (of.kind) {
    case Annotation::Kind::arrow:
    case Annotation::Kind::rectangle:
    case Annotation::Kind::highlight:
    case Annotation::Kind::pixelate:
        return of.spannedRect();
    case Annotation::Kind::text:
        return textLabel(of);
    case Annotation::Kind::counter:
        return Geometry::grown(of.spannedRect(), counterDiameter(of) / 2);
    }
    Q_UNREACHABLE();
}

QRectF AnnotationMeasures::drawnBounds(const Annotation& of) const
{
    switch (of.kind) {
    case Annotation::Kind::arrow:
        return Geometry::grown(of.spannedRect(), std::max(arrowHeadLength(of), strokeWidth(of)) / 2);
    case Annotation::Kind::rectangle:
        return Geometry::grown(of.spannedRect(), strokeWidth(of) / 2);
    case Annotation::Kind::text: {
        QRectF drawn = textLabel(of);
        QPointF baseline = firstBaseline(of);
        const QList<TextLine> lines = textLines(of);
        for (const TextLine& line : lines) {
            drawn |= m_textLayout->glyphBounds(line.text, line.font).translated(baseline);
            baseline.ry() += lineHeight(of);
        }
        return drawn;
    }
    case Annotation::Kind::highlight:
    case Annotation::Kind::pixelate:
    case Annotation::Kind::counter:
        return bounds(of);
    }
    Q_UNREACHABLE();
}

bool AnnotationMeasures::isHit(const Annotation& mark, QPointF point, double tolerance) const
{
    switch (mark.kind) {
    case Annotation::Kind::arrow:
    case Annotation::Kind::rectangle:
        return mark.isHit(point, tolerance + strokeWidth(mark) / 2);
    case Annotation::Kind::text:
        return Geometry::contains(Geometry::grown(textLabel(mark), tolerance), point);
    case Annotation::Kind::highlight:
    case Annotation::Kind::pixelate:
        return mark.isHit(point, tolerance);
    case Annotation::Kind::counter:
        return mark.isHit(point, tolerance + counterDiameter(mark) / 2);
    }
    Q_UNREACHABLE();
}

} // namespace ClipboardCore
