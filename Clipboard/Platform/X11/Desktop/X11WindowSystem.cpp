#include "X11WindowSystem.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>

#include <qpa/qwindowsysteminterface.h>
#include <xcb/xfixes.h>

#include <array>

namespace Clipboard {

namespace {

constexpr uint32_t allDesktops = 0xffffffff;

/// Sees to it that the server has what Qt has asked it for on its own connection.
void finishRequestsOfQt()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr)
        return;
    xcb_connection_t* xcb = x11->connection();
    X11::XcbPointer<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
}

/// Qt takes a window that was hidden for the one with the keyboard for another 100 ms, and closes a menu that was
/// opened meanwhile when they are over. A window that is shown again within it does not tell that it is active.
void forgetEarlierFocus(const QWindow& window)
{
    if (QGuiApplication::focusWindow() == &window)
        QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::SynchronousDelivery>(nullptr);
}

/// The screen with the largest part of a rectangle in the server's pixels; null when it is outside of all.
QScreen* screenOf(const QRect& window)
{
    QScreen* best = nullptr;
    qint64 largest = 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (QScreen* screen : screens) {
        // The toolkit scales a screen's size, and leaves its corner where the server has it.
        const QRect pixels(screen->geometry().topLeft(), screen->geometry().size() * screen->devicePixelRatio());
        const QRect part = pixels & window;
        if (const qint64 area = qint64(part.width()) * part.height(); !part.isEmpty() && area > largest) {
            largest = area;
            best = screen;
        }
    }
    return best;
}

xcb_window_t idOf(const QWindow& window)
{
    return static_cast<xcb_window_t>(window.winId());
}

} // namespace

bool X11WindowSystem::isDisplayLost()
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr && xcb_connection_has_error(x11->connection()) != 0;
}

X11WindowSystem::X11WindowSystem(std::shared_ptr<X11::X11Session> session,
                                 std::shared_ptr<X11::FrontWindow> frontWindow)
    : m_session(std::move(session))
    , m_frontWindow(std::move(frontWindow))
    , m_compositorSelection(
          m_session->connection().atom("_NET_WM_CM_S" + QByteArray::number(m_session->connection().screenNumber())))
    , m_activity(m_session)
{
    if (m_session->connection().hasExtension(&xcb_xfixes_id)) {
        xcb_connection_t* xcb = m_session->xcb();
        const X11::XcbPointer<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0), nullptr));
        m_selectionEvent = xcb_get_extension_data(xcb, &xcb_xfixes_id)->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        xcb_xfixes_select_selection_input(xcb, m_session->window(), m_compositorSelection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    connect(m_session.get(), &X11::X11Session::eventReceived, this, &X11WindowSystem::handle);
    connect(&m_activity, &X11::UserActivity::clicked, this, &X11WindowSystem::userClicked);
    connect(&m_activity, &X11::UserActivity::typed, this, &X11WindowSystem::userTyped);
    m_isCompositing = hasCompositor();
}

/// The toolkit has told the window manager all there is to tell of the others.
void X11WindowSystem::prepare(QWindow* window, Role role)
{
    if (role != Role::panel)
        return;
    writeStates(*window);
    window->installEventFilter(this);
}

/// A window manager forgets the states of a window that is hidden, so they are written each time before it is shown.
/// The first exposure tells that the server has shown it: what is told of the keyboard before is late news of an
/// earlier showing.
bool X11WindowSystem::eventFilter(QObject* object, QEvent* event)
{
    const auto* window = qobject_cast<QWindow*>(object);
    if (window == nullptr || window->handle() == nullptr)
        return false;
    if (event->type() == QEvent::Show) {
        m_awaited.insert(window);
        writeStates(*window);
        m_panel = window;
        m_hasClickedBeside = false;
        m_hasHadKeyboard = false;
        m_activity.follow();
    } else if (event->type() == QEvent::FocusIn) {
        m_hasHadKeyboard = true;
    } else if (event->type() == QEvent::Hide) {
        m_panel = nullptr;
        m_activity.stop();
    }
    const bool isShown = event->type() == QEvent::Expose && window->isExposed() && m_awaited.remove(window);
    if (isShown || event->type() == QEvent::Hide)
        forgetEarlierFocus(*window);
    return false;
}

