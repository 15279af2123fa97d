#pragma once

#include "LayerLog.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace Clipboard::Testing {

/// What a program says on its standard error, read as it comes: the moments it reports under `tessaly.timing`, each
/// with the time at which it arrived here, and the surfaces that no desktop lists. Whatever else it says goes on to
/// this process's standard error.
class MomentLog final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Makes a named pipe at `path` for the program to write to.
    explicit MomentLog(const QString& path);
    ~MomentLog();
    MomentLog(const MomentLog&) = delete;
    MomentLog& operator=(const MomentLog&) = delete;

    /// The environment variables that make the program report, in the form that this class reads.
    static constexpr auto rules = "tessaly.*=true";
    static constexpr auto pattern = "%{category} %{message}";

    /// Waits for a moment of that name and uses it up; those of other names stay.
    std::optional<Time> next(const QByteArray& name, int timeout);
    /// Forgets the moments that have come so far, read or not.
    void clear();
    /// How many moments of that name have come since the start.
    [[nodiscard]] int count(const QByteArray& name) const;
    /// All that it has said, of moments and otherwise.
    [[nodiscard]] QByteArray said() const;
    /// What it has on the screen above all windows, since clear().
    [[nodiscard]] LayerLog layers() const;

private:
    struct Moment
    {
        QByteArray name;
        Time time;
    };

    void read();
    /// What has arrived by now. Under the lock.
    void takeArrived();
    void take(const QByteArray& line, Time time);

    mutable std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::deque<Moment> m_moments;
    std::map<QByteArray, int> m_counts;
    LayerLog m_layers;
    QByteArray m_said;
    int m_pipe = -1;
    int m_stop[2] = {-1, -1};
    QByteArray m_pending; // of a line, until its end arrives
    std::thread m_reader;
};

} // namespace Clipboard::Testing
