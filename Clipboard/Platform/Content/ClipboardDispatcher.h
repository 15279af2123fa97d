#pragma once

#include "SelectionContent.h"
#include "SelectionForms.h"

#include <any>
#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include <poll.h>

namespace Clipboard {

/// The clipboard of one desktop, over one connection to it: follows its owner, reads what others put there, owns what
/// we put there and keeps alive what a program leaves behind. Single-threaded, and never waits.
class ClipboardDispatcher
{
public:
    using Clock = std::chrono::steady_clock;
    using PublishFunction = std::function<void(const SelectionSnapshot&)>;

    ClipboardDispatcher() = default;
    virtual ~ClipboardDispatcher() = default;
    Q_DISABLE_COPY_MOVE(ClipboardDispatcher)

    /// False once the connection is gone; nothing works then.
    [[nodiscard]] virtual bool isAlive() const = 0;
    /// What the next connection takes over when this one is lost, as a value that only its own kind understands.
    [[nodiscard]] virtual std::any remains() const = 0;

    /// What may have something for us, or room for something of ours.
    [[nodiscard]] virtual std::vector<pollfd> sources() const = 0;
    /// Handles what has arrived. True when it stopped early and more may be waiting.
    virtual bool handleEvents() = 0;
    /// When the step under way that ends first is over at the latest.
    [[nodiscard]] virtual std::optional<Clock::time_point> deadline() const = 0;
    virtual void expire(Clock::time_point now) = 0;

    /// Offers the content on the clipboard. `write` is the running number of our writes.
    virtual void own(const SelectionForms& forms, quint64 write) = 0;
    /// Calls `done` once the writes before it are in force; with `primaryToo` the primary selection is then ours too,
    /// with the clipboard's content.
    virtual void afterWrites(bool primaryToo, const std::function<void()>& done) = 0;
    /// Calls `done` once every copy made before has been published, or is known not to be readable. An owner that hangs
    /// is given up sooner.
    virtual void settle(const std::function<void()>& done) = 0;
    /// Leaves our content with another program that keeps it, where the desktop has such a thing, and calls `done`.
    /// Publishes nothing from then on.
    virtual void handOver(const std::function<void()>& done) = 0;
    /// Gives up what would keep other programs waiting for us.
    virtual void shutDown() {}
};

} // namespace Clipboard
