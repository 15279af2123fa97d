#pragma once

#include "WaylandConnection.h"

#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace Clipboard::Wayland {

/// The windows of a Wayland session, as its compositor tells of them: whose the active one is, and which one was active
/// before a window of ours took its place. By which protocol it tells is the business of the classes below this one.
/// Main thread; also the desktop's connection there.
class Toplevels : public QObject
{
    Q_OBJECT
public:
    [[nodiscard]] WaylandConnection& connection() { return *m_connection; }

    /// Handles what the compositor has told by now.
    void catchUp() { m_connection->serve(); }
    /// Calls `done` once the compositor has told what there is to tell of windows that are new: at once where none is,
    /// and all the same where it does not answer. A copy that was made in a new window may be heard of before that, and
    /// whether it is to be recorded may depend on the window's application.
    void whenDescribed(std::function<void()> done);
    /// The application id of the active window or, while one of ours is active, of the one before it. Nothing when no
    /// window is active.
    [[nodiscard]] std::optional<QString> frontApplication() const;
    /// The name of the output that the active window is on or, while one of ours covers it, was. Empty when no window
    /// is active, or nobody tells.
    [[nodiscard]] QString workOutput() const;
    /// That of the window that is active or was before, where the compositor would put our surfaces on another output.
    /// Empty elsewhere.
    [[nodiscard]] virtual QString wantedOutput() const { return {}; }
    /// True when the window is active again over which ours was shown last, or nothing was shown over the active one.
    [[nodiscard]] bool isFrontBack() const;
    /// While a surface of ours that is no window has the keyboard, no window is active.
    void setCovered(bool isCovered) { m_isCovered = isCovered; }
    /// Gives the keyboard to the window of ours with that title. False where the compositor takes no such wish, or has
    /// no such window yet: it gives the keyboard to a new one by itself.
    virtual bool activateOurs(const QString& /*title*/) { return false; }

signals:
    void frontChanged();

protected:
    /// The object that stands for a window.
    using Window = const void*;

    explicit Toplevels(std::unique_ptr<WaylandConnection> connection);
    /// Handles from now on what the compositor tells. False when it does not answer in time.
    [[nodiscard]] bool listen();

    void setApplication(Window window, const QString& application);
    void setActive(Window window, bool isActive);
    void remove(Window window);
    /// Whether there is a window of which nothing is known yet but that it is there.
    [[nodiscard]] virtual bool isAsking() const { return false; }
    /// Empty for null, too.
    [[nodiscard]] virtual QString outputOf(Window /*window*/) const { return {}; }
    [[nodiscard]] Window lastActive() const { return m_active != nullptr ? m_active : m_front; }

    [[nodiscard]] bool isOurs(Window window) const;

private:
    std::unique_ptr<WaylandConnection> m_connection;
    std::map<Window, QString> m_applications; // by their ids
    Window m_active = nullptr;                // null when none is
    Window m_front = nullptr; // the last active one that is not ours; null when it is gone or none was active since
    bool m_isCovered = false;
};

} // namespace Clipboard::Wayland
