#include "OutgoingPipes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>

namespace Clipboard::Wayland {

namespace {

// Fewer turns for large content. More than this no pipe of an ordinary user may have; without it a pipe works as well.
constexpr int pipeBytes = 1 << 20;

/// An end of the same pipe that nobody else has: its reader may have kept the one that came along, and could make
/// writing to that wait again. What is no pipe stays as it came.
int ownEnd(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) < 0 || !S_ISFIFO(status.st_mode))
        return descriptor;
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(descriptor);
    const int own = ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (own < 0) // nobody reads it, or it may not be opened
        return descriptor;
    ::close(descriptor);
    return own;
}

} // namespace

OutgoingPipes::~OutgoingPipes()
{
    for (const Pipe& pipe : m_pipes)
        ::close(pipe.descriptor);
}

void OutgoingPipes::add(int given, const QByteArray& bytes)
{
    const int descriptor = ownEnd(given);
    if (::fcntl(descriptor, F_SETFL, O_NONBLOCK) != 0 || m_pipes.size() >= maxOutgoingTransfers || !hasRoomFor(bytes)) {
        ::close(descriptor);
        return;
    }
    ::fcntl(descriptor, F_SETPIPE_SZ, pipeBytes);
    Pipe pipe{descriptor, bytes, 0, Clock::now() + m_stepTimeout};
    if (write(pipe))
        m_pipes.push_back(std::move(pipe));
    else
        ::close(descriptor);
}

/// The same bytes on their way to several programs count once.
bool OutgoingPipes::hasRoomFor(const QByteArray& bytes) const
{
    std::set<const char*> counted{bytes.constData()};
    qint64 total = bytes.size();
    for (const Pipe& pipe : m_pipes) {
        if (counted.insert(pipe.bytes.constData()).second)
            total += pipe.bytes.size();
    }
    return total <= maxOutgoingBytes;
}

void OutgoingPipes::collectSources(std::vector<pollfd>& sources) const
{
    for (const Pipe& pipe : m_pipes)
        sources.push_back({pipe.descriptor, POLLOUT, 0});
}

void OutgoingPipes::serve()
{
    std::erase_if(m_pipes, [this](Pipe& pipe) {
        if (write(pipe))
            return false;
        ::close(pipe.descriptor);
        return true;
    });
}

bool OutgoingPipes::write(Pipe& pipe) const
{
    while (pipe.written < pipe.bytes.size()) {
        const ssize_t count = ::write(pipe.descriptor, pipe.bytes.constData() + pipe.written,
                                      static_cast<size_t>(pipe.bytes.size() - pipe.written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno == EAGAIN;
        pipe.written += count;
        pipe.end = Clock::now() + m_stepTimeout;
    }
    return false;
}

std::optional<OutgoingPipes::Clock::time_point> OutgoingPipes::deadline() const
{
    const auto earliest = std::ranges::min_element(m_pipes, {}, &Pipe::end);
    return earliest == m_pipes.end() ? std::nullopt : std::optional(earliest->end);
}

void OutgoingPipes::expire(Clock::time_point now)
{
    std::erase_if(m_pipes, [now](const Pipe& pipe) {
        if (now < pipe.end)
            return false;
        ::close(pipe.descriptor);
        return true;
    });
}

} // namespace Clipboard::Wayland
