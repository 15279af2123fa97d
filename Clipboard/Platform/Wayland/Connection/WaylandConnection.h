#pragma once

#include <QByteArray>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include <wayland-client.h>

namespace Clipboard::Wayland {

/// How long a compositor may take to answer; one that hangs shows no window either.
inline constexpr std::chrono::milliseconds answerLimit{2000};

/// A connection to the compositor beside the toolkit's, and what the compositor offers on it. For one thread.
class WaylandConnection final
{
public:
    using Clock = std::chrono::steady_clock;

    /// Null when there is no compositor, or it does not answer in time. An empty name means $WAYLAND_DISPLAY.
    [[nodiscard]] static std::unique_ptr<WaylandConnection> open(const QByteArray& name = {},
                                                                 std::chrono::milliseconds limit = answerLimit);
    ~WaylandConnection();
    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;

    [[nodiscard]] wl_display* get() const { return m_display; }
    [[nodiscard]] bool isBroken() const { return wl_display_get_error(m_display) != 0; }

    [[nodiscard]] bool offers(const QByteArray& interface) const { return m_globals.contains(interface); }
    /// A new object for what the compositor offers under the interface's name, of the newest version up to `version`
    /// that it has; null when it does not offer it. The interface must live as long as the object.
    [[nodiscard]] void* bind(const wl_interface& interface, uint32_t version) const;

    /// Calls `came` with such an object for each that is offered under the interface's name, now and later. One call
    /// for an interface.
    void bindEach(const wl_interface& interface, uint32_t version, std::function<void(void*)> came);

    /// Calls `done` when the compositor has done all that was asked before.
    void whenDone(std::function<void()> done);
    /// Waits until the compositor has done all that was asked before, and handles what it says. False when it does not
    /// answer in time.
    [[nodiscard]] bool roundTrip(std::chrono::milliseconds limit = answerLimit);

    /// What to wait for: for something to arrive, and for room when not all could be sent.
    [[nodiscard]] short events() const;
    /// Sends what waits, reads what has arrived and handles it. Never waits.
    void serve();

private:
    struct Question
    {
        wl_callback* callback = nullptr;
        std::function<void()> done;
    };
    struct Global
    {
        uint32_t name = 0;
        uint32_t version = 0;
    };
    struct Wish
    {
        const wl_interface* interface = nullptr;
        uint32_t version = 0;
        std::function<void(void*)> came;
    };

    explicit WaylandConnection(wl_display* display);
    static void globalCame(void* self, wl_registry* registry, uint32_t name, const char* interface, uint32_t version);
    static void answered(void* self, wl_callback* callback, uint32_t serial);
    [[nodiscard]] void* bind(const Global& global, const wl_interface& interface, uint32_t version) const;
    void flush();

    wl_display* m_display;
    wl_registry* m_registry;
    std::multimap<QByteArray, Global> m_globals; // several seats or outputs in the order in which they came
    std::map<QByteArray, Wish> m_wishes;
    std::deque<Question> m_questions; // answered in this order
    bool m_isBlocked = false;         // the compositor does not take what we send at the moment
};

} // namespace Clipboard::Wayland
