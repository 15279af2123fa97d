#pragma once

#include "ClipboardDispatcher.h"

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Clipboard {

/// Watches, reads and owns the clipboard on a connection and a thread of its own, so that no other program, however
/// slow, hung or hostile, holds up the caller. Knows nothing of what the content is for. Asleep when nothing happens.
/// A connection that is lost alone, while the desktop lives on, is made anew.
class ClipboardEngine
{
public:
    /// Makes a connection, the first or, with what the last one left, another. Null when the desktop cannot be reached.
    using Connect = std::function<std::unique_ptr<ClipboardDispatcher>(const std::any& remains)>;

    virtual ~ClipboardEngine();
    ClipboardEngine(const ClipboardEngine&) = delete;
    ClipboardEngine& operator=(const ClipboardEngine&) = delete;

    // The following return at once. One thread calls them.

    /// Puts the content on the clipboard; while the connection is lost, as soon as it is back. Returns the running
    /// number of this write.
    quint64 own(const SelectionForms& forms);
    /// Calls `done` when all writes so far are in force, with `primaryToo` for the primary selection as well; or with
    /// false as soon as the connection turns out to be lost: nobody waits that long for a paste. On the engine's
    /// thread.
    void afterWrites(bool primaryToo, std::function<void(bool areInForce)> done);
    /// Ready when every copy made so far that can be read has been heard of. While the connection is lost, soon.
    [[nodiscard]] std::future<void> settled();
    /// Leaves our content with another clipboard manager; ready when that is done or cannot be. No change is heard of
    /// from then on.
    [[nodiscard]] std::future<void> handOver();

    /// Ends the thread; nothing is heard any more once it returns.
    void stop();

protected:
    /// `onConnected` hears on the engine's thread that the connection is lost (false) and that it is there again
    /// (true).
    ClipboardEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, Connect connect,
                    std::function<void(bool)> onConnected);

private:
    struct Command
    {
        std::function<void(ClipboardDispatcher&)> run;
        bool outlivesConnection = false;
    };

    void post(Command command);
    [[nodiscard]] std::future<void> ask(void (ClipboardDispatcher::*question)(const std::function<void()>&));
    void run();
    void serve();
    void connectAgain();
    [[nodiscard]] std::unique_ptr<ClipboardDispatcher> openAgain(const std::any& remains);
    void dropPassingCommands();
    void runCommands();
    void sleep(bool moreIsWaiting);
    void sleepUntil(ClipboardDispatcher::Clock::time_point end);

    Connect m_connect;
    std::function<void(bool)> m_onConnected;
    std::unique_ptr<ClipboardDispatcher> m_dispatcher;
    std::chrono::milliseconds m_restartDelay;
    int m_wakeUp; // an eventfd
    quint64 m_writes = 0;
    std::mutex m_mutex;
    std::vector<Command> m_commands; // guarded by m_mutex
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};

} // namespace Clipboard
