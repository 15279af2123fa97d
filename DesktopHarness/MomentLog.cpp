#include "MomentLog.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Clipboard::Testing {

namespace {

constexpr QByteArrayView prefix = "tessaly.timing ";

} // namespace

MomentLog::MomentLog(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    mkfifo(name.constData(), S_IRUSR | S_IWUSR);
    // Open for writing too: the pipe then has no end while programs come and go.
    m_pipe = open(name.constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (pipe2(m_stop, O_CLOEXEC) == 0) {
        m_reader = std::thread([this] { read(); });
    }
}

MomentLog::~MomentLog()
{
    close(m_stop[1]);
    if (m_reader.joinable()) {
        m_reader.join();
    }
    close(m_stop[0]);
    close(m_pipe);
}

std::optional<MomentLog::Time> MomentLog::next(const QByteArray& name, int timeout)
{
    const Time end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
    std::unique_lock lock(m_mutex);
    while (true) {
        const auto found = std::ranges::find(m_moments, name, &Moment::name);
        if (found != m_moments.end()) {
            const Time time = found->time;
            m_moments.erase(found);
            return time;
        }
        if (m_arrived.wait_until(lock, end) == std::cv_status::timeout) {
            return std::nullopt;
        }
    }
}

void MomentLog::clear()
{
    const std::lock_guard lock(m_mutex);
    takeArrived();
    m_moments.clear();
    m_layers = {};
}

LayerLog MomentLog::layers() const
{
    const std::lock_guard lock(m_mutex);
    return m_layers;
}

QByteArray MomentLog::said() const
{
    const std::lock_guard lock(m_mutex);
    return m_said;
}

int MomentLog::count(const QByteArray& name) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_counts.find(name);
    return found == m_counts.end() ? 0 : found->second;
}

void MomentLog::read()
{
    while (true) {
        pollfd sources[] = {{m_pipe, POLLIN, 0}, {m_stop[0], POLLIN, 0}};
        poll(sources, std::size(sources), -1);
        if (sources[1].revents != 0) {
            return;
        }
        const std::lock_guard lock(m_mutex);
        takeArrived();
        m_arrived.notify_all();
    }
}

void MomentLog::takeArrived()
{
    char buffer[4096];
    for (ssize_t length = 0; (length = ::read(m_pipe, buffer, sizeof buffer)) > 0;) {
        const Time now = std::chrono::steady_clock::now();
        m_pending.append(buffer, length);
        m_said.append(buffer, length);
        for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
            take(m_pending.left(end), now);
            m_pending.remove(0, end + 1);
        }
    }
}

void MomentLog::take(const QByteArray& line, Time time)
{
    if (line.startsWith(LayerLog::prefix)) {
        m_layers.take(line.mid(LayerLog::prefix.size()));
        return;
    }
    if (!line.startsWith(prefix)) {
        std::fprintf(stderr, "%s\n", line.constData());
        return;
    }
    const QByteArray name = line.mid(prefix.size()).split(' ').first();
    m_moments.push_back({name, time});
    ++m_counts[name];
}

} // namespace Clipboard::Testing
