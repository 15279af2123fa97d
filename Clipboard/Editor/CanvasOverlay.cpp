#include "CanvasOverlay.h"

#include "Annotation/AnnotationSession.h"
#include "Annotation/Geometry.h"
#include "CanvasViewport.h"
#include "Painting.h"
#include "Theme.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPainter>

#include <array>
#include <cmath>

using ClipboardCore::Annotation;
using ClipboardCore::AnnotationSession;

namespace Clipboard {

namespace {

constexpr QColor shade = Theme::rgb(0x08090C, 158);
constexpr QColor darkEdge = Theme::rgb(0x000000, 128);
constexpr QColor gripEdge = Theme::rgb(0x000000, 140);
constexpr QColor handleEdge = Theme::rgb(0x000000, 115);

constexpr double handleSize = 10;
constexpr double handleRing = 2;
constexpr double handleReach = handleSize / 2 + handleRing + 1;

constexpr double angleLength = 18;
constexpr double barLength = 24;
constexpr double gripWidth = 4;
// Shorter sides have no room for a bar between their angles.
constexpr double shortestSideWithBar = 2 * angleLength + barLength + 8;

constexpr double sizeLabelHeight = 24;
constexpr double sizeLabelPadding = 8;
constexpr double sizeLabelRadius = 6;
constexpr double sizeLabelDistance = 12;

/// The crop on the canvas. On whole pixels, where its lines are sharp and its shade is filled without blending edges.
QRect placeOf(const QRectF& crop, const CanvasViewport& viewport)
{
    const QRectF place = viewport.toCanvas(crop);
    return {place.topLeft().toPoint(), place.bottomRight().toPoint() - QPoint(1, 1)};
}

void paintShade(QPainter& painter, const QRectF& picture, const QRect& crop, const QRect& part)
{
    const QRegion outside = QRegion(picture.toAlignedRect() & part) - crop;
    for (const QRect& rect : outside)
        painter.fillRect(QRectF(rect) & picture, shade);
}

void paintFrame(QPainter& painter, const QRectF& crop)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(darkEdge, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(crop.adjusted(-0.5, -0.5, 0.5, 0.5));
    painter.setPen(QPen(Qt::white, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(crop.adjusted(0.5, 0.5, -0.5, -0.5));
}

void paintAngle(QPainter& painter, QPointF corner, QPointF inward)
{
    const std::array points{corner + QPointF(0, inward.y() * angleLength), corner,
                            corner + QPointF(inward.x() * angleLength, 0)};
    for (const auto& [color, width] : {std::pair(gripEdge, gripWidth + 2), std::pair(QColor(Qt::white), gripWidth)}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    }
}

void paintBar(QPainter& painter, QPointF middle, QSizeF size)
{
    const QRectF bar(middle - QPointF(size.width(), size.height()) / 2, size);
    Painting::roundedFill(painter, bar.adjusted(-1, -1, 1, 1), gripWidth / 2 + 1, darkEdge);
    Painting::roundedFill(painter, bar, gripWidth / 2, Qt::white);
}

void paintGrips(QPainter& painter, const QRectF& crop)
{
    painter.setBrush(Qt::NoBrush);
    paintAngle(painter, crop.topLeft(), {1, 1});
    paintAngle(painter, crop.topRight(), {-1, 1});
    paintAngle(painter, crop.bottomLeft(), {1, -1});
    paintAngle(painter, crop.bottomRight(), {-1, -1});
    if (crop.width() >= shortestSideWithBar) {
        paintBar(painter, {crop.center().x(), crop.top()}, {barLength, gripWidth});
        paintBar(painter, {crop.center().x(), crop.bottom()}, {barLength, gripWidth});
    }
    if (crop.height() >= shortestSideWithBar) {
        paintBar(painter, {crop.left(), crop.center().y()}, {gripWidth, barLength});
        paintBar(painter, {crop.right(), crop.center().y()}, {gripWidth, barLength});
    }
}

QString sizeText(QSizeF pixels)
{
    const QLocale locale;
    return QCoreApplication::translate("CanvasOverlay", "%1 × %2")
        .arg(locale.toString(qRound(pixels.width())), locale.toString(qRound(pixels.height())));
}

/// Below the crop, or inside of it where there is no room.
QRectF sizeLabel(const QString& text, const QRectF& crop, const QRectF& canvas)
{
    const double width = std::ceil(Fonts::width(Fonts::chip, text)) + 2 * sizeLabelPadding;
    double top = crop.bottom() + sizeLabelDistance;
    if (top + sizeLabelHeight > canvas.bottom())
        top = std::min(crop.bottom(), canvas.bottom()) - sizeLabelDistance - sizeLabelHeight;
    return {std::round(crop.center().x() - width / 2), std::round(top), width, sizeLabelHeight};
}

void paintSize(QPainter& painter, QSizeF pixels, const QRectF& crop, const QRectF& canvas)
{
    const QString text = sizeText(pixels);
    const QRectF label = sizeLabel(text, crop, canvas);
    Painting::roundedFill(painter, label, sizeLabelRadius, Theme::raised, Theme::outline);
    Painting::textLine(painter, label, Fonts::chip, Theme::text, text, Qt::AlignHCenter);
}

/// What the frame with its grips and the size label cover.
QRegion frameExtent(const QRectF& pixels, const CanvasViewport& viewport, const QRectF& canvas)
{
    constexpr int reach = static_cast<int>(gripWidth);
    const QRect crop = placeOf(pixels, viewport);
    const QRegion frame =
        QRegion(crop.adjusted(-reach, -reach, reach, reach)) - crop.adjusted(reach, reach, -reach, -reach);
    return frame | sizeLabel(sizeText(pixels.size()), crop, canvas).toAlignedRect().adjusted(-1, -1, 1, 1);
}

const Annotation* selectedMark(const AnnotationSession& session)
{
    return session.selection() ? &session.annotations().at(*session.selection()) : nullptr;
}

void paintHandle(QPainter& painter, QPointF at)
{
    painter.setPen(Qt::NoPen);
    const auto disc = [&](double radius, const QColor& color) {
        painter.setBrush(color);
        painter.drawEllipse(at, radius, radius);
    };
    painter.setPen(QPen(handleEdge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(at, handleReach - 0.5, handleReach - 0.5);
    painter.setPen(Qt::NoPen);
    disc(handleSize / 2 + handleRing, Theme::accentPress);
    disc(handleSize / 2, Qt::white);
}

double outlineRadius(const AnnotationSession& session, const Annotation& mark, const CanvasViewport& viewport)
{
    const auto& measures = session.measures();
    const bool isText = mark.kind == Annotation::Kind::text;
    return viewport.scale() * (isText ? measures.textLabelRadius(mark) : measures.counterDiameter(mark) / 2);
}

} // namespace

void CanvasOverlay::paintCrop(QPainter& painter, const AnnotationSession& session, const CanvasViewport& viewport,
                              const QRectF& canvas, const QRect& part)
{
    const bool isCropping = session.tool() == ClipboardCore::AnnotationTool::crop;
    if (!isCropping && session.crop() == session.pictureBounds())
        return;
    const QRect place = placeOf(session.crop(), viewport);
    const QRectF crop(place);
    painter.save();
    paintShade(painter, viewport.pictureRect(), place, part);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isCropping && frameExtent(session.crop(), viewport, canvas).intersects(part)) {
        paintFrame(painter, crop);
        paintGrips(painter, crop);
        paintSize(painter, session.crop().size(), crop, canvas);
    }
    painter.restore();
}

QRegion CanvasOverlay::cropChange(const AnnotationSession& before, const AnnotationSession& after,
                                  const CanvasViewport& viewport, const QRectF& canvas)
{
    const QRegion shades = QRegion(placeOf(before.crop(), viewport)).xored(placeOf(after.crop(), viewport));
    return shades | frameExtent(before.crop(), viewport, canvas) | frameExtent(after.crop(), viewport, canvas);
}

void CanvasOverlay::paintSelection(QPainter& painter, const AnnotationSession& session, const CanvasViewport& viewport)
{
    const Annotation* mark = selectedMark(session);
    if (mark == nullptr)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const auto handles = mark->handles();
    for (const auto handle : handles)
        paintHandle(painter, viewport.toCanvas(mark->position(handle)));
    if (handles.empty())
        Painting::focusRing(painter, viewport.toCanvas(session.measures().bounds(*mark)),
                            outlineRadius(session, *mark, viewport));
    painter.restore();
}

QRectF CanvasOverlay::selectionExtent(const AnnotationSession& session, const CanvasViewport& viewport)
{
    const Annotation* mark = selectedMark(session);
    if (mark == nullptr)
        return {};
    const QRectF bounds = viewport.toCanvas(session.measures().bounds(*mark));
    return ClipboardCore::Geometry::grown(bounds, std::max<double>(handleReach, Theme::ringOutset) + 1);
}

} // namespace Clipboard
