#pragma once

#include "Focus/FocusKey.h"

#include <QHash>
#include <QListView>

#include <optional>

class QVariantAnimation;

namespace Clipboard {

class FileKinds;
class HistoryListModel;
class HistoryViewModel;
class OverlayScrollBar;
class Thumbs;

/// The list of entries. It shows whole rows at rest and keeps the selected one in view.
class HistoryList final : public QListView
{
    Q_OBJECT
public:
    HistoryList(HistoryViewModel& viewModel, Thumbs& thumbs, FileKinds& files, QWidget* parent);

    /// Takes over the visible entries, and then their selection.
    void reload();
    /// Takes over the selected entry and brings it into view; scrolls there smoothly when `animated`.
    void syncSelection(bool animated);
    /// Repaints the rows, for their ages.
    void refreshRows() { viewport()->update(); }
    /// Repaints the selected row, the only one that tells whether the panel's focus is in the list.
    void refreshSelectedRow() { update(currentIndex()); }

    /// True while an entry is on its way into another program; dragFinished() follows.
    [[nodiscard]] bool isDragging() const { return m_isDragging; }

    /// Tells assistive technologies which row has the panel's focus, when that changed.
    void announceFocus();
    /// True while the selected row is what the keys of the panel act on.
    [[nodiscard]] bool hasPanelFocus() const;

    [[nodiscard]] HistoryViewModel& viewModel() const { return m_viewModel; }
    [[nodiscard]] const HistoryListModel& entries() const { return *m_model; }

    /// The frames of the rows on screen, in the coordinates of `ancestor`, as they are once scrolling has come to rest.
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

signals:
    void dragFinished();
    /// For the selected entry, at that place of the list.
    void menuRequested(const QPoint& place);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

    // What the toolkit does, but for telling of a focus that may be elsewhere: announceFocus() does that.
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override
    {
        QAbstractItemView::currentChanged(current, previous); // NOLINT(bugprone-parent-virtual-call)
    }

private:
    void scrollToRow(int row, bool animated);
    void stopScrolling();
    void restoreHover();
    void dragPressedRow();
    [[nodiscard]] QPixmap rowPicture(const QModelIndex& index) const;
    [[nodiscard]] int restingScroll() const;

    HistoryViewModel& m_viewModel;
    HistoryListModel* m_model;
    OverlayScrollBar* m_scrollBar;
    QVariantAnimation* m_scrolling;
    QPersistentModelIndex m_pressed; // the row that a drag would take along
    QPoint m_pressPosition;
    bool m_isDragging = false;
    std::optional<QUuid> m_announced; // the row that was last told to have the focus
};

} // namespace Clipboard
