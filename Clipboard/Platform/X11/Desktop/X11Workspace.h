#pragma once

#include "DesktopEntries.h"
#include "X11Session.h"
#include "XdgWorkspace.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QPixmap>

#include <future>
#include <memory>

namespace Clipboard {

/// The active window as the window manager names it, and the installed applications by their desktop entries.
class X11Workspace final : public XdgWorkspace
{
public:
    explicit X11Workspace(std::shared_ptr<X11::X11Session> session);
    ~X11Workspace() override;

    [[nodiscard]] std::optional<Application> frontmostApplication() const override;
    [[nodiscard]] QIcon applicationIcon(const QString& bundleID) const override;
    [[nodiscard]] QIcon fileIcon(const QString& path) const override;

private:
    using EntriesPointer = std::shared_ptr<const DesktopEntries>;

    void handle(const xcb_generic_event_t* event);
    void activeWindowChanged();
    [[nodiscard]] DesktopEntries::Traits traitsOf(xcb_window_t window) const;
    void keepWindowIcon(xcb_window_t window, const QString& bundleID);

    void readEntries();
    void entriesRead();
    void readEntriesAgainIfChanged();
    [[nodiscard]] const DesktopEntries& entries() const;
    [[nodiscard]] Application applicationOf(const DesktopEntries::Traits& traits) const;

    std::shared_ptr<X11::X11Session> m_session;
    std::optional<DesktopEntries::Traits> m_frontmost;
    std::optional<DesktopEntries::Traits> m_beforeNone; // the last one before no window was active
    QHash<QString, QIcon> m_windowIcons;                // of applications by their ids

    mutable EntriesPointer m_entries;
    mutable std::future<EntriesPointer> m_reading; // valid while a newer reading is under way
    QList<QDateTime> m_foldersChanged;
};

} // namespace Clipboard
