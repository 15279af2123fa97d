#pragma once

#include "History/ClipItem.h"

#include <QAbstractItemDelegate>

namespace Clipboard {

class FileKinds;
class HistoryListModel;
class HistoryViewModel;
class Thumbs;

/// Draws one entry of the list: thumbnail, title, type, pin and age. An entry whose file is gone is dimmed.
class ListRow final : public QAbstractItemDelegate
{
    Q_OBJECT
public:
    ListRow(const HistoryViewModel& viewModel, const HistoryListModel& model, Thumbs& thumbs, FileKinds& files,
            QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    enum class State { normal, hovered, selected, idle };
    [[nodiscard]] bool isGone(const ClipboardCore::ClipItem& item) const;
    void paintTitle(QPainter& painter, const QRectF& line, int row, State state) const;
    void paintDetails(QPainter& painter, const QRectF& line, int row, State state) const;

    const HistoryViewModel& m_viewModel;
    const HistoryListModel& m_model;
    Thumbs& m_thumbs;
    FileKinds& m_files;
};

} // namespace Clipboard
