#pragma once

#include "PanelMenus.h"

#include <QTimer>
#include <QWidget>

namespace Clipboard {

class CommandSheet;
class EmptyView;
class FileKinds;
class HistoryList;
class HistoryViewModel;
class PanelFooter;
class PanelHeader;
class PreviewPane;
class SearchField;
class Thumbs;
class Workspace;

/// The content of the panel. It shows what the view model holds and hands clicks back to it; of its own it knows only
/// what the pointer is over.
///
/// The view model tells each single change. They are gathered, and taken over together by sync(): before the next key,
/// before the next frame, and not at all while the panel is hidden.
class PanelView final : public QWidget
{
    Q_OBJECT
public:
    /// `programMenu` answers the items of the program's menu.
    PanelView(HistoryViewModel& viewModel, const Workspace& workspace, Thumbs& thumbs,
              std::function<QList<QAction*>()> programMenu, QWidget* parent);
    ~PanelView() override;

    /// Brings everything on screen, and the view model's frames, in line with the view model now.
    void sync();

    /// The field that has the keyboard: the search field, or the filter of the command sheet.
    [[nodiscard]] SearchField* activeField() const;
    /// Opens the menu that the key is for, or hands the key to the one that is open. False when it is for neither.
    bool handleMenuKey(const QKeyEvent& event);
    /// The corners of the panel; 0 where they are square.
    void setCornerRadius(int radius);
    /// True while an entry is dragged out of the list; dragFinished() follows.
    [[nodiscard]] bool isDragging() const;
    /// What the user has marked in the preview.
    [[nodiscard]] QString selectedPreviewText() const;

signals:
    void dragFinished();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum Change : unsigned {
        entries = 1,
        selection = 2,
        state = 4,
        keyboard = 8,
        sheet = 16,
        places = 32,
        notice = 64,
        actions = 128,
        everything = 255
    };
    void connectViewModel();
    void openProgramMenu();
    void openEntryMenu(const QPoint& place);
    void changed(unsigned what);
    void syncEntries();
    void publishFrames();
    void syncEmptyView();
    void refreshAges();
    [[nodiscard]] QRect contentRect() const;

    HistoryViewModel& m_viewModel;
    FileKinds* m_files;
    PanelHeader* m_header;
    HistoryList* m_list;
    PreviewPane* m_preview;
    EmptyView* m_empty;
    PanelFooter* m_footer;
    CommandSheet* m_sheet;
    PanelMenus m_menus;
    QTimer m_ages;
    unsigned m_changed = everything;
    bool m_syncPending = false;
    bool m_isEmpty = true;
};

} // namespace Clipboard
