#pragma once

#include "Surface.h"

#include <QWidget>

#include <functional>

class QAction;
class QVariantAnimation;

namespace ClipboardCore {
struct KeyEvent;
}

namespace Clipboard {

class HistoryViewModel;
class PanelView;
class Thumbs;
class WindowSystem;
class Workspace;

/// The window of the history: it takes the keyboard without taking the place of the application in front, and closes as
/// soon as it loses the keyboard or Escape is left over. Where the keyboard follows the pointer, a click or a key in
/// another window closes it.
class FloatingPanel final : public QWidget
{
    Q_OBJECT
public:
    /// What the panel draws from; all must outlive it.
    struct Services
    {
        HistoryViewModel& viewModel;
        WindowSystem& windows;
        const Workspace& workspace;
        Thumbs& thumbs;
        /// The items of the program's menu, which outlive the panel.
        std::function<QList<QAction*>()> programMenu{};
    };
    explicit FloatingPanel(const Services& services);
    ~FloatingPanel() override;

    /// Builds the content and the native window, which the first showing otherwise does. For idle time after the start.
    void prepare();

    /// Places the panel itself; the margin that holds its shadow lies outside. Global coordinates.
    void setPanelGeometry(const QRect& panel);
    [[nodiscard]] QRect panelGeometry() const { return m_geometry; }

    /// Remembers the window in front, shows the panel and gives it the keyboard. The view model must be ready to be
    /// shown by then.
    void open();
    /// Hides the panel and gives the focus back. Does nothing when it is closed, or closing.
    void dismiss();

signals:
    /// The panel is about to close, by whatever cause. It is still visible.
    void willClose();
    /// The panel is gone from the screen, and the focus on its way back.
    void closed();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool handleKey(const QKeyEvent& event);
    /// Copies what is marked in the preview, or else the selected entry; leaves the field what is marked there.
    bool copyMarked(const ClipboardCore::KeyEvent& key);
    void applyCompositing();
    void layOutView();
    void startEntrance();
    void applyEntrance(qreal progress);
    [[nodiscard]] QPoint windowPlace() const;

    Services m_services;
    Surface m_surface;
    QRect m_geometry;
    PanelView* m_view = nullptr;
    QVariantAnimation* m_entrance = nullptr;
    bool m_open = false;
    bool m_mayInsist = false;  // on its place, once a showing
    bool m_isOnScreen = false; // until then, a loss of the keyboard is late news of an earlier showing
};

} // namespace Clipboard
