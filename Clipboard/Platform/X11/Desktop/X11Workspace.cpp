#include "X11Workspace.h"

#include "WindowIcon.h"

#include <QFileInfo>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// The side of an application's icon in the panel, at twice the density.
constexpr int iconSize = 64;
// Icons of windows kept at the same time; more programs than anybody copies from in a day.
constexpr qsizetype maxWindowIcons = 64;
// Application ids are names, not texts.
constexpr uint32_t maxIdWords = 256;

} // namespace

X11Workspace::X11Workspace(std::shared_ptr<X11::X11Session> session)
    : m_session(std::move(session))
{
    connect(m_session.get(), &X11::X11Session::eventReceived, this, &X11Workspace::handle);
    activeWindowChanged();
}

X11Workspace::~X11Workspace() = default;

void X11Workspace::handle(const xcb_generic_event_t* event)
{
    if ((event->response_type & 0x7fU) != XCB_PROPERTY_NOTIFY)
        return;
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (change->window == m_session->root() && change->atom == m_session->connection().atom("_NET_ACTIVE_WINDOW"))
        activeWindowChanged();
}

/// Looks at the new window while it is there: at the time of a copy it may be gone already.
void X11Workspace::activeWindowChanged()
{
    const xcb_window_t window = m_session->activeWindow();
    if (window == XCB_WINDOW_NONE) {
        if (m_frontmost)
            m_beforeNone = std::exchange(m_frontmost, std::nullopt);
        return;
    }
    if (m_session->isOurs(window)) {
        // A window manager may name none for a moment while it passes the focus on to us.
        if (!m_frontmost)
            m_frontmost = m_beforeNone;
        return;
    }
    m_frontmost = traitsOf(window);
    m_window = window;
    readEntriesAgainIfChanged();
    // Without the entries its id is not known; entriesRead() comes here again.
    if (isReadingFirstEntries())
        return;
    if (const auto id = applicationOf(*m_frontmost).bundleID; id && !m_windowIcons.contains(*id))
        keepWindowIcon(window, *id);
}

void X11Workspace::readClass(xcb_window_t window, DesktopEntries::Traits& traits) const
{
    const auto windowClass = m_session->windowClass(window);
    if (windowClass.name.isEmpty())
        return;
    traits.windowClass = QString::fromUtf8(windowClass.name);
    traits.windowInstance = QString::fromUtf8(windowClass.instance);
}

DesktopEntries::Traits X11Workspace::traitsOf(xcb_window_t window) const
{
    auto& connection = m_session->connection();
    DesktopEntries::Traits traits;
    readClass(window, traits);
    const auto id =
        connection.property(window, connection.atom("_GTK_APPLICATION_ID"), connection.atom("UTF8_STRING"), maxIdWords);
    if (id && id->format == 8)
        traits.applicationID = QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(id.get())),
                                                 xcb_get_property_value_length(id.get()));
    const auto pid = connection.words(window, connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1);
    if (!pid.empty())
        traits.executable = QFileInfo(u"/proc/%1/exe"_s.arg(pid.front())).symLinkTarget().section(u'/', -1);
    return traits;
}

void X11Workspace::keepWindowIcon(xcb_window_t window, const QString& bundleID)
{
    auto& connection = m_session->connection();
    const auto words = connection.words(window, connection.atom("_NET_WM_ICON"), XCB_ATOM_CARDINAL, X11::maxIconWords);
    const QImage image = X11::windowIcon(words, iconSize);
    if (m_windowIcons.size() >= maxWindowIcons)
        m_windowIcons.clear();
    m_windowIcons.insert(bundleID, image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image)));
}

/// Of a copy we hear on another connection, which may be ahead of the news of the window in which it was made.
std::optional<Workspace::Application> X11Workspace::frontmostApplication() const
{
    const xcb_window_t window = m_session->activeWindow();
    const bool isNews = window != XCB_WINDOW_NONE && (window != m_window || !m_frontmost);
    if (isNews && !m_session->isOurs(window))
        return applicationOf(traitsOf(window));
    if (!m_frontmost)
        return {};
    DesktopEntries::Traits traits = *m_frontmost;
    readClass(m_window, traits);
    return applicationOf(traits);
}

void X11Workspace::entriesRead()
{
    activeWindowChanged();
}

} // namespace Clipboard