void X11WindowSystem::writeStates(const QWindow& window)
{
    auto& connection = m_session->connection();
    const xcb_atom_t states[] = {
        connection.atom("_NET_WM_STATE_SKIP_TASKBAR"),
        connection.atom("_NET_WM_STATE_SKIP_PAGER"),
        connection.atom("_NET_WM_STATE_STICKY"),
        connection.atom("_NET_WM_STATE_ABOVE"),
    };
    finishRequestsOfQt();
    xcb_change_property(m_session->xcb(), XCB_PROP_MODE_REPLACE, idOf(window), connection.atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, static_cast<uint32_t>(std::size(states)), states);
    xcb_change_property(m_session->xcb(), XCB_PROP_MODE_REPLACE, idOf(window), connection.atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
    connection.synchronize();
}

/// The property is GTK's, and the window managers of GNOME, Plasma, Xfce and MATE know it: left, right, top, bottom in
/// the server's pixels.
void X11WindowSystem::setShadow(QWindow* window, const QMargins& shadow)
{
    const QMargins pixels = (QMarginsF(shadow) * window->devicePixelRatio()).toMargins();
    const std::array extents{uint32_t(pixels.left()), uint32_t(pixels.right()), uint32_t(pixels.top()),
                             uint32_t(pixels.bottom())};
    auto& connection = m_session->connection();
    finishRequestsOfQt();
    xcb_change_property(m_session->xcb(), XCB_PROP_MODE_REPLACE, idOf(*window), connection.atom("_GTK_FRAME_EXTENTS"),
                        XCB_ATOM_CARDINAL, 32, static_cast<uint32_t>(extents.size()), extents.data());
    connection.synchronize();
}

void X11WindowSystem::rememberFrontWindow()
{
    m_frontWindow->remember();
}

void X11WindowSystem::activate(QWindow* window)
{
    window->raise();
    // The window manager must have heard of the window before it is asked to make it active.
    finishRequestsOfQt();
    m_session->activate(idOf(*window));
}

void X11WindowSystem::restoreFrontWindow()
{
    finishRequestsOfQt();
    m_frontWindow->restore();
}

QScreen* X11WindowSystem::workScreen() const
{
    const xcb_window_t window = m_session->activeWindow();
    QScreen* screen =
        window == XCB_WINDOW_NONE || m_session->isDesktop(window) ? nullptr : screenOf(m_session->geometry(window));
    return screen != nullptr ? screen : QGuiApplication::screenAt(QCursor::pos());
}

/// A click gives the keyboard away on any desktop: what follows it is no longer the pointer's doing.
bool X11WindowSystem::isFocusAtPointer() const
{
    if (m_hasClickedBeside || !m_activity.hasMovedPointer())
        return false;
    const xcb_window_t active = m_session->activeWindow();
    return active == XCB_WINDOW_NONE || m_session->isInside(active, m_session->pointer().window);
}

/// What is clicked at in a window of ours, such as the icon in the tray, is its own business: it may be about to close
/// the panel, and would open it again.
void X11WindowSystem::userClicked()
{
    if (m_panel == nullptr || m_panel->geometry().contains(QCursor::pos()) ||
        m_session->connection().areOfOneClient(m_session->windowAtPointer(), idOf(*m_panel)))
        return;
    m_hasClickedBeside = true;
    emit userWorked();
}

/// A key comes on another connection than the toolkit hears on who has the keyboard, and often earlier: the server
/// knows. Whoever types before the panel has had the keyboard means the panel.
void X11WindowSystem::userTyped()
{
    if (m_panel != nullptr && m_hasHadKeyboard && !m_session->isInside(m_session->focusWindow(), idOf(*m_panel)))
        emit userWorked();
}

void X11WindowSystem::handle(const xcb_generic_event_t* event)
{
    if ((event->response_type & 0x7f) != m_selectionEvent)
        return;
    const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (change->selection != m_compositorSelection)
        return;
    // The other kinds tell that the owner has gone.
    const bool isCompositing =
        change->subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER && change->owner != XCB_WINDOW_NONE;
    if (isCompositing == m_isCompositing)
        return;
    m_isCompositing = isCompositing;
    emit compositingChanged();
}

bool X11WindowSystem::hasCompositor() const
{
    const auto cookie = xcb_get_selection_owner(m_session->xcb(), m_compositorSelection);
    const X11::XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_session->xcb(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace Clipboard
