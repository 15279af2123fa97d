#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

namespace Clipboard {

/// Where on the canvas a picture is seen, and how large. Canvas lengths are logical pixels. The picture covers whole
/// device pixels, so that what is scaled for it is shown as it is.
class CanvasViewport final
{
public:
    /// What stays free around the picture when it is fitted, or moved as far as it goes.
    static constexpr double margin = 36;

    /// Another picture: it is fitted.
    void setPicture(QSize pixels);
    /// The canvas has another size. A fitted picture is fitted again; else the middle stays in the middle.
    void setCanvas(QSizeF size, double devicePixelRatio);

    /// Logical pixels a picture pixel.
    [[nodiscard]] double scale() const { return m_scale; }
    [[nodiscard]] bool isFitted() const { return m_isFitted; }
    /// What the picture covers of the canvas: whole device pixels.
    [[nodiscard]] QRectF pictureRect() const { return {m_origin, QSizeF(devicePixels()) / m_devicePixelRatio}; }
    /// The picture's size on the screen in device pixels.
    [[nodiscard]] QSize devicePixels() const;

    [[nodiscard]] QPointF toPicture(QPointF canvas) const { return (canvas - m_origin) / m_scale; }
    [[nodiscard]] QRectF toPicture(const QRectF& canvas) const;
    [[nodiscard]] QPointF toCanvas(QPointF picture) const { return picture * m_scale + m_origin; }
    [[nodiscard]] QRectF toCanvas(const QRectF& picture) const;

    /// All of the picture, not enlarged.
    void fit();
    /// One picture pixel a device pixel.
    void showActualSize(QPointF around);
    /// What is seen at `around` stays there. Bounded on both sides.
    void zoomBy(double factor, QPointF around);
    void pan(QPointF by);

private:
    [[nodiscard]] double fittedScale() const;
    [[nodiscard]] double snapped(double scale) const;
    void zoomTo(double scale, QPointF around);
    void settle();

    QSize m_picture{1, 1};
    QSizeF m_canvas{1, 1};
    double m_devicePixelRatio = 1;
    double m_scale = 1;
    QPointF m_origin; // of the picture on the canvas
    bool m_isFitted = true;
};

} // namespace Clipboard
