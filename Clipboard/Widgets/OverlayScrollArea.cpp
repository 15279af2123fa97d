#include "OverlayScrollArea.h"

#include "OverlayScrollBar.h"

#include <QScrollBar>

namespace Clipboard {

OverlayScrollArea::OverlayScrollArea(QWidget* page, const Insets& insets, QWidget* parent)
    : QScrollArea(parent)
    , m_insets(insets)
    , m_vertical(new OverlayScrollBar(verticalScrollBar(), this))
    , m_horizontal(new OverlayScrollBar(horizontalScrollBar(), this))
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(insets.page, insets.page, insets.page, insets.page);
    setWidget(page);
    viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false); // setWidget() has switched it on
}

void OverlayScrollArea::resizeEvent(QResizeEvent* event)
{
    const int thick = OverlayScrollBar::grabWidth;
    m_vertical->setGeometry(width() - m_insets.barAcross - thick, m_insets.barAlong, thick,
                            height() - 2 * m_insets.barAlong);
    m_horizontal->setGeometry(m_insets.barAlong, height() - m_insets.barAcross - thick, width() - 2 * m_insets.barAlong,
                              thick);
    m_vertical->raise();
    m_horizontal->raise();
    QScrollArea::resizeEvent(event);
}

} // namespace Clipboard
