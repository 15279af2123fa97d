#pragma once

#include "X11Session.h"

#include <memory>

namespace Clipboard::X11 {

/// The window the user was in before a window of ours took the keyboard.
class FrontWindow final
{
public:
    explicit FrontWindow(std::shared_ptr<X11Session> session);

    /// Remembers the window that has the keyboard now, unless it is one of ours.
    void remember();
    /// None when nothing was remembered or the window is gone.
    [[nodiscard]] xcb_window_t remembered();
    /// Gives the focus back, unless the user has moved on to a third window.
    void restore();
    /// Where keys typed now go, when that is the remembered window or a window inside it; else none.
    [[nodiscard]] xcb_window_t keyboardWindow();

private:
    std::shared_ptr<X11Session> m_session;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

} // namespace Clipboard::X11
