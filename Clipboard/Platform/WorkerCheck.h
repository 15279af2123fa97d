#pragma once

#include <QString>

#include <functional>

namespace Clipboard {

/// Whether the worker, the program that reads what strangers made, is held in on this system.
class WorkerCheck
{
public:
    virtual ~WorkerCheck() = default;

    /// Calls `done` once, on the main thread, with a sentence for the user, or nothing when all is as it should be. Not
    /// called after the check is gone.
    virtual void check(std::function<void(const QString& problem)> done) = 0;
};

} // namespace Clipboard
