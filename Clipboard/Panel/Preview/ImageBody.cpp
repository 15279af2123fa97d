#include "ImageBody.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "Painting.h"
#include "Theme.h"
#include "Thumbs.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int groundHeight = 160;

} // namespace

ImageBody::ImageBody(Thumbs& thumbs, QWidget* parent)
    : PreviewBody(parent)
    , m_thumbs(thumbs)
{
    Accessibility::setRole(this, QAccessible::Graphic);
    connect(&thumbs, &Thumbs::finished, this, qOverload<>(&QWidget::update));
}

void ImageBody::setItem(const ClipboardCore::ClipItem& item, int /*visibleHeight*/)
{
    m_path = item.content.toString();
    setAccessibleName(rowTitle(item));
    update();
}

int ImageBody::contentHeight() const
{
    return groundHeight;
}

void ImageBody::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF ground(rect());
    Painting::roundedFill(painter, ground, Theme::rowRadius, Theme::well);
    const qreal ratio = devicePixelRatioF();
    const Thumbs::Thumb thumb = m_thumbs.thumb(m_path, qRound(std::max(width(), groundHeight) * ratio));
    if (thumb.phase == Thumbs::Phase::unavailable) {
        Painting::textLine(painter, ground, Fonts::body, Theme::text3, tr("Image unavailable"), Qt::AlignHCenter);
        return;
    }
    if (thumb.phase != Thumbs::Phase::loaded)
        return;
    // A small picture is shown at its own size: enlarged it would only be a blur.
    QSizeF size = QSizeF(thumb.image.size()) / ratio;
    if (size.width() > ground.width() || size.height() > ground.height())
        size = size.scaled(ground.size(), Qt::KeepAspectRatio);
    QRectF picture(QPointF(), size.expandedTo({1, 1}));
    picture.moveCenter(ground.center());
    const qreal radius = std::min<qreal>(Theme::rowRadius, std::min(size.width(), size.height()) / 4);
    QPainterPath rounded;
    rounded.addRoundedRect(picture, radius, radius);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setClipPath(rounded);
    painter.drawImage(picture, thumb.image);
    painter.setClipping(false);
    Painting::innerLine(painter, picture, radius, Theme::pictureEdge);
}

} // namespace Clipboard
