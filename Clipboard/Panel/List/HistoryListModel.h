#pragma once

#include "History/ClipItem.h"

#include <QAbstractListModel>
#include <QCache>

#include <optional>

namespace Clipboard {

class HistoryViewModel;

/// The visible entries as a list model. Texts are made when a row is first drawn and kept by the entry's identity,
/// whose content never changes.
class HistoryListModel final : public QAbstractListModel
{
    Q_OBJECT
public:
    explicit HistoryListModel(const HistoryViewModel& viewModel, QObject* parent = nullptr);

    /// Takes over what the view model shows now.
    void reload();

    [[nodiscard]] const ClipboardCore::ClipItem& item(int row) const { return m_items.at(row); }
    /// The row of an entry; nothing when it is not visible.
    [[nodiscard]] std::optional<int> row(const QUuid& id) const;
    /// The title as it fits into a row, its control characters as spaces: a link with its end, all others with their
    /// beginning. A link's scheme is the first
    /// `schemeLength` characters.
    struct Title
    {
        QString text;
        qsizetype schemeLength = 0;
        qreal room = 0; // that it was made for
    };
    [[nodiscard]] const Title& title(int row, qreal width) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    const HistoryViewModel& m_viewModel;
    QList<ClipboardCore::ClipItem> m_items;
    mutable QCache<QUuid, Title> m_titles;
};

} // namespace Clipboard
