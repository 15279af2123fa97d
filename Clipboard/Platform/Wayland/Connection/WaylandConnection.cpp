#include "WaylandConnection.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace Clipboard::Wayland {

std::unique_ptr<WaylandConnection> WaylandConnection::open(const QByteArray& name, std::chrono::milliseconds limit)
{
    // Without a name the library would try a usual one, which may be another session's.
    const QByteArray display = name.isEmpty() ? qgetenv("WAYLAND_DISPLAY") : name;
    if (display.isEmpty())
        return nullptr;
    wl_display* opened = wl_display_connect(display.constData());
    if (opened == nullptr)
        return nullptr;
    std::unique_ptr<WaylandConnection> connection(new WaylandConnection(opened));
    return connection->roundTrip(limit) ? std::move(connection) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : m_display(display)
    , m_registry(wl_display_get_registry(display))
{
    static constexpr wl_registry_listener listener{&globalCame, [](void*, wl_registry*, uint32_t) {}};
    wl_registry_add_listener(m_registry, &listener, this);
}

WaylandConnection::~WaylandConnection()
{
    for (const Question& question : m_questions)
        wl_callback_destroy(question.callback);
    wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

void WaylandConnection::globalCame(void* self, wl_registry* /*registry*/, uint32_t name, const char* interface,
                                   uint32_t version)
{
    // Of several seats or outputs the first.
    static_cast<WaylandConnection*>(self)->m_globals.insert({interface, {name, version}});
}

void* WaylandConnection::bind(const wl_interface& interface, uint32_t version) const
{
    const auto found = m_globals.find(interface.name);
    if (found == m_globals.end())
        return nullptr;
    return wl_registry_bind(m_registry, found->second.name, &interface, std::min(version, found->second.version));
}

void WaylandConnection::whenDone(std::function<void()> done)
{
    static constexpr wl_callback_listener listener{&answered};
    wl_callback* callback = wl_display_sync(m_display);
    m_questions.push_back({callback, std::move(done)});
    wl_callback_add_listener(callback, &listener, this);
}

void WaylandConnection::answered(void* self, wl_callback* callback, uint32_t /*serial*/)
{
    auto& questions = static_cast<WaylandConnection*>(self)->m_questions;
    const Question question = std::move(questions.front());
    questions.pop_front();
    wl_callback_destroy(callback);
    question.done();
}

bool WaylandConnection::roundTrip(std::chrono::milliseconds limit)
{
    const auto end = Clock::now() + limit;
    // Outlives this call with a compositor that answers later.
    const auto isDone = std::make_shared<bool>(false);
    whenDone([isDone] { *isDone = true; });
    for (;;) {
        serve();
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (*isDone || isBroken() || left.count() <= 0)
            return *isDone;
        pollfd source{wl_display_get_fd(m_display), events(), 0};
        ::poll(&source, 1, static_cast<int>(left.count()));
    }
}

short WaylandConnection::events() const
{
    return static_cast<short>(m_isBlocked ? POLLIN | POLLOUT : POLLIN);
}

void WaylandConnection::serve()
{
    while (wl_display_prepare_read(m_display) != 0) {
        // What came before an error stays where it is, and would be tried for ever.
        if (wl_display_dispatch_pending(m_display) < 0)
            return;
    }
    flush();
    wl_display_read_events(m_display);
    wl_display_dispatch_pending(m_display);
    flush();
}

void WaylandConnection::flush()
{
    m_isBlocked = wl_display_flush(m_display) < 0 && errno == EAGAIN;
}

} // namespace Clipboard::Wayland
