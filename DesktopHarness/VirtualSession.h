#pragma once

#include "Desktop.h"

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <vector>

struct xcb_connection_t;

namespace Clipboard::Testing {

/// A desktop of its own: an X server or a Wayland compositor that nobody sees, the programs that make a session of it,
/// a message bus and a home folder. Everything in it ends with it, also when this process is killed. Any number can run
/// side by side.
class VirtualSession final
{
public:
    enum class Kind { x11, sway, kwin };

    struct Options
    {
        Kind kind = Kind::x11;
        QSize size{1280, 800};
        // Of an X11 session.
        bool windowManager = true;
        bool focusFollowsPointer = false;
        bool trayHost = false;
        bool compositor = false;
        // The folder in which the server keeps the screen as an xwd file, for others to look into; none when empty.
        QString framebuffer = {};
    };

    struct Result
    {
        int exitCode = -1; // -1 when the program could not be started, crashed or had to be killed
        QByteArray output;
        QByteArray errors;
    };

    /// ms; a sanitized program, or the first start of a toolkit beside twenty busy processes, takes half of it.
    static constexpr int defaultTimeout = 60'000;

    VirtualSession();
    explicit VirtualSession(const Options& options);
    ~VirtualSession();
    VirtualSession(const VirtualSession&) = delete;
    VirtualSession& operator=(const VirtualSession&) = delete;

    /// Why the session did not come up; empty when it did.
    [[nodiscard]] const QString& failure() const { return m_failure; }

    /// Of the X server, in a Wayland session that for programs of X11.
    [[nodiscard]] const QString& display() const { return m_display; }
    /// The environment of the programs in the session: display, home, XDG folders and message bus, nothing of the
    /// outside session.
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }
    /// For every program started from now on.
    void setEnvironment(const QString& name, const QString& value) { m_environment.insert(name, value); }
    /// The private home folder; its XDG folders are the default ones below it.
    [[nodiscard]] QString home() const { return m_home.path(); }
    [[nodiscard]] QString homePath(const QString& relative) const { return m_home.filePath(relative); }

    /// Runs a program to its end; with a time-out it is killed.
    Result run(const QString& program, const QStringList& arguments = {}, const QByteArray& input = {},
               int timeout = defaultTimeout);
    /// Starts a program that goes on running; it belongs to the session. Standard input is `input`, then ends. Standard
    /// error goes to the file, when one is named.
    QProcess& start(const QString& program, const QStringList& arguments = {}, const QByteArray& input = {},
                    const QString& errorFile = {});
    /// The programs started from now on belong to the user and the capabilities of this one. Compositors look at what
    /// program a connection belongs to, and are allowed to among such alone.
    void liveWith(const QProcess& process);
    /// A connection to the compositor as a program of the session has it, unlike this process; -1 when there is none.
    [[nodiscard]] int connectToCompositor();
    /// Ends a program that start() gave out, with SIGKILL, and forgets it.
    void kill(QProcess& process);
    /// Ends the X server or the compositor, as its crash does. Nothing works from then on.
    void crashDisplay();
    /// Ends a compositor's X server alone, which the compositor starts again. Our own connection to it ends as well.
    void crashXwayland();

    /// Whoever sits at it; there is none when the session did not come up.
    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] Desktop& desktop() { return *m_desktop; }
    [[nodiscard]] const Desktop& desktop() const { return *m_desktop; }
    /// The whole screen as a PNG file. False when it could not be taken.
    [[nodiscard]] bool screenshot(const QString& path);

    /// The session's own connection to the X server; null when the session did not come up.
    [[nodiscard]] xcb_connection_t* connection() const { return m_connection; }
    /// The owner of a selection such as "CLIPBOARD"; 0 for none.
    [[nodiscard]] quint32 selectionOwner(const QByteArray& selection) const;

    /// Asks again until the answer is true, events served meanwhile. False when the time is over.
    [[nodiscard]] static bool waitUntil(const std::function<bool()>& condition, int timeout = defaultTimeout);

private:
    QString bringUp(const Options& options);
    QString bringUpX11(const Options& options);
    QString bringUpWayland(const Options& options);
    QString startServer(const Options& options);
    QString connectToServer();
    QString startMessageBus();
    QString startOwner(const QString& program, const QStringList& arguments, const QByteArray& selection);
    [[nodiscard]] bool managesWindows() const;
    void prepareEnvironment();
    void launch(QProcess& process, const QString& program, const QStringList& arguments);

    Kind m_kind;
    QStringList m_launcher; // the program that starts all others, and its arguments; mostly none
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    QString m_display;
    QString m_failure;
    xcb_connection_t* m_connection = nullptr;
    std::unique_ptr<Desktop> m_desktop;
    std::vector<std::unique_ptr<QProcess>> m_processes; // in the order they were started
};

} // namespace Clipboard::Testing
