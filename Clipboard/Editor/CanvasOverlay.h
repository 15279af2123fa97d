#pragma once

#include <QRectF>
#include <QRegion>

class QPainter;

namespace ClipboardCore {
class AnnotationSession;
}

namespace Clipboard {

class CanvasViewport;

/// What the canvas shows over the picture and is no part of it: the crop and the marks of the selection.
namespace CanvasOverlay {

/// The shade outside the crop; with the crop tool also its frame, its grips and its size. Only what lies in `part` of
/// the canvas need be drawn.
void paintCrop(QPainter& painter, const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport,
               const QRectF& canvas, const QRect& part);
/// Where paintCrop() draws differently for two crops.
[[nodiscard]] QRegion cropChange(const ClipboardCore::AnnotationSession& before,
                                 const ClipboardCore::AnnotationSession& after, const CanvasViewport& viewport,
                                 const QRectF& canvas);
/// The handles of the selected mark, or an outline around one that has none.
void paintSelection(QPainter& painter, const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport);
/// All that paintSelection() touches, on the canvas; empty when nothing is selected.
[[nodiscard]] QRectF selectionExtent(const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport);

} // namespace CanvasOverlay

} // namespace Clipboard
