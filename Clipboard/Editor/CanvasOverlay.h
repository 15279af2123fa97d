#pragma once

#include <QRectF>

class QPainter;

namespace ClipboardCore {
class AnnotationSession;
}

namespace Clipboard {

class CanvasViewport;

/// What the canvas shows over the picture and is no part of it: the crop and the marks of the selection.
namespace CanvasOverlay {

/// The shade outside the crop; with the crop tool also its frame, its grips and its size. `canvas` is what is visible.
void paintCrop(QPainter& painter, const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport,
               const QRectF& canvas);
/// The handles of the selected mark, or an outline around one that has none.
void paintSelection(QPainter& painter, const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport);
/// All that paintSelection() touches, on the canvas; empty when nothing is selected.
[[nodiscard]] QRectF selectionExtent(const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport);

} // namespace CanvasOverlay

} // namespace Clipboard
