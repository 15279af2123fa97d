#pragma once

#include "Focus/FocusKey.h"

#include <QHash>
#include <QListView>

#include <optional>

class QVariantAnimation;

namespace Clipboard {

class HistoryListModel;
class HistoryViewModel;
class OverlayScrollBar;
class Thumbs;

/// The list of entries. It shows whole rows at rest and keeps the selected one in view.
class HistoryList final : public QListView
{
    Q_OBJECT
public:
    HistoryList(HistoryViewModel& viewModel, Thumbs& thumbs, QWidget* parent);

    /// Takes over the visible entries, and then their selection.
    void reload();
    /// Takes over the selected entry and brings it into view; scrolls there smoothly when `animated`.
    void syncSelection(bool animated);
    /// Repaints the rows, for ages and focus.
    void refreshRows() { viewport()->update(); }

    /// The frames of the rows on screen, in the coordinates of `ancestor`, as they are once scrolling has come to rest.
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void scrollToRow(int row, bool animated);
    void stopScrolling();
    [[nodiscard]] int restingScroll() const;

    HistoryViewModel& m_viewModel;
    HistoryListModel* m_model;
    OverlayScrollBar* m_scrollBar;
    QVariantAnimation* m_scrolling;
};

} // namespace Clipboard
