#include "HistoryList.h"

#include "AccessibleHistoryList.h"
#include "EntryMimeData.h"
#include "FileKinds.h"
#include "FrameReport.h"
#include "HistoryListModel.h"
#include "HistoryViewModel.h"
#include "ListRow.h"
#include "Motion.h"
#include "OverlayScrollBar.h"
#include "Theme.h"
#include "Thumbs.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionViewItem>
#include <QVariantAnimation>

#include <algorithm>
#include <memory>
#include <utility>

using ClipboardCore::FocusKey;

namespace Clipboard {

namespace {

constexpr int scrollBarInset = 2;

} // namespace

HistoryList::HistoryList(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent)
    : QListView(parent)
    , m_viewModel(viewModel)
    , m_model(new HistoryListModel(viewModel, this))
    , m_scrollBar(new OverlayScrollBar(verticalScrollBar(), this))
    , m_scrolling(new QVariantAnimation(this))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true);
    setAutoScroll(false); // scrollToRow() does it, smoothly
    viewport()->setAutoFillBackground(false);
    AccessibleHistoryList::install();
    setAccessibleName(tr("Clipboard history"));
    setModel(m_model);
    setItemDelegate(new ListRow(viewModel, *m_model, thumbs, files, this));

    m_scrolling->setDuration(Theme::scrollDuration);
    m_scrolling->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_scrolling, &QVariantAnimation::valueChanged, verticalScrollBar(),
            [this](const QVariant& value) { verticalScrollBar()->setValue(value.toInt()); });
    connect(&thumbs, &Thumbs::finished, this, &HistoryList::refreshRows);
    connect(&files, &FileKinds::found, this, &HistoryList::refreshRows);
}

void HistoryList::reload()
{
    // What the user looks at stays where it is while entries come and go above it.
    const int scroll = restingScroll();
    const int first = scroll / Theme::rowHeight;
    const auto anchor =
        scroll > 0 && first < m_model->rowCount() ? std::optional(m_model->item(first).id) : std::nullopt;
    stopScrolling();
    m_model->reload();
    executeDelayedItemsLayout(); // the scroll range is asked for next
    verticalScrollBar()->setSingleStep(Theme::rowHeight / 2);
    if (const auto row = anchor ? m_model->row(*anchor) : std::nullopt)
        verticalScrollBar()->setValue(*row * Theme::rowHeight + scroll % Theme::rowHeight);
    restoreHover();
}

void HistoryList::restoreHover()
{
    // The view forgets what the pointer is over when its model is reset, and would learn of it with the next movement.
    if (!viewport()->underMouse())
        return;
    const QPointF position = viewport()->mapFromGlobal(QPointF(QCursor::pos()));
    QHoverEvent hover(QEvent::HoverMove, position, QCursor::pos(), position);
    QCoreApplication::sendEvent(viewport(), &hover);
}

void HistoryList::syncSelection(bool animated)
{
    const auto id = m_viewModel.selectedID();
    const auto row = id ? m_model->row(*id) : std::nullopt;
    const QModelIndex index = row ? m_model->index(*row) : QModelIndex();
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect); // repaints the two rows
    if (row)
        scrollToRow(*row, animated);
}

bool HistoryList::hasPanelFocus() const
{
    return isVisible() && isActiveWindow() && !m_viewModel.focus().has_value() && !m_viewModel.cmdkOpen();
}

