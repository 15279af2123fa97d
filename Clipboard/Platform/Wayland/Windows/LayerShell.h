#pragma once

#include <QObject>

#include <memory>

#include <wayland-client.h>

class QScreen;
class QWindow;
struct wp_viewport;
struct wp_viewporter;
struct zwlr_layer_shell_v1;

namespace Clipboard::Wayland {

/// What the compositor offers, on the toolkit's own connection, to a program that places its windows itself. The
/// toolkit handles what arrives there unless a queue of its own is given. Main thread.
class LayerShell final
{
public:
    /// Null when the toolkit's windows are not those of a compositor that has it.
    [[nodiscard]] static std::shared_ptr<LayerShell> bind();
    ~LayerShell();
    LayerShell(const LayerShell&) = delete;
    LayerShell& operator=(const LayerShell&) = delete;

    [[nodiscard]] wl_display* display() const { return m_display; }
    [[nodiscard]] zwlr_layer_shell_v1* get() const { return m_shell; }
    /// Lets a surface be larger than its picture.
    [[nodiscard]] wp_viewport* viewportOf(wl_surface* surface) const;
    /// A small transparent picture; null without memory. The caller destroys it.
    [[nodiscard]] wl_buffer* makeGlass() const;

    /// Null while the window has none.
    [[nodiscard]] static wl_surface* surfaceOf(QWindow* window);
    [[nodiscard]] static wl_output* outputOf(QScreen* screen);
    [[nodiscard]] static wl_compositor* compositor();

private:
    explicit LayerShell(wl_display* display);
    void bindGlobals();

    wl_display* m_display;
    zwlr_layer_shell_v1* m_shell = nullptr;
    wp_viewporter* m_viewporter = nullptr;
    wl_shm* m_memory = nullptr;
};

/// A queue of the toolkit's connection that somebody waits for.
class WaitingQueue final
{
public:
    explicit WaitingQueue(wl_display* display);
    ~WaitingQueue();
    WaitingQueue(const WaitingQueue&) = delete;
    WaitingQueue& operator=(const WaitingQueue&) = delete;

    [[nodiscard]] wl_event_queue* get() const { return m_queue; }
    /// Handles what arrives until `isOver` is set. False when the compositor does not answer in time.
    bool waitFor(const bool& isOver);
    /// Handles what has arrived already.
    void handlePending();

private:
    void read(int milliseconds);

    wl_display* m_display;
    wl_event_queue* m_queue;
};

} // namespace Clipboard::Wayland
