#pragma once

#include "Focus/FocusKey.h"

#include <QHash>
#include <QWidget>

namespace Clipboard {

class ClearButton;
class FilterChips;
class HistoryViewModel;
class SearchField;

/// The top of the panel: search field and filter chips.
class PanelHeader final : public QWidget
{
    Q_OBJECT
public:
    PanelHeader(HistoryViewModel& viewModel, QWidget* parent);

    [[nodiscard]] SearchField* searchField() const { return m_field; }
    [[nodiscard]] FilterChips* chips() const { return m_chips; }

    /// Takes over query, filter, counts and focus.
    void sync();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    HistoryViewModel& m_viewModel;
    SearchField* m_field;
    ClearButton* m_clear;
    FilterChips* m_chips;
};

} // namespace Clipboard
