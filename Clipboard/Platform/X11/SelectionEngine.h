#pragma once

#include "SelectionDispatcher.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Clipboard::X11 {

/// Watches, reads and owns the clipboard on a connection and a thread of its own, so that no other program, however
/// slow, hung or hostile, holds up the caller. Knows nothing of what the content is for. Asleep when nothing happens.
class SelectionEngine final
{
public:
    struct Options
    {
        QByteArray display; // empty: $DISPLAY
        SelectionReader::Options reading;
        /// Hears every copy of another program, in order, on the engine's thread.
        std::function<void(const SelectionSnapshot&)> onChange;
    };

    /// Every copy made after it returns is heard of. Null when the display cannot be reached or has no XFixes.
    [[nodiscard]] static std::unique_ptr<SelectionEngine> start(const Options& options);
    ~SelectionEngine();
    SelectionEngine(const SelectionEngine&) = delete;
    SelectionEngine& operator=(const SelectionEngine&) = delete;

    // The following return at once. One thread calls them.

    /// Puts the content on the clipboard. Returns the running number of this write.
    quint64 own(const SelectionForms& forms);
    /// Calls `done` on the engine's thread when all writes so far are in force, with `primaryToo` for the primary
    /// selection as well.
    void afterWrites(bool primaryToo, const std::function<void()>& done);

    /// Ends the thread; nothing is heard any more once it returns.
    void stop();

private:
    using Command = std::function<void(SelectionDispatcher&)>;

    SelectionEngine(std::unique_ptr<XcbConnection> connection, const Options& options, int wakeUp);

    void post(Command command);
    void run();
    void runCommands();
    void sleep(bool moreIsWaiting);

    SelectionDispatcher m_dispatcher;
    int m_wakeUp; // an eventfd
    quint64 m_writes = 0;
    std::mutex m_mutex;
    std::vector<Command> m_commands; // guarded by m_mutex
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};

} // namespace Clipboard::X11
