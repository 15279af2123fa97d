#include "QtGraphics.h"

#include <QColorSpace>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

using ClipboardCore::AnnotationColor;
using ClipboardCore::Pen;
using ClipboardCore::Picture;
using ClipboardCore::TextLine;

namespace Clipboard {

namespace {

// What QPainter draws fastest. Alpha is premultiplied, so that means over pixels are means of what is seen.
constexpr QImage::Format pixelFormat = QImage::Format_ARGB32_Premultiplied;

size_t bytesOfRow(const QImage& image)
{
    return static_cast<size_t>(image.width()) * 4;
}

/// Whether a colour space is sRGB in the old way of PNG, written down as its primaries and a gamma of 2.2. What is
/// meant is sRGB: only then are its dark colours what they were.
bool standsForSRgb(const QColorSpace& colorSpace)
{
    constexpr float gamma = 2.2F;
    constexpr float gammaTolerance = 0.01F;
    constexpr int tolerance = 2;
    if (colorSpace.transferFunction() != QColorSpace::TransferFunction::Gamma ||
        std::abs(colorSpace.gamma() - gamma) > gammaTolerance)
        return false;
    const QColorTransform transform = QColorSpace(QColorSpace::SRgb).transformationToColorSpace(colorSpace);
    const auto stays = [&transform](QRgb color) {
        const QRgb mapped = transform.map(color);
        return std::abs(qRed(mapped) - qRed(color)) <= tolerance &&
               std::abs(qGreen(mapped) - qGreen(color)) <= tolerance &&
               std::abs(qBlue(mapped) - qBlue(color)) <= tolerance;
    };
    return stays(0xffff0000) && stays(0xff00ff00) && stays(0xff0000ff);
}

QImage prepared(QImage image)
{
    const QColorSpace colorSpace = image.colorSpace();
    image.convertTo(pixelFormat);
    image.setColorSpace(standsForSRgb(colorSpace) ? QColorSpace(QColorSpace::SRgb) : colorSpace);
    image.setDevicePixelRatio(1);
    return image;
}

/// Of how many pixels of `count`, spread over `length` device pixels from `start`, each one from `first` shows which.
std::vector<int> nearestPixels(int first, int shown, double start, double length, int count)
{
    std::vector<int> sources(static_cast<size_t>(shown));
    for (int i = 0; i < shown; ++i) {
        const double middle = (first + i + 0.5 - start) / length * count;
        sources[static_cast<size_t>(i)] = std::clamp(static_cast<int>(std::floor(middle)), 0, count - 1);
    }
    return sources;
}

/// The part of `image` that is seen in `shown` when it is stretched over `target`, by the nearest pixel.
QImage stretched(const QImage& image, const QRectF& target, const QRect& shown)
{
    const auto columns = nearestPixels(shown.left(), shown.width(), target.left(), target.width(), image.width());
    const auto rows = nearestPixels(shown.top(), shown.height(), target.top(), target.height(), image.height());
    QImage result(shown.size(), image.format());
    for (int y = 0; !result.isNull() && y < shown.height(); ++y) {
        const int row = rows[static_cast<size_t>(y)];
        auto* to = reinterpret_cast<QRgb*>(result.scanLine(y));
        if (y > 0 && row == rows[static_cast<size_t>(y - 1)]) {
            std::copy_n(reinterpret_cast<const QRgb*>(result.constScanLine(y - 1)), shown.width(), to);
            continue;
        }
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(row));
        for (const int column : columns)
            *to++ = from[column];
    }
    return result;
}

/// Stretches to the pixel: the painter's own scaling counts in steps whose error adds up over a large picture, and
/// blocks would be out of line with what they cover.
void drawBlocks(QPainter& painter, const QImage& image, const QRectF& into)
{
    const QTransform toDevice = painter.deviceTransform(); // scales and moves, nothing else
    const QRectF target = toDevice.mapRect(into);
    QRect shown = target.toAlignedRect();
    if (painter.hasClipping())
        shown &= toDevice.mapRect(painter.clipBoundingRect()).toAlignedRect();
    if (shown.isEmpty())
        return;
    const QTransform toWindow = painter.worldTransform().inverted() * toDevice;
    painter.save();
    painter.setWorldTransform(QTransform::fromTranslate(shown.x(), shown.y()) * toWindow.inverted());
    painter.drawImage(QPoint(), stretched(withoutNeedlessAlpha(image), target, shown));
    painter.restore();
}

/// Draws into an image of its own.
class ImageContext final : public PainterDrawing<ClipboardCore::BitmapContext>
{
public:
    ImageContext(QImage image, const std::shared_ptr<const QtTextLayout>& textLayout)
        : PainterDrawing(m_painter, textLayout, image.colorSpace())
        , m_image(std::move(image))
        , m_painter(&m_image)
        , m_textLayout(textLayout)
    {
    }

    std::span<std::uint8_t> row(int y) override { return {m_image.scanLine(y), bytesOfRow(m_image)}; }

    std::shared_ptr<const Picture> takePicture() override
    {
        m_painter.end();
        return std::make_shared<QtPicture>(std::move(m_image), m_textLayout);
    }

private:
    QImage m_image;
    QPainter m_painter;
    std::shared_ptr<const QtTextLayout> m_textLayout;
};

} // namespace

