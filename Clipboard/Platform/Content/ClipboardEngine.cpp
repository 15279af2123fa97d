#include "ClipboardEngine.h"

#include <QLoggingCategory>

#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <tuple>
#include <utility>

namespace Clipboard {

namespace {

using std::chrono::milliseconds;
using Clock = ClipboardDispatcher::Clock;

Q_LOGGING_CATEGORY(log, "tessaly.selection")

// A connection that is lost by accident is back before anybody notices. Where somebody ends it again and again, or the
// server takes no more clients, trying costs next to nothing, and what is copied in between is not recorded.
constexpr milliseconds firstRestartDelay{50};
constexpr milliseconds maxRestartDelay{5000};
// One that lasted so long was no part of such a series.
constexpr milliseconds lastingConnection{60000};

/// What a question was answered with: true, or false when it is dropped together with the connection.
class Answer final
{
public:
    explicit Answer(std::function<void(bool)> hear)
        : m_hear(std::move(hear))
    {
    }
    ~Answer()
    {
        if (m_hear)
            m_hear(false);
    }
    Q_DISABLE_COPY_MOVE(Answer)
    void give() { std::exchange(m_hear, {})(true); }

private:
    std::function<void(bool)> m_hear;
};

/// A program that stops reading what it asked for closes its pipe; that must not end us.
void ignoreClosedPipes()
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

void waitFor(pollfd* sources, nfds_t count, std::optional<milliseconds> timeout)
{
    ::poll(sources, count, timeout ? static_cast<int>(std::max(milliseconds{0}, *timeout).count()) : -1);
}

} // namespace

ClipboardEngine::ClipboardEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, Connect connect,
                                 std::function<void(bool)> onConnected)
    : m_connect(std::move(connect))
    , m_onConnected(std::move(onConnected))
    , m_dispatcher(std::move(dispatcher))
    , m_restartDelay(firstRestartDelay)
    , m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_thread([this] { run(); })
{
}

ClipboardEngine::~ClipboardEngine()
{
    stop();
    ::close(m_wakeUp);
}

quint64 ClipboardEngine::own(const SelectionForms& forms)
{
    const quint64 write = ++m_writes;
    post({[forms, write](ClipboardDispatcher& dispatcher) { dispatcher.own(forms, write); }, true});
    return write;
}

void ClipboardEngine::afterWrites(bool primaryToo, std::function<void(bool)> done)
{
    const auto answer = std::make_shared<Answer>(std::move(done));
    post({[primaryToo, answer](ClipboardDispatcher& dispatcher) {
        dispatcher.afterWrites(primaryToo, [answer] { answer->give(); });
    }});
}

std::future<void> ClipboardEngine::settled()
{
    return ask(&ClipboardDispatcher::settle);
}

std::future<void> ClipboardEngine::handOver()
{
    return ask(&ClipboardDispatcher::handOver);
}

/// A question that is dropped unanswered breaks its promise, which makes the future ready, too.
std::future<void> ClipboardEngine::ask(void (ClipboardDispatcher::*question)(const std::function<void()>&))
{
    const auto answer = std::make_shared<std::promise<void>>();
    auto future = answer->get_future();
    post({[question, answer](ClipboardDispatcher& dispatcher) {
        (dispatcher.*question)([answer] { answer->set_value(); });
    }});
    return future;
}

void ClipboardEngine::stop()
{
    if (!m_thread.joinable())
        return;
    m_isStopping = true;
    post({[](ClipboardDispatcher&) {}});
    m_thread.join();
}

void ClipboardEngine::post(Command command)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_commands.push_back(std::move(command));
    }
    const eventfd_t one = 1;
    ::eventfd_write(m_wakeUp, one);
}

void ClipboardEngine::run()
{
    ignoreClosedPipes();
    for (;;) {
        const auto began = Clock::now();
        serve();
        if (m_isStopping)
            break;
        if (Clock::now() - began > lastingConnection)
            m_restartDelay = firstRestartDelay;
        connectAgain();
    }
    if (m_dispatcher)
        m_dispatcher->shutDown();
}

void ClipboardEngine::serve()
{
    while (!m_isStopping && m_dispatcher && m_dispatcher->isAlive()) {
        runCommands();
        // What came in time counts, also when this thread was late to look.
        const auto now = Clock::now();
        if (const auto deadline = m_dispatcher->deadline(); deadline && *deadline <= now)
            std::ignore = m_dispatcher->handleEvents();
        m_dispatcher->expire(now);
        const bool moreIsWaiting = m_dispatcher->handleEvents();
        if (m_dispatcher->isAlive())
            sleep(moreIsWaiting);
    }
}

/// Other programs can end a connection or destroy its window.
void ClipboardEngine::connectAgain()
{
    qCWarning(log, "The connection to the display is lost; the clipboard is not watched until there is a new one.");
    m_onConnected(false);
    const std::any remains = m_dispatcher->remains();
    m_dispatcher.reset();
    m_dispatcher = openAgain(remains);
    if (m_dispatcher) {
        qCWarning(log, "The clipboard is watched again.");
        m_onConnected(true);
    }
}

/// Null only when the engine is to stop.
std::unique_ptr<ClipboardDispatcher> ClipboardEngine::openAgain(const std::any& remains)
{
    for (;;) {
        sleepUntil(Clock::now() + m_restartDelay);
        m_restartDelay = std::min(2 * m_restartDelay, maxRestartDelay);
        if (m_isStopping)
            return nullptr;
        if (auto dispatcher = m_connect(remains))
            return dispatcher;
    }
}

void ClipboardEngine::dropPassingCommands()
{
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_commands, [](const Command& command) { return !command.outlivesConnection; });
}

void ClipboardEngine::runCommands()
{
    std::vector<Command> commands;
    {
        const std::scoped_lock lock(m_mutex);
        commands.swap(m_commands);
    }
    for (const Command& command : commands)
        command.run(*m_dispatcher);
}

/// Until the desktop or a caller has something for us, or a step has taken too long.
void ClipboardEngine::sleep(bool moreIsWaiting)
{
    using std::chrono::ceil;
    std::optional<milliseconds> timeout;
    if (moreIsWaiting) {
        timeout = milliseconds{0};
    } else if (const auto deadline = m_dispatcher->deadline()) {
        timeout = ceil<milliseconds>(*deadline - Clock::now());
    }
    std::vector<pollfd> sources = m_dispatcher->sources();
    sources.push_back({m_wakeUp, POLLIN, 0});
    waitFor(sources.data(), sources.size(), timeout);
    eventfd_t count = 0;
    ::eventfd_read(m_wakeUp, &count);
}

/// Without a connection. Whoever asks for something meanwhile is told at once that it will not be.
void ClipboardEngine::sleepUntil(Clock::time_point end)
{
    while (!m_isStopping && Clock::now() < end) {
        dropPassingCommands();
        pollfd source{m_wakeUp, POLLIN, 0};
        waitFor(&source, 1, std::chrono::ceil<milliseconds>(end - Clock::now()));
        eventfd_t count = 0;
        ::eventfd_read(m_wakeUp, &count);
    }
    dropPassingCommands();
}

} // namespace Clipboard
