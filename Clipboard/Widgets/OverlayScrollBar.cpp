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

bool OverlayScrollBar::isUpright() const
{
    return m_source->orientation() == Qt::Vertical;
}

/// Where the thumb lies along the bar.
OverlayScrollBar::Stretch OverlayScrollBar::thumbStretch() const
{
    const int room = isUpright() ? height() : width();
    const int range = m_source->maximum() - m_source->minimum();
    if (range <= 0)
        return {};
    const qreal share = static_cast<qreal>(m_source->pageStep()) / (range + m_source->pageStep());
    const qreal length = std::clamp<qreal>(room * share, std::min(leastThumb, room), room);
    const qreal position = static_cast<qreal>(m_source->value() - m_source->minimum()) / range;
    return {(room - length) * position, length, room - length};
}

QRectF OverlayScrollBar::thumb() const
{
    const Stretch along = thumbStretch();
    if (isUpright())
        return {static_cast<qreal>(width() - thumbWidth), along.start, thumbWidth, along.length};
    return {along.start, static_cast<qreal>(height() - thumbWidth), along.length, thumbWidth};
}

void OverlayScrollBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, thumb(), thumbWidth / 2.0, Theme::scroll);
}

qreal OverlayScrollBar::placeAlong(const QMouseEvent* event) const
{
    return isUpright() ? event->position().y() : event->position().x();
}

void OverlayScrollBar::mousePressEvent(QMouseEvent* event)
{
    const Stretch bar = thumbStretch();
    const qreal offset = placeAlong(event) - bar.start;
    m_grabOffset = offset >= 0 && offset < bar.length ? offset : bar.length / 2;
    mouseMoveEvent(event);
}

void OverlayScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    const qreal travel = thumbStretch().travel;
    if (travel <= 0)
        return;
    const qreal position = std::clamp((placeAlong(event) - m_grabOffset) / travel, 0.0, 1.0);
    m_source->setValue(m_source->minimum() + qRound(position * (m_source->maximum() - m_source->minimum())));
}

} // namespace Clipboard
