#pragma once

#include "WaylandConnection.h"

#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <optional>

struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace Clipboard::Wayland {

/// The windows of a Wayland session, as its compositor tells of them: whose the active one is, and which one was active
/// before a window of ours took its place. Main thread; also the desktop's connection there.
class Toplevels final : public QObject
{
    Q_OBJECT
public:
    /// Null when the compositor cannot be reached, or does not tell.
    [[nodiscard]] static std::shared_ptr<Toplevels> follow();
    ~Toplevels() override;

    [[nodiscard]] WaylandConnection& connection() { return *m_connection; }

    /// The application id of the active window or, while one of ours is active, of the one before it. Nothing when no
    /// window is active.
    [[nodiscard]] std::optional<QString> frontApplication() const;
    /// True when the window is active again over which ours was shown last, or nothing was shown over the active one.
    [[nodiscard]] bool isFrontBack() const;

signals:
    void frontChanged();

private:
    using Handle = zwlr_foreign_toplevel_handle_v1;

    struct Window
    {
        QString application;
        bool isActive = false;
        bool willBeActive = false; // as of the next "done"
    };

    explicit Toplevels(std::unique_ptr<WaylandConnection> connection);
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void apply(Handle* handle);
    void remove(Handle* handle);
    [[nodiscard]] bool isOurs(const Window& window) const;

    std::unique_ptr<WaylandConnection> m_connection;
    zwlr_foreign_toplevel_manager_v1* m_manager = nullptr;
    std::map<Handle*, Window> m_windows;
    Handle* m_active = nullptr; // null when none is
    Handle* m_front = nullptr;  // the last active one that is not ours; null when it is gone or none was active since
};

} // namespace Clipboard::Wayland
