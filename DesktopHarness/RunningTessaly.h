#pragma once

#include "MomentLog.h"
#include "VirtualSession.h"

#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace Clipboard::Testing {

/// The built program in a virtual session, seen as a stranger sees it: its history file, its windows, its reports.
class RunningTessaly final
{
public:
    struct Entry
    {
        QString type;
        QString content;
        QString sourceApp; // empty when absent
        QString bundleID;
        bool isPinned = false;
    };

    using Window = Desktop::Window;

    RunningTessaly(VirtualSession& session, QString program);
    ~RunningTessaly();
    RunningTessaly(const RunningTessaly&) = delete;
    RunningTessaly& operator=(const RunningTessaly&) = delete;

    /// Starts the program, for the first time or again, until it hears of copies and of its hot key. When it came to
    /// watch the clipboard; nothing if it never did.
    [[nodiscard]] std::optional<MomentLog::Time> start();
    /// Sends the signal and waits for the end. The exit code; -1 when a signal ended it.
    int stop(int signal);
    [[nodiscard]] const QString& program() const { return m_program; }
    [[nodiscard]] qint64 processID() const;
    [[nodiscard]] bool isRunning() const;
    /// Once it has ended; -1 when a signal ended it.
    [[nodiscard]] int exitCode() const;

    [[nodiscard]] MomentLog& moments() { return m_moments; }

    [[nodiscard]] QString dataFolder() const;
    [[nodiscard]] QString historyFile() const;
    /// What the file holds now; nothing when it is not there or not one whole array of entries.
    [[nodiscard]] std::optional<QList<Entry>> history() const;
    /// Waits until the file holds what the condition asks for.
    [[nodiscard]] bool waitForHistory(const std::function<bool(const QList<Entry>&)>& condition);
    [[nodiscard]] bool waitForNewest(const QString& content);
    /// Waits for that many reports of captures since moments() was last cleared.
    [[nodiscard]] bool waitForCaptures(int count);

    /// The panel, while it is on the screen.
    [[nodiscard]] std::optional<Window> panel() const;
    /// The annotation editor, while it is on the screen.
    [[nodiscard]] std::optional<Window> editor() const;
    /// The notice, while it is on the screen. What it says is not for its title, which every program can read.
    [[nodiscard]] std::optional<Window> toast() const;
    /// The icon in an XEmbed tray.
    [[nodiscard]] std::optional<Window> trayIcon() const;
    /// The program's windows that can be seen.
    [[nodiscard]] QList<Window> windows() const;
    /// The window that the window manager calls active; 0 for none.
    [[nodiscard]] quint32 activeWindow() const;

    [[nodiscard]] bool waitForPanel(bool visible);

private:
    /// The panel of the very first start would be in the way of what the journeys do.
    void beWelcomed();
    [[nodiscard]] std::optional<Window> titled(const QString& title) const;

    VirtualSession& m_session;
    QString m_program;
    MomentLog m_moments;
    QProcess* m_process = nullptr; // owned by the session
};

} // namespace Clipboard::Testing
