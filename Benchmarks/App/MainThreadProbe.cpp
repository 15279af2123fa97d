#include "MainThreadProbe.h"

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Clipboard::Benchmarks {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto interval = std::chrono::microseconds(200);
constexpr auto blindness = std::chrono::milliseconds(1); // without a look; the machine was busy with something else

/// The line is the number of the system call and its arguments in hexadecimal (proc(5)). An event loop polls several
/// descriptors; whoever waits for one answer polls that connection's alone.
bool waitsInEventLoop(const QByteArray& line)
{
    const QByteArrayList fields = line.split(' ');
    if (fields.size() < 3) {
        return false;
    }
    const long call = fields[0].toLong();
    return (call == SYS_poll || call == SYS_ppoll) && fields[2].toLongLong(nullptr, 16) > 1;
}

} // namespace

MainThreadProbe::MainThreadProbe(qint64 process)
{
    m_thread = std::thread([this, process] { run(process); });
}

MainThreadProbe::~MainThreadProbe()
{
    longestStall();
}

double MainThreadProbe::longestStall()
{
    m_stop = true;
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_longest;
}

void MainThreadProbe::run(qint64 process)
{
    const QByteArray path = "/proc/" + QByteArray::number(process) + "/syscall";
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC);
    Clock::time_point lastIdle = Clock::now();
    Clock::time_point lastLook = lastIdle;
    while (!m_stop) {
        char buffer[256];
        const ssize_t length = pread(file, buffer, sizeof buffer, 0);
        if (length <= 0) {
            break;
        }
        const Clock::time_point now = Clock::now();
        if (now - lastLook > blindness) {
            lastIdle += now - lastLook;
        }
        lastLook = now;
        if (waitsInEventLoop({buffer, length})) {
            lastIdle = now;
        }
        const double away = std::chrono::duration<double, std::milli>(now - lastIdle).count();
        m_longest = std::max(m_longest.load(), away);
        std::this_thread::sleep_for(interval);
    }
    close(file);
}

} // namespace Clipboard::Benchmarks
