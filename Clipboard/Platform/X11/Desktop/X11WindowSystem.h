#pragma once

#include "FrontWindow.h"
#include "UserActivity.h"
#include "WindowSystem.h"
#include "X11Session.h"

#include <QSet>

#include <memory>

namespace Clipboard {

/// The window manager by way of EWMH, with the plain X focus where there is none.
class X11WindowSystem final : public WindowSystem
{
public:
    /// Whether the toolkit has an X server for its display and has lost it. Any thread.
    [[nodiscard]] static bool isDisplayLost();

    X11WindowSystem(std::shared_ptr<X11::X11Session> session, std::shared_ptr<X11::FrontWindow> frontWindow);

    void prepare(QWindow* window, Role role) override;
    void setShadow(QWindow* window, const QMargins& shadow) override;
    void rememberFrontWindow() override;
    void activate(QWindow* window) override;
    void restoreFrontWindow() override;
    [[nodiscard]] QScreen* workScreen() const override;
    [[nodiscard]] bool isCompositing() const override { return m_isCompositing; }
    [[nodiscard]] bool isFocusAtPointer() const override;

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void writeStates(const QWindow& window);
    void handle(const xcb_generic_event_t* event);
    [[nodiscard]] bool hasCompositor() const;
    void userClicked();
    void userTyped();

    std::shared_ptr<X11::X11Session> m_session;
    std::shared_ptr<X11::FrontWindow> m_frontWindow;
    xcb_atom_t m_compositorSelection;
    int m_selectionEvent = -1;
    QSet<const QWindow*> m_awaited; // those that the server is yet to show
    X11::UserActivity m_activity;
    const QWindow* m_panel = nullptr; // while it is shown
    bool m_hasClickedBeside = false;
    bool m_hasHadKeyboard = false;
    bool m_isCompositing = false;
};

} // namespace Clipboard
