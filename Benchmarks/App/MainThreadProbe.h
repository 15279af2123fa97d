#pragma once

#include <QtGlobal>

#include <atomic>
#include <thread>

namespace Clipboard::Benchmarks {

/// Looks at a program's main thread several times a millisecond: does it wait in its event loop, ready for the next
/// event, or is it at work or held up somewhere? The longest time away from the event loop is its longest stall. Times
/// in which the probe itself could not look, because the machine did something else, are left out.
class MainThreadProbe final
{
public:
    explicit MainThreadProbe(qint64 process);
    ~MainThreadProbe();
    MainThreadProbe(const MainThreadProbe&) = delete;
    MainThreadProbe& operator=(const MainThreadProbe&) = delete;

    /// Stops looking. The longest stall in ms; 0 when the kernel does not let this process look.
    double longestStall();

private:
    void run(qint64 process);

    std::atomic<bool> m_stop = false;
    std::atomic<double> m_longest = 0; // ms
    std::thread m_thread;
};

} // namespace Clipboard::Benchmarks
