#include "AppearEffect.h"

#include <QPainter>

namespace Clipboard {

namespace {
constexpr qreal firstScale = 0.96;
} // namespace

void AppearEffect::setProgress(qreal progress)
{
    m_progress = progress;
    setEnabled(progress < 1);
    update();
}

void AppearEffect::draw(QPainter* painter)
{
    QPoint offset;
    const QPixmap pixmap = sourcePixmap(Qt::LogicalCoordinates, &offset);
    const QRectF target(offset, pixmap.deviceIndependentSize());
    const qreal scale = firstScale + (1 - firstScale) * m_progress;
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->setOpacity(painter->opacity() * m_progress);
    painter->translate(target.center());
    painter->scale(scale, scale);
    painter->translate(-target.center());
    painter->drawPixmap(target.topLeft(), pixmap);
    painter->restore();
}

} // namespace Clipboard
