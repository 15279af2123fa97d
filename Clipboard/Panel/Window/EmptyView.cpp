#include "EmptyView.h"

#include "Accessibility.h"

#include <QPainter>

namespace Clipboard {

EmptyView::EmptyView(QWidget* parent)
    : QWidget(parent)
{
    Accessibility::setRole(this, QAccessible::Notification);
    hide();
}

void EmptyView::setContent(const EmptyContent& content)
{
    m_content = content;
    setAccessibleName(content.title);
    setAccessibleDescription((content.message + u' ' + content.more).trimmed());
    update();
}

void EmptyView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    m_content.paint(painter, rect());
}

} // namespace Clipboard
