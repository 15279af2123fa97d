#pragma once

#include "Annotation/DrawingContext.h"
#include "Annotation/Picture.h"
#include "QtTextLayout.h"

#include <QColorTransform>
#include <QImage>
#include <QPainter>

#include <memory>
#include <optional>

/// The drawing ports of the annotation editor on QPainter and QImage.
namespace Clipboard {

/// A picture of the toolkit, 8 bits a component. It keeps its colour space, and nothing else that came with it.
class QtPicture final : public ClipboardCore::Picture
{
public:
    /// Converts an image of any format; takes its time. The image must not be null.
    QtPicture(QImage image, std::shared_ptr<const QtTextLayout> textLayout);

    [[nodiscard]] const QImage& image() const { return m_image; }
    [[nodiscard]] QSize size() const override { return m_image.size(); }
    [[nodiscard]] std::span<const std::uint8_t> row(int y) const override;
    [[nodiscard]] std::unique_ptr<ClipboardCore::BitmapContext> rgbaContext(QSize size) const override;

    /// The toolkit's image of any picture: there are no others.
    [[nodiscard]] static const QImage& imageOf(const ClipboardCore::Picture& picture);

private:
    QImage m_image;
    std::shared_ptr<const QtTextLayout> m_textLayout;
};

/// The image, without its alpha channel when every pixel is opaque: faster to draw and to encode. 8 bits a component.
[[nodiscard]] QImage withoutNeedlessAlpha(QImage image);

/// Draws on a painter, on from the transform and the clip that it has. `Port` is what it is seen as.
template <typename Port>
class PainterDrawing : public Port
{
public:
    /// `colorSpace` is what colours become a part of; sRGB when it is not valid.
    PainterDrawing(QPainter& painter, std::shared_ptr<const QtTextLayout> textLayout, const QColorSpace& colorSpace);

    void save() override;
    void restore() override;
    void translate(QPointF by) override;
    void scale(double x, double y) override;
    void clip(const QRectF& to) override;
    void setAlpha(double alpha) override;
    void fillRectangle(const QRectF& rect, const ClipboardCore::AnnotationColor& color) override;
    void fillRoundedRectangle(const QRectF& rect, double radius, const ClipboardCore::AnnotationColor& color) override;
    void fillEllipse(const QRectF& in, const ClipboardCore::AnnotationColor& color) override;
    void fillPolygon(std::span<const QPointF> corners, const ClipboardCore::AnnotationColor& color) override;
    void strokeRectangle(const QRectF& rect, const ClipboardCore::Pen& pen) override;
    void strokeLine(QPointF from, QPointF to, const ClipboardCore::Pen& pen) override;
    void drawPicture(const ClipboardCore::Picture& picture, const QRectF& into,
                     ClipboardCore::DrawingContext::Interpolation interpolation) override;
    void drawText(const ClipboardCore::TextLine& line, QPointF baseline) override;

private:
    [[nodiscard]] QColor converted(const ClipboardCore::AnnotationColor& color) const;
    void beginFill(const ClipboardCore::AnnotationColor& color);
    void beginStroke(const ClipboardCore::Pen& pen);

    QPainter& m_painter;
    std::shared_ptr<const QtTextLayout> m_textLayout;
    std::optional<QColorTransform> m_fromSRgb; // nothing when colours stay as they are
};

/// A window to draw on, by a painter that is at work on it.
using PainterContext = PainterDrawing<ClipboardCore::DrawingContext>;

} // namespace Clipboard
