#pragma once

#include <QRect>
#include <QString>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

namespace Clipboard::Benchmarks {

/// Looks at the X server's own memory, so that it knows what can be seen and when, whatever the program says of it.
/// Some lines of a part of the screen stand for the whole of it.
class ScreenProbe final
{
public:
    using Clock = std::chrono::steady_clock;

    struct Sight
    {
        Clock::time_point first;    // the first pixel that changed
        Clock::time_point complete; // from here on it looked as it does now
    };

    /// `folder` is the one in which the server keeps the screen. `area` is in its pixels. Ends the process with a
    /// message when it is not there.
    ScreenProbe(const QString& folder, QRect area);
    ~ScreenProbe();
    ScreenProbe(const ScreenProbe&) = delete;
    ScreenProbe& operator=(const ScreenProbe&) = delete;

    /// Begins to look.
    void start();
    /// Stops looking, once nothing has changed for a while. Nothing when there was no change at all.
    [[nodiscard]] std::optional<Sight> finish();

private:
    struct Line
    {
        const char* pixels;
        std::vector<char> seen;
    };

    void watch();
    void stop();
    [[nodiscard]] bool look();

    void* m_file = nullptr;
    std::size_t m_fileBytes = 0;
    std::vector<Line> m_lines;
    std::optional<Sight> m_sight;
    std::atomic<Clock::time_point> m_lastChange;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

} // namespace Clipboard::Benchmarks
