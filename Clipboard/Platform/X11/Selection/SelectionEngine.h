#pragma once

#include "SelectionDispatcher.h"

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Clipboard::X11 {

/// Watches, reads and owns the clipboard on a connection and a thread of its own, so that no other program, however
/// slow, hung or hostile, holds up the caller. Knows nothing of what the content is for. Asleep when nothing happens.
/// A connection that is lost alone, while the server lives on, is made anew.
class SelectionEngine final
{
public:
    struct Options
    {
        QByteArray display; // empty: $DISPLAY
        SelectionDispatcher::Options selections;
        /// Hears every copy of another program, in order, on the engine's thread.
        std::function<void(const SelectionSnapshot&)> onChange;
        /// Hears on the engine's thread that the connection is lost (false) and that it is there again (true).
        std::function<void(bool)> onConnected = [](bool) {};
    };

    /// Every copy made after it returns is heard of. Null when the display cannot be reached or has no XFixes.
    [[nodiscard]] static std::unique_ptr<SelectionEngine> start(const Options& options);
    ~SelectionEngine();
    SelectionEngine(const SelectionEngine&) = delete;
    SelectionEngine& operator=(const SelectionEngine&) = delete;

    // The following return at once. One thread calls them.

    /// Puts the content on the clipboard; while the connection is lost, as soon as it is back. Returns the running
    /// number of this write.
    quint64 own(const SelectionForms& forms);
    /// Calls `done` when all writes so far are in force, with `primaryToo` for the primary selection as well; or with
    /// false as soon as the connection turns out to be lost: nobody waits that long for a paste. On the engine's
    /// thread.
    void afterWrites(bool primaryToo, std::function<void(bool areInForce)> done);
    /// Ready when `onChange` has heard of every copy made so far that can be read. While the connection is lost, soon.
    [[nodiscard]] std::future<void> settled();
    /// Leaves our content with another clipboard manager; ready when that is done or cannot be. No change is heard of
    /// from then on.
    [[nodiscard]] std::future<void> handOver();

    /// Ends the thread; nothing is heard any more once it returns.
    void stop();

private:
    struct Command
    {
        std::function<void(SelectionDispatcher&)> run;
        bool outlivesConnection = false;
    };

    SelectionEngine(std::unique_ptr<XcbConnection> connection, Options options, int wakeUp);

    void post(Command command);
    [[nodiscard]] std::future<void> ask(void (SelectionDispatcher::*question)(const std::function<void()>&));
    void run();
    void serve();
    void connectAgain();
    [[nodiscard]] std::unique_ptr<XcbConnection> openAgain();
    void dropPassingCommands();
    void runCommands();
    void sleep(bool moreIsWaiting);
    void sleepUntil(SelectionDispatcher::Clock::time_point end);

    Options m_options;
    std::unique_ptr<SelectionDispatcher> m_dispatcher;
    std::chrono::milliseconds m_restartDelay;
    int m_wakeUp; // an eventfd
    quint64 m_writes = 0;
    std::mutex m_mutex;
    std::vector<Command> m_commands; // guarded by m_mutex
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};

} // namespace Clipboard::X11
