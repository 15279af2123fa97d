#pragma once

#include <QKeySequence>
#include <QList>
#include <QPointer>
#include <QRect>

#include <functional>

class QAction;
class QKeyEvent;
class QWidget;

namespace Clipboard {

class HistoryViewModel;
class InlineMenu;

/// The menus inside the panel: that of the program, and that of the selected entry. One is open at a time.
class PanelMenus final
{
public:
    /// `program` answers the items of the program's menu; they outlive the panel. Menus open over `panel`.
    PanelMenus(HistoryViewModel& viewModel, std::function<QList<QAction*>()> program, QWidget* panel);

    void openProgramMenu(const QRect& anchor);
    /// Does nothing when no entry is selected.
    void openEntryMenu(const QRect& anchor);
    void close();
    /// False when no menu is open.
    bool handleKey(const QKeyEvent& event);

private:
    [[nodiscard]] QList<QAction*> entryActions() const;
    [[nodiscard]] QAction* entryAction(const QString& text, const QKeySequence& keys,
                                       std::function<void(HistoryViewModel&)> run) const;

    HistoryViewModel& m_viewModel;
    std::function<QList<QAction*>()> m_program;
    QWidget* m_panel;
    QPointer<InlineMenu> m_menu;
};

} // namespace Clipboard