// ── QtPicture

QtPicture::QtPicture(QImage image, std::shared_ptr<const QtTextLayout> textLayout)
    : m_image(prepared(std::move(image)))
    , m_textLayout(std::move(textLayout))
{
    Q_ASSERT(!m_image.isNull());
}

std::span<const std::uint8_t> QtPicture::row(int y) const
{
    return {m_image.constScanLine(y), bytesOfRow(m_image)};
}

std::unique_ptr<ClipboardCore::BitmapContext> QtPicture::rgbaContext(QSize size) const
{
    QImage image(size, pixelFormat);
    if (image.isNull())
        return nullptr;
    image.fill(Qt::transparent);
    image.setColorSpace(m_image.colorSpace());
    return std::make_unique<ImageContext>(std::move(image), m_textLayout);
}

const QImage& QtPicture::imageOf(const Picture& picture)
{
    return static_cast<const QtPicture&>(picture).image();
}

QImage withoutNeedlessAlpha(QImage image)
{
    if (image.format() != pixelFormat)
        return image;
    const auto isOpaque = [](QRgb pixel) { return qAlpha(pixel) == 255; };
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(row, row + image.width(), isOpaque))
            return image;
    }
    image.reinterpretAsFormat(QImage::Format_RGB32);
    return image;
}

// ── PainterDrawing

template <typename Port>
PainterDrawing<Port>::PainterDrawing(QPainter& painter, std::shared_ptr<const QtTextLayout> textLayout,
                                     const QColorSpace& colorSpace)
    : m_painter(painter)
    , m_textLayout(std::move(textLayout))
{
    const QColorSpace sRgb(QColorSpace::SRgb);
    if (colorSpace.isValid() && colorSpace != sRgb)
        m_fromSRgb = sRgb.transformationToColorSpace(colorSpace);
}

template <typename Port>
void PainterDrawing<Port>::save()
{
    m_painter.save();
}

template <typename Port>
void PainterDrawing<Port>::restore()
{
    m_painter.restore();
}

template <typename Port>
void PainterDrawing<Port>::translate(QPointF by)
{
    m_painter.translate(by);
}

template <typename Port>
void PainterDrawing<Port>::scale(double x, double y)
{
    m_painter.scale(x, y);
}

template <typename Port>
void PainterDrawing<Port>::clip(const QRectF& to)
{
    m_painter.setClipRect(to, Qt::IntersectClip);
}

template <typename Port>
void PainterDrawing<Port>::setAlpha(double alpha)
{
    m_painter.setOpacity(alpha);
}

template <typename Port>
QColor PainterDrawing<Port>::converted(const AnnotationColor& color) const
{
    const QColor sRgb = QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                         static_cast<float>(color.blue));
    return m_fromSRgb ? m_fromSRgb->map(sRgb) : sRgb;
}

template <typename Port>
void PainterDrawing<Port>::beginFill(const AnnotationColor& color)
{
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(converted(color));
}

template <typename Port>
void PainterDrawing<Port>::beginStroke(const Pen& pen)
{
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen({converted(pen.color), pen.width, Qt::SolidLine,
                      pen.cap == Pen::Cap::round ? Qt::RoundCap : Qt::FlatCap, Qt::RoundJoin});
}

template <typename Port>
void PainterDrawing<Port>::fillRectangle(const QRectF& rect, const AnnotationColor& color)
{
    beginFill(color);
    m_painter.drawRect(rect);
}

template <typename Port>
void PainterDrawing<Port>::fillRoundedRectangle(const QRectF& rect, double radius, const AnnotationColor& color)
{
    beginFill(color);
    m_painter.drawRoundedRect(rect, radius, radius);
}

template <typename Port>
void PainterDrawing<Port>::fillEllipse(const QRectF& in, const AnnotationColor& color)
{
    beginFill(color);
    m_painter.drawEllipse(in);
}

template <typename Port>
void PainterDrawing<Port>::fillPolygon(std::span<const QPointF> corners, const AnnotationColor& color)
{
    beginFill(color);
    m_painter.drawPolygon(corners.data(), static_cast<int>(corners.size()), Qt::WindingFill);
}

template <typename Port>
void PainterDrawing<Port>::strokeRectangle(const QRectF& rect, const Pen& pen)
{
    beginStroke(pen);
    m_painter.drawRect(rect);
}

template <typename Port>
void PainterDrawing<Port>::strokeLine(QPointF from, QPointF to, const Pen& pen)
{
    beginStroke(pen);
    m_painter.drawLine(from, to);
}

template <typename Port>
void PainterDrawing<Port>::drawPicture(const Picture& picture, const QRectF& into,
                                       ClipboardCore::DrawingContext::Interpolation interpolation)
{
    const QImage& image = QtPicture::imageOf(picture);
    if (interpolation == ClipboardCore::DrawingContext::Interpolation::none)
        return drawBlocks(m_painter, image, into);
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    m_painter.drawImage(into, image);
}

template <typename Port>
void PainterDrawing<Port>::drawText(const TextLine& line, QPointF baseline)
{
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_textLayout->draw(m_painter, line, baseline, converted(line.color));
}

template class PainterDrawing<ClipboardCore::DrawingContext>;
template class PainterDrawing<ClipboardCore::BitmapContext>;

} // namespace Clipboard
