#pragma once

#include <QRect>

class QImage;
class QPainter;

namespace Clipboard {

class CanvasViewport;

/// What lies under the marks: the picture on the ground of the canvas.
namespace CanvasGround {

/// The ground alone.
void paint(QPainter& painter, const QRect& part);
/// The ground, the picture's shadow and outline and the picture, as far as they lie in `part` of the canvas. `image` is
/// the picture, perhaps scaled down.
void paintPicture(QPainter& painter, const QImage& image, const CanvasViewport& viewport, const QRect& part);

} // namespace CanvasGround

} // namespace Clipboard
