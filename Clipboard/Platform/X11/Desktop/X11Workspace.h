#pragma once

#include "EntryWorkspace.h"
#include "X11Session.h"

#include <QHash>
#include <QPixmap>

#include <memory>

namespace Clipboard {

/// The active window as the window manager names it.
class X11Workspace final : public EntryWorkspace
{
public:
    explicit X11Workspace(std::shared_ptr<X11::X11Session> session);
    ~X11Workspace() override;

    [[nodiscard]] std::optional<Application> frontmostApplication() const override;

protected:
    void entriesRead() override;
    [[nodiscard]] QIcon iconOfWindow(const QString& bundleID) const override { return m_windowIcons.value(bundleID); }

private:
    void handle(const xcb_generic_event_t* event);
    void activeWindowChanged();
    /// Into `traits`, which stay as they are when the window is gone.
    void readClass(xcb_window_t window, DesktopEntries::Traits& traits) const;
    [[nodiscard]] DesktopEntries::Traits traitsOf(xcb_window_t window) const;
    void keepWindowIcon(xcb_window_t window, const QString& bundleID);

    std::shared_ptr<X11::X11Session> m_session;
    std::optional<DesktopEntries::Traits> m_frontmost;
    xcb_window_t m_window = XCB_WINDOW_NONE; // that of m_frontmost; its program may name it anew while it is active
    std::optional<DesktopEntries::Traits> m_beforeNone; // the last one before no window was active
    QHash<QString, QIcon> m_windowIcons;                // of applications by their ids
};

} // namespace Clipboard
