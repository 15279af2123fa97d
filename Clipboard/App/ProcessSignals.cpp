#include "ProcessSignals.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace Clipboard {

namespace {

// A signal handler may hardly do more than write to a pipe, of which the event loop reads the other end.
std::array<int, 2> selfPipe{-1, -1};

void writeToSelfPipe(int signalNumber)
{
    const int savedErrno = errno;
    const auto byte = static_cast<unsigned char>(signalNumber);
    // A full pipe holds as many requests as anybody can want.
    [[maybe_unused]] const ssize_t written = ::write(selfPipe[1], &byte, 1);
    errno = savedErrno;
}

} // namespace

void ProcessSignals::install()
{
    if (::pipe2(selfPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    struct sigaction action = {};
    action.sa_handler = writeToSelfPipe;
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signalNumber, &action, nullptr);
}

ProcessSignals::ProcessSignals(QObject* parent)
    : QObject(parent)
    , m_notifier(selfPipe[0], QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &ProcessSignals::deliver);
}

void ProcessSignals::deliver()
{
    unsigned char signalNumber = 0;
    while (::read(selfPipe[0], &signalNumber, 1) == 1)
        emit quitRequested();
}

} // namespace Clipboard
