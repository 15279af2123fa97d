#include "LayerShell.h"

#include "WaylandConnection.h"

#include <viewporter-client-protocol.h>
#include <wlr-layer-shell-unstable-v1-client-protocol.h>

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <poll.h>
#include <qpa/qplatformnativeinterface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace Clipboard::Wayland {

namespace {

constexpr uint32_t shellVersion = 3; // the first that can be given back

/// What the toolkit has for the whole session.
template <typename Type>
Type* ofSession(const QByteArray& name)
{
    return static_cast<Type*>(QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name));
}

/// Takes the global over when it is of that interface. What it tells, and all that is made from it, the toolkit
/// handles.
template <typename Type>
void take(Type*& object, const wl_interface& wanted, uint32_t newest, wl_registry* registry, uint32_t name,
          QByteArrayView interface, uint32_t version)
{
    if (object != nullptr || interface != QByteArrayView(wanted.name))
        return;
    object = static_cast<Type*>(wl_registry_bind(registry, name, &wanted, std::min(version, newest)));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(object), nullptr);
}

} // namespace

std::shared_ptr<LayerShell> LayerShell::bind()
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return nullptr;
    auto* display = ofSession<wl_display>("wl_display");
    if (display == nullptr)
        return nullptr;
    std::shared_ptr<LayerShell> shell(new LayerShell(display));
    shell->bindGlobals();
    const bool isComplete = shell->m_shell != nullptr && shell->m_viewporter != nullptr && shell->m_memory != nullptr;
    return isComplete ? shell : nullptr;
}

LayerShell::LayerShell(wl_display* display)
    : m_display(display)
{
}

LayerShell::~LayerShell()
{
    if (m_shell != nullptr && zwlr_layer_shell_v1_get_version(m_shell) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(m_shell);
    else if (m_shell != nullptr)
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(m_shell));
    if (m_viewporter != nullptr)
        wp_viewporter_destroy(m_viewporter);
    if (m_memory != nullptr)
        wl_shm_destroy(m_memory);
}

void LayerShell::bindGlobals()
{
    static constexpr wl_registry_listener globals{
        [](void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
            auto* self = static_cast<LayerShell*>(data);
            const auto takeAs = [&](auto*& object, const wl_interface& wanted, uint32_t newest) {
                take(object, wanted, newest, registry, name, interface, version);
            };
            takeAs(self->m_shell, zwlr_layer_shell_v1_interface, shellVersion);
            takeAs(self->m_viewporter, wp_viewporter_interface, 1);
            takeAs(self->m_memory, wl_shm_interface, 1);
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    static constexpr wl_callback_listener answer{
        [](void* isAnswered, wl_callback*, uint32_t) { *static_cast<bool*>(isAnswered) = true; }};
    WaitingQueue queue(m_display);
    auto* own = static_cast<wl_display*>(wl_proxy_create_wrapper(m_display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(own), queue.get());
    wl_registry* registry = wl_display_get_registry(own);
    wl_registry_add_listener(registry, &globals, this);
    wl_callback* question = wl_display_sync(own);
    bool isAnswered = false;
    wl_callback_add_listener(question, &answer, &isAnswered);
    queue.waitFor(isAnswered);
    wl_callback_destroy(question);
    wl_registry_destroy(registry);
    wl_proxy_wrapper_destroy(own);
}

wp_viewport* LayerShell::viewportOf(wl_surface* surface) const
{
    return wp_viewporter_get_viewport(m_viewporter, surface);
}

wl_buffer* LayerShell::makeGlass() const
{
    constexpr int edge = 12; // whole at every scale that screens have, as the size of a picture has to be
    constexpr int line = edge * 4;
    constexpr int size = edge * line;
    const int file = ::memfd_create("tessaly-glass", MFD_CLOEXEC);
    if (file < 0)
        return nullptr;
    wl_buffer* buffer = nullptr;
    if (::ftruncate(file, size) == 0) {
        wl_shm_pool* pool = wl_shm_create_pool(m_memory, file, size);
        buffer = wl_shm_pool_create_buffer(pool, 0, edge, edge, line, WL_SHM_FORMAT_ARGB8888);
        wl_shm_pool_destroy(pool);
    }
    ::close(file); // the request holds a copy
    return buffer;
}

wl_surface* LayerShell::surfaceOf(QWindow* window)
{
    return static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", window));
}

wl_output* LayerShell::outputOf(QScreen* screen)
{
    return static_cast<wl_output*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", screen));
}

wl_compositor* LayerShell::compositor()
{
    return ofSession<wl_compositor>("compositor");
}

WaitingQueue::WaitingQueue(wl_display* display)
    : m_display(display)
    , m_queue(wl_display_create_queue(display))
{
}

WaitingQueue::~WaitingQueue()
{
    wl_event_queue_destroy(m_queue);
}

bool WaitingQueue::waitFor(const bool& isOver)
{
    const QDeadlineTimer deadline(answerLimit);
    for (;;) {
        handlePending();
        if (isOver || wl_display_get_error(m_display) != 0 || deadline.hasExpired())
            return isOver;
        read(static_cast<int>(deadline.remainingTime()));
    }
}

void WaitingQueue::read(int milliseconds)
{
    if (wl_display_prepare_read_queue(m_display, m_queue) != 0)
        return;
    wl_display_flush(m_display);
    pollfd source{wl_display_get_fd(m_display), POLLIN, 0};
    if (::poll(&source, 1, milliseconds) > 0)
        wl_display_read_events(m_display);
    else
        wl_display_cancel_read(m_display);
}

void WaitingQueue::handlePending()
{
    wl_display_dispatch_queue_pending(m_display, m_queue);
}

} // namespace Clipboard::Wayland
