#pragma once

#include "Actions/SmartActions.h"
#include "Focus/FocusKey.h"
#include "History/ClipType.h"

#include <QHash>
#include <QList>
#include <QRectF>
#include <QWidget>

namespace Clipboard {

class ActionChip;
class HistoryViewModel;
class KeyCapButton;

/// What can be done with an entry, as a heading with a wrapping row of chips below it. The widget is larger than what
/// it draws by the reach of a focus ring.
class SmartActionsSection final : public QWidget
{
    Q_OBJECT
public:
    /// What it draws is `width` wide.
    SmartActionsSection(HistoryViewModel& viewModel, int width, QWidget* parent);

    /// Shows these actions of an entry of that type, and which of them are under way; none for as long as they are not
    /// known.
    void setActions(const QList<ClipboardCore::SmartAction>& actions, ClipboardCore::ClipType type);
    /// Takes over which chip has focus.
    void syncFocus();
    void addFrames(QHash<ClipboardCore::FocusKey, QRectF>& frames, const QWidget* ancestor) const;

    /// Places the section so that what it draws begins at `topLeft`.
    void place(const QPoint& topLeft);
    /// The height of what it draws.
    [[nodiscard]] int contentHeight() const { return m_contentHeight; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] ActionChip* chip(int index);
    void layOut();

    HistoryViewModel& m_viewModel;
    int m_width;
    KeyCapButton* m_sheetButton;
    QList<ActionChip*> m_chips; // those beyond m_count are hidden
    int m_count = 0;
    int m_contentHeight = 0;
};

} // namespace Clipboard
