#pragma once

#include <csignal>

namespace Clipboard::Testing {

/// On this thread, writing to where nobody reads any more is an error, and not the end of the process.
inline void surviveClosedPipes()
{
    sigset_t closedPipe;
    sigemptyset(&closedPipe);
    sigaddset(&closedPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &closedPipe, nullptr);
}

} // namespace Clipboard::Testing
