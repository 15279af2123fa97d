#include "CanvasViewport.h"

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr double largestScale = 16; // device pixels a picture pixel: single pixels can be told apart and hit

/// Where a span of `length` begins on a canvas: in the middle when it fits, else anywhere that leaves no gap wider than
/// the margin.
double settled(double start, double length, double room)
{
    if (length <= room - 2 * CanvasViewport::margin)
        return (room - length) / 2;
    return std::clamp(start, room - CanvasViewport::margin - length, CanvasViewport::margin);
}

} // namespace

void CanvasViewport::setPicture(QSize pixels)
{
    m_picture = pixels;
    fit();
}

void CanvasViewport::setCanvas(QSizeF size, double devicePixelRatio)
{
    const QSizeF grown = (size - m_canvas) / 2;
    m_canvas = size;
    m_devicePixelRatio = devicePixelRatio;
    if (m_isFitted)
        return fit();
    m_origin += QPointF(grown.width(), grown.height());
    m_scale = snapped(m_scale);
    settle();
}

QSize CanvasViewport::devicePixels() const
{
    return (QSizeF(m_picture) * m_scale * m_devicePixelRatio).toSize().expandedTo({1, 1});
}

QRectF CanvasViewport::toPicture(const QRectF& canvas) const
{
    return {toPicture(canvas.topLeft()), canvas.size() / m_scale};
}

QRectF CanvasViewport::toCanvas(const QRectF& picture) const
{
    return {toCanvas(picture.topLeft()), picture.size() * m_scale};
}

double CanvasViewport::fittedScale() const
{
    const double across = (m_canvas.width() - 2 * margin) / m_picture.width();
    const double down = (m_canvas.height() - 2 * margin) / m_picture.height();
    return snapped(std::min({across, down, 1.0}));
}

/// The nearest scale at which the longer side covers whole device pixels.
double CanvasViewport::snapped(double scale) const
{
    const int longest = std::max(m_picture.width(), m_picture.height());
    return std::max(std::round(longest * scale * m_devicePixelRatio), 1.0) / (longest * m_devicePixelRatio);
}

void CanvasViewport::fit()
{
    m_isFitted = true;
    m_scale = fittedScale();
    settle();
}

void CanvasViewport::showActualSize(QPointF around)
{
    zoomTo(1 / m_devicePixelRatio, around);
}

void CanvasViewport::zoomBy(double factor, QPointF around)
{
    const double smallest = std::min(fittedScale(), 1 / m_devicePixelRatio);
    zoomTo(std::clamp(m_scale * factor, smallest, largestScale / m_devicePixelRatio), around);
}

void CanvasViewport::zoomTo(double scale, QPointF around)
{
    const QPointF fixed = toPicture(around);
    m_scale = snapped(scale);
    m_isFitted = m_scale == fittedScale();
    m_origin = around - fixed * m_scale;
    settle();
}

void CanvasViewport::pan(QPointF by)
{
    m_origin += by;
    settle();
}

void CanvasViewport::settle()
{
    const QSizeF size = QSizeF(m_picture) * m_scale;
    const auto onDevicePixel = [this](double length) {
        return std::round(length * m_devicePixelRatio) / m_devicePixelRatio;
    };
    m_origin = {onDevicePixel(settled(m_origin.x(), size.width(), m_canvas.width())),
                onDevicePixel(settled(m_origin.y(), size.height(), m_canvas.height()))};
}

} // namespace Clipboard
