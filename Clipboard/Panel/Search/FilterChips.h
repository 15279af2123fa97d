#pragma once

#include "Focus/FocusKey.h"

#include <QHash>
#include <QList>
#include <QWidget>

namespace Clipboard {

class FilterChip;
class HistoryViewModel;

/// The row of filters: all entries, then one chip a type.
class FilterChips final : public QWidget
{
    Q_OBJECT
public:
    FilterChips(HistoryViewModel& viewModel, QWidget* parent);

    /// Takes over counts, filter and focus.
    void sync();
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

    [[nodiscard]] const QList<FilterChip*>& chips() const { return m_chips; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    [[nodiscard]] int neededWidth() const;

    HistoryViewModel& m_viewModel;
    QList<FilterChip*> m_chips;
};

} // namespace Clipboard
