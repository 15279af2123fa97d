#include "FrontWindow.h"

namespace Clipboard::X11 {

FrontWindow::FrontWindow(std::shared_ptr<X11Session> session)
    : m_session(std::move(session))
{
}

void FrontWindow::remember()
{
    xcb_window_t window = m_session->activeWindow();
    // With no window active, a window manager keeps the focus in one of its own. Without a manager it is all there is.
    if (window == XCB_WINDOW_NONE && !m_session->hasActivation())
        window = m_session->focusWindow();
    if (window == XCB_WINDOW_NONE || !m_session->isOurs(window))
        m_window = window;
}

xcb_window_t FrontWindow::remembered()
{
    if (m_window != XCB_WINDOW_NONE && !m_session->isWindow(m_window))
        m_window = XCB_WINDOW_NONE;
    return m_window;
}

void FrontWindow::restore()
{
    // The focus tells earlier than the window manager's property whether the user clicked somewhere else.
    const xcb_window_t focus = m_session->focusWindow();
    const bool userMovedOn = focus != XCB_WINDOW_NONE && !m_session->isOurs(focus);
    if (!userMovedOn && remembered() != XCB_WINDOW_NONE)
        m_session->activate(m_window);
}

xcb_window_t FrontWindow::keyboardWindow()
{
    // Another window of the same program is another window, so the program does not count: a second document, a dialog.
    const xcb_window_t focus = m_window == XCB_WINDOW_NONE ? m_window : m_session->focusWindow();
    return focus != XCB_WINDOW_NONE && m_session->isInside(focus, m_window) ? focus : xcb_window_t(XCB_WINDOW_NONE);
}

} // namespace Clipboard::X11
