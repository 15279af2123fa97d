#include "UnixSignals.h"

#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace Clipboard {

namespace {

// A signal handler can reach nothing but globals, and may do little more than write.
volatile std::sig_atomic_t handlerDescriptor = -1;

void handleSignal(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(handlerDescriptor, &one, sizeof one);
}

constexpr int quittingSignals[] = {SIGTERM, SIGINT, SIGHUP};

} // namespace

UnixSignals::UnixSignals(QObject* parent)
    : QObject(parent)
    , m_descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_descriptor < 0)
        return; // The signals then end the process as they do by default.
    handlerDescriptor = m_descriptor;
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::uint64_t count = 0;
        if (::read(m_descriptor, &count, sizeof count) == sizeof count)
            emit quitRequested();
    });
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : quittingSignals)
        ::sigaction(signal, &action, nullptr);
}

UnixSignals::~UnixSignals()
{
    if (m_descriptor < 0)
        return;
    for (const int signal : quittingSignals)
        std::signal(signal, SIG_DFL);
    m_notifier.reset();
    handlerDescriptor = -1;
    ::close(m_descriptor);
}

} // namespace Clipboard
