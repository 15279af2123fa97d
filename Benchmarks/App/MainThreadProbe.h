#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <thread>

namespace Clipboard::Benchmarks {

/// Asks a window over and over whether its program is alive (`_NET_WM_PING`, Extended Window Manager Hints). The
/// program answers from its main thread, so the longest wait for an answer is that thread's longest stall.
class MainThreadProbe final
{
public:
    MainThreadProbe(QString display, quint32 window);
    ~MainThreadProbe();
    MainThreadProbe(const MainThreadProbe&) = delete;
    MainThreadProbe& operator=(const MainThreadProbe&) = delete;

    /// Stops asking. The longest wait in ms; a wait that is not over yet counts.
    double longestStall();

private:
    void run();

    QString m_display;
    quint32 m_window;
    std::atomic<bool> m_stop = false;
    std::atomic<double> m_longest = 0; // ms
    std::thread m_thread;
};

} // namespace Clipboard::Benchmarks
