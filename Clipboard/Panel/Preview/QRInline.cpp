#include "QRInline.h"

#include "Painting.h"
#include "TextBlock.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int groundRadius = 10;
constexpr int captionGap = 16;
constexpr int captionWidth = 80; // narrow: it stands beside the code as a block
constexpr int codeSize = 164;
// A code whose modules would just miss a whole number of pixels may take this much of the ground's edge.
constexpr int codeSlack = 4;
// Of the pattern in three corners of every code (ISO/IEC 18004, 6.3.3).
constexpr int finderModules = 7;
constexpr Fonts::Style captionStyle{12, 18, QFont::Normal};

bool isDark(const QImage& image, int x, int y)
{
    constexpr int middle = 128;
    return qGray(image.pixel(x, y)) < middle;
}

/// The code alone, at a pixel a module. Its first dark pixel is the corner of a finder pattern, whose edge is as long
/// as seven modules.
QImage modulesOf(const QImage& image)
{
    int corner = 0;
    const int shorter = std::min(image.width(), image.height());
    while (corner < shorter && !isDark(image, corner, corner))
        ++corner;
    int end = corner;
    while (end < image.width() && isDark(image, end, corner))
        ++end;
    const int module = (end - corner) / finderModules;
    if (module == 0)
        return {};
    const int side = shorter - 2 * corner;
    return image.copy(corner, corner, side, side).scaled(side / module, side / module);
}

} // namespace

QRInline::QRInline(QWidget* parent)
    : QWidget(parent)
    , m_caption(new TextBlock(captionStyle, TextBlock::Lines::wrapped, this))
{
    m_caption->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void QRInline::setImage(const QImage& image)
{
    m_modules = modulesOf(image);
    if (!m_modules.isNull())
        m_modules = m_modules.convertToFormat(QImage::Format_Indexed8, {Theme::well.rgb(), Theme::qrGround.rgb()});
    update();
}

void QRInline::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, QRectF(0, 0, height, height), groundRadius, Theme::qrGround);
    if (!m_modules.isNull())
        paintModules(painter);
}

void QRInline::paintModules(QPainter& painter) const
{
    // A module is a whole number of device pixels and begins on one, at every scale: a reader sees sharp edges.
    const qreal ratio = devicePixelRatioF();
    const int module = std::max(1, static_cast<int>((codeSize + codeSlack) * ratio) / m_modules.width());
    const QSizeF size = QSizeF(m_modules.size()) * module / ratio;
    const QTransform toDevice = painter.deviceTransform();
    const QPointF wanted((height - size.width()) / 2, (height - size.height()) / 2);
    const QPointF place = toDevice.inverted().map(QPointF(toDevice.map(wanted).toPoint()));
    painter.drawImage(QRectF(place, size), m_modules);
}

void QRInline::resizeEvent(QResizeEvent* event)
{
    const QString text = tr("QR code for this item");
    m_caption->resize(captionWidth, height);
    m_caption->setText(text, {{0, text.size(), Theme::text2, QFont::Normal}}, height);
    m_caption->setGeometry(height + captionGap, (height - m_caption->contentHeight()) / 2, captionWidth,
                           m_caption->contentHeight());
    QWidget::resizeEvent(event);
}

} // namespace Clipboard
