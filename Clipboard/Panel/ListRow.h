#pragma once

#include <QAbstractItemDelegate>

namespace Clipboard {

class HistoryListModel;
class HistoryViewModel;
class Thumbs;

/// Draws one entry of the list: thumbnail, title, type, pin and age.
class ListRow final : public QAbstractItemDelegate
{
    Q_OBJECT
public:
    ListRow(const HistoryViewModel& viewModel, const HistoryListModel& model, Thumbs& thumbs, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    enum class State { normal, hovered, selected, idle };
    void paintTitle(QPainter& painter, const QRectF& line, int row, State state) const;
    void paintDetails(QPainter& painter, const QRectF& line, int row, State state) const;

    const HistoryViewModel& m_viewModel;
    const HistoryListModel& m_model;
    Thumbs& m_thumbs;
};

} // namespace Clipboard
