#include "OverlayScrollBar.h"

#include "Painting.h"
#include "Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace Clipboard {

namespace {
constexpr int leastThumb = 48;
} // namespace

OverlayScrollBar::OverlayScrollBar(QScrollBar* source, QWidget* parent)
    : QWidget(parent)
    , m_source(source)
{
    connect(source, &QScrollBar::rangeChanged, this, &OverlayScrollBar::sourceChanged);
    connect(source, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    sourceChanged();
}

void OverlayScrollBar::sourceChanged()
{
    setVisible(m_source->maximum() > m_source->minimum());
    update();
}

QRectF OverlayScrollBar::thumb() const
{
    const int range = m_source->maximum() - m_source->minimum();
    if (range <= 0)
        return {};
    const qreal share = static_cast<qreal>(m_source->pageStep()) / (range + m_source->pageStep());
    const qreal length = std::clamp<qreal>(height() * share, std::min(leastThumb, height()), height());
    const qreal position = static_cast<qreal>(m_source->value() - m_source->minimum()) / range;
    return {static_cast<qreal>(width() - thumbWidth), (height() - length) * position, thumbWidth, length};
}

void OverlayScrollBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, thumb(), thumbWidth / 2.0, Theme::scroll);
}

void OverlayScrollBar::mousePressEvent(QMouseEvent* event)
{
    const QRectF bar = thumb();
    const qreal y = event->position().y();
    m_grabOffset = y >= bar.top() && y < bar.bottom() ? y - bar.top() : bar.height() / 2;
    mouseMoveEvent(event);
}

void OverlayScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    const qreal travel = height() - thumb().height();
    if (travel <= 0)
        return;
    const qreal position = std::clamp((event->position().y() - m_grabOffset) / travel, 0.0, 1.0);
    m_source->setValue(m_source->minimum() + qRound(position * (m_source->maximum() - m_source->minimum())));
}

} // namespace Clipboard
