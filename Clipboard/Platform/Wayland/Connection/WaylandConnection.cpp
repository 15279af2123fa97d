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
    auto* connection = static_cast<WaylandConnection*>(self);
    const auto global = connection->m_globals.insert({interface, {name, version}});
    const auto wish = connection->m_wishes.find(interface);
    if (wish != connection->m_wishes.end())
        wish->second.came(connection->bind(global->second, *wish->second.interface, wish->second.version));
}

void* WaylandConnection::bind(const Global& global, const wl_interface& interface, uint32_t version) const
{
    return wl_registry_bind(m_registry, global.name, &interface, std::min(version, global.version));
}

void* WaylandConnection::bind(const wl_interface& interface, uint32_t version) const
{
    const auto [first, end] = m_globals.equal_range(interface.name);
    return first == end ? nullptr : bind(first->second, interface, version);
}

void WaylandConnection::bindEach(const wl_interface& interface, uint32_t version, std::function<void(void*)> came)
{
    const Wish& wish = m_wishes[interface.name] = {&interface, version, std::move(came)};
    const auto [first, end] = m_globals.equal_range(interface.name);
    for (auto global = first; global != end; ++global)
        wish.came(bind(global->second, interface, version));
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