void HistoryList::announceFocus()
{
    const auto focused = hasPanelFocus() ? m_viewModel.selectedID() : std::nullopt;
    if (std::exchange(m_announced, focused) == focused || !focused || !QAccessible::isActive())
        return;
    const auto* list = static_cast<AccessibleHistoryList*>(QAccessible::queryAccessibleInterface(this));
    if (QAccessibleInterface* row = list->row(*focused)) {
        QAccessibleEvent event(row, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

bool HistoryList::event(QEvent* event)
{
    // The text field, which has the keyboard, is told of first.
    if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(this, &HistoryList::announceFocus, Qt::QueuedConnection);
    return QListView::event(event);
}

void HistoryList::hideEvent(QHideEvent* event)
{
    m_announced.reset();
    QListView::hideEvent(event);
}

void HistoryList::scrollToRow(int row, bool animated)
{
    const int top = row * Theme::rowHeight;
    const int highest = top + Theme::rowHeight - viewport()->height();
    const int target = std::clamp(restingScroll(), std::min(highest, top), top);
    if (target == restingScroll())
        return;
    stopScrolling();
    if (!animated || Motion::isReduced())
        return verticalScrollBar()->setValue(target);
    m_scrolling->setStartValue(verticalScrollBar()->value());
    m_scrolling->setEndValue(target);
    m_scrolling->start();
}

void HistoryList::stopScrolling()
{
    m_scrolling->stop();
}

int HistoryList::restingScroll() const
{
    const bool moving = m_scrolling->state() == QAbstractAnimation::Running;
    return moving ? m_scrolling->endValue().toInt() : verticalScrollBar()->value();
}

void HistoryList::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    const QPoint origin = viewport()->mapTo(ancestor, QPoint(0, 0));
    const int scroll = restingScroll();
    const int count = m_model->rowCount();
    const int first = std::max(0, scroll / Theme::rowHeight);
    for (int row = first; row < count; ++row) {
        const int top = row * Theme::rowHeight - scroll;
        if (top >= viewport()->height())
            break;
        frames.insert(FocusKey::row(m_model->item(row).id),
                      QRectF(origin.x(), origin.y() + top, Theme::rowWidth, Theme::rowHeight));
    }
}

void HistoryList::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    reportFrame(this, "list-painted");
}

/// The toolkit would paint all rows anew when the window becomes active, which is right after it is shown; they look
/// the same as before.
bool HistoryList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        return true;
    return QListView::viewportEvent(event);
}

void HistoryList::resizeEvent(QResizeEvent* event)
{
    // The viewport shows whole rows: what is left over stays empty below them.
    const int room = height() - Theme::listMargin;
    const int leftOver = room % Theme::rowHeight;
    setViewportMargins(Theme::listMargin, Theme::listMargin, width() - Theme::listMargin - Theme::rowWidth, leftOver);
    m_scrollBar->setGeometry(width() - scrollBarInset - OverlayScrollBar::grabWidth, Theme::listMargin,
                             OverlayScrollBar::grabWidth, height() - 2 * Theme::listMargin);
    m_scrollBar->raise();
    QListView::resizeEvent(event);
}

void HistoryList::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if ((event->button() != Qt::LeftButton && event->button() != Qt::RightButton) || !index.isValid())
        return;
    m_viewModel.setSelectedID(m_model->item(index.row()).id);
    if (event->button() == Qt::RightButton) {
        emit menuRequested(viewport()->mapTo(this, event->position().toPoint()));
        return;
    }
    m_pressed = index;
    m_pressPosition = event->position().toPoint();
}

void HistoryList::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        return QListView::mouseMoveEvent(event);
    const QPoint way = event->position().toPoint() - m_pressPosition;
    if (m_pressed.isValid() && way.manhattanLength() >= QApplication::startDragDistance())
        dragPressedRow();
}

void HistoryList::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    m_pressed = QModelIndex();
}

void HistoryList::dragPressedRow()
{
    const QModelIndex index = std::exchange(m_pressed, QModelIndex());
    std::unique_ptr<QMimeData> entry = EntryMimeData::make(m_model->item(index.row()));
    if (!entry)
        return;
    auto* drag = new QDrag(this); // deletes itself
    drag->setMimeData(entry.release());
    drag->setPixmap(rowPicture(index));
    drag->setHotSpot(m_pressPosition - visualRect(index).topLeft());
    m_isDragging = true;
    drag->exec(Qt::CopyAction);
    m_isDragging = false;
    emit dragFinished();
}

QPixmap HistoryList::rowPicture(const QModelIndex& index) const
{
    const qreal ratio = devicePixelRatioF();
    const QSize size(Theme::rowWidth, Theme::rowHeight);
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(0, 0), size);
    itemDelegate()->paint(&painter, option, index);
    return picture;
}

void HistoryList::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) {
        const ClipboardCore::ClipItem item = m_model->item(index.row());
        m_viewModel.paste(item);
    }
}

} // namespace Clipboard
