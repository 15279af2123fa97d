#include "SelectionEngine.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <xcb/xfixes.h>

#include <utility>

namespace Clipboard::X11 {

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

SelectionEngine::SelectionEngine(std::unique_ptr<XcbConnection> connection, const Options& options, int wakeUp)
    : m_dispatcher(std::move(connection), options.reading, options.onChange)
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
    post([forms, write](SelectionDispatcher& dispatcher) { dispatcher.own(forms, write); });
    return write;
}

void SelectionEngine::afterWrites(bool primaryToo, const std::function<void()>& done)
{
    post([primaryToo, done](SelectionDispatcher& dispatcher) { dispatcher.afterWrites(primaryToo, done); });
}

void SelectionEngine::stop()
{
    if (!m_thread.joinable())
        return;
    m_isStopping = true;
    post([](SelectionDispatcher&) {});
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
    while (!m_isStopping && !m_dispatcher.connection().isBroken()) {
        runCommands();
        m_dispatcher.expire(SelectionDispatcher::Clock::now());
        sleep(m_dispatcher.handleEvents());
    }
    m_dispatcher.shutDown();
}

void SelectionEngine::runCommands()
{
    std::vector<Command> commands;
    {
        const std::scoped_lock lock(m_mutex);
        commands.swap(m_commands);
    }
    for (const Command& command : commands)
        command(m_dispatcher);
}

/// Until the server or a caller has something for us, or a step has taken too long.
void SelectionEngine::sleep(bool moreIsWaiting)
{
    using std::chrono::ceil;
    using std::chrono::milliseconds;
    milliseconds timeout{-1};
    if (moreIsWaiting) {
        timeout = milliseconds{0};
    } else if (const auto deadline = m_dispatcher.deadline()) {
        timeout = std::max(milliseconds{0}, ceil<milliseconds>(*deadline - SelectionDispatcher::Clock::now()));
    }
    pollfd sources[] = {{m_dispatcher.connection().fileDescriptor(), POLLIN, 0}, {m_wakeUp, POLLIN, 0}};
    ::poll(sources, std::size(sources), static_cast<int>(timeout.count()));
    eventfd_t count = 0;
    ::eventfd_read(m_wakeUp, &count);
}

} // namespace Clipboard::X11
