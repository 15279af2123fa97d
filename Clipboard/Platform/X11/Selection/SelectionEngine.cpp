#include "SelectionEngine.h"

#include <QLoggingCategory>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <xcb/xfixes.h>

#include <utility>

namespace Clipboard::X11 {

namespace {

using std::chrono::milliseconds;
using Clock = SelectionDispatcher::Clock;

Q_LOGGING_CATEGORY(log, "tessaly.selection")

// A connection that is lost by accident is back before anybody notices. Where somebody ends it again and again, or the
// server takes no more clients, trying costs next to nothing.
constexpr milliseconds firstRestartDelay{50};
constexpr milliseconds maxRestartDelay{30000};
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

void waitFor(pollfd* sources, nfds_t count, std::optional<milliseconds> timeout)
{
    ::poll(sources, count, timeout ? static_cast<int>(std::max(milliseconds{0}, *timeout).count()) : -1);
}

} // namespace

std::unique_ptr<SelectionEngine> SelectionEngine::start(const Options& options)
{
    auto connection = XcbConnection::open(options.display);
    if (!connection || !connection->hasExtension(&xcb_xfixes_id))
        return nullptr;
    const int wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0)
        return nullptr;
    return std::unique_ptr<SelectionEngine>(new SelectionEngine(std::move(connection), options, wakeUp));
}

SelectionEngine::SelectionEngine(std::unique_ptr<XcbConnection> connection, Options options, int wakeUp)
    : m_options(std::move(options))
    , m_dispatcher(
          std::make_unique<SelectionDispatcher>(std::move(connection), m_options.selections, m_options.onChange))
    , m_restartDelay(firstRestartDelay)
    , m_wakeUp(wakeUp)
    , m_thread([this] { run(); })
{
}

SelectionEngine::~SelectionEngine()
{
    stop();
    ::close(m_wakeUp);
}

quint64 SelectionEngine::own(const SelectionForms& forms)
{
    const quint64 write = ++m_writes;
    post({[forms, write](SelectionDispatcher& dispatcher) { dispatcher.own(forms, write); }, true});
    return write;
}

void SelectionEngine::afterWrites(bool primaryToo, std::function<void(bool)> done)
{
    const auto answer = std::make_shared<Answer>(std::move(done));
    post({[primaryToo, answer](SelectionDispatcher& dispatcher) {
        dispatcher.afterWrites(primaryToo, [answer] { answer->give(); });
    }});
}

std::future<void> SelectionEngine::settled()
{
    return ask(&SelectionDispatcher::settle);
}

std::future<void> SelectionEngine::handOver()
{
    return ask(&SelectionDispatcher::handOver);
}

/// A question that is dropped unanswered breaks its promise, which makes the future ready, too.
std::future<void> SelectionEngine::ask(void (SelectionDispatcher::*question)(const std::function<void()>&))
{
    const auto answer = std::make_shared<std::promise<void>>();
    auto future = answer->get_future();
    post({[question, answer](SelectionDispatcher& dispatcher) {
        (dispatcher.*question)([answer] { answer->set_value(); });
    }});
    return future;
}

void SelectionEngine::stop()
{
    if (!m_thread.joinable())
        return;
    m_isStopping = true;
    post({[](SelectionDispatcher&) {}});
    m_thread.join();
}

void SelectionEngine::post(Command command)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_commands.push_back(std::move(command));
    }
    const eventfd_t one = 1;
    ::eventfd_write(m_wakeUp, one);
}

void SelectionEngine::run()
{
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

void SelectionEngine::serve()
{
    while (!m_isStopping && m_dispatcher && m_dispatcher->isAlive()) {
        runCommands();
        m_dispatcher->expire(Clock::now());
        const bool moreIsWaiting = m_dispatcher->handleEvents();
        if (m_dispatcher->isAlive())
            sleep(moreIsWaiting);
    }
}

/// Other programs can end a connection or destroy its window.
void SelectionEngine::connectAgain()
{
    qCWarning(log, "The connection to the display is lost; the clipboard is not watched until there is a new one.");
    m_options.onConnected(false);
    const auto remains = m_dispatcher->remains();
    m_dispatcher.reset();
    if (auto connection = openAgain()) {
        m_dispatcher = std::make_unique<SelectionDispatcher>(std::move(connection), m_options.selections,
                                                             m_options.onChange, remains);
        qCWarning(log, "The clipboard is watched again.");
        m_options.onConnected(true);
    }
}

/// Null only when the engine is to stop.
std::unique_ptr<XcbConnection> SelectionEngine::openAgain()
{
    for (;;) {
        sleepUntil(Clock::now() + m_restartDelay);
        m_restartDelay = std::min(2 * m_restartDelay, maxRestartDelay);
        if (m_isStopping)
            return nullptr;
        auto connection = XcbConnection::open(m_options.display);
        if (connection && connection->hasExtension(&xcb_xfixes_id))
            return connection;
    }
}

void SelectionEngine::dropPassingCommands()
{
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_commands, [](const Command& command) { return !command.outlivesConnection; });
}

void SelectionEngine::runCommands()
{
    std::vector<Command> commands;
    {
        const std::scoped_lock lock(m_mutex);
        commands.swap(m_commands);
    }
    for (const Command& command : commands)
        command.run(*m_dispatcher);
}

/// Until the server or a caller has something for us, or a step has taken too long.
void SelectionEngine::sleep(bool moreIsWaiting)
{
    using std::chrono::ceil;
    std::optional<milliseconds> timeout;
    if (moreIsWaiting) {
        timeout = milliseconds{0};
    } else if (const auto deadline = m_dispatcher->deadline()) {
        timeout = ceil<milliseconds>(*deadline - Clock::now());
    }
    pollfd sources[] = {{m_dispatcher->connection().fileDescriptor(), POLLIN, 0}, {m_wakeUp, POLLIN, 0}};
    waitFor(sources, std::size(sources), timeout);
    eventfd_t count = 0;
    ::eventfd_read(m_wakeUp, &count);
}

/// Without a connection. Whoever asks for something meanwhile is told at once that it will not be.
void SelectionEngine::sleepUntil(Clock::time_point end)
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

} // namespace Clipboard::X11
