#pragma once

#include "SelectionLimits.h"

#include <QByteArray>

#include <chrono>
#include <optional>
#include <vector>

#include <poll.h>

namespace Clipboard::Wayland {

/// Content on its way into the pipes of those who asked for it, as fast as each of them reads.
class OutgoingPipes final
{
public:
    using Clock = std::chrono::steady_clock;

    explicit OutgoingPipes(std::chrono::milliseconds stepTimeout)
        : m_stepTimeout(stepTimeout)
    {
    }
    ~OutgoingPipes();
    OutgoingPipes(const OutgoingPipes&) = delete;
    OutgoingPipes& operator=(const OutgoingPipes&) = delete;

    /// Takes over the descriptor, and closes it when all is written, nobody reads any more, or there is no room for so
    /// much at a time.
    void add(int given, const QByteArray& bytes);

    void collectSources(std::vector<pollfd>& sources) const;
    /// Writes what there is room for.
    void serve();
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    struct Pipe
    {
        int descriptor;
        QByteArray bytes;
        qsizetype written = 0;
        Clock::time_point end; // of the step under way
    };

    /// False when it is over with the pipe, in whatever way.
    [[nodiscard]] bool write(Pipe& pipe) const;
    [[nodiscard]] bool hasRoomFor(const QByteArray& bytes) const;

    std::chrono::milliseconds m_stepTimeout;
    std::vector<Pipe> m_pipes;
};

} // namespace Clipboard::Wayland
