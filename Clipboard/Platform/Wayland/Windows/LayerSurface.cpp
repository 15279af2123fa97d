#include "LayerSurface.h"

#include <wlr-layer-shell-unstable-v1-client-protocol.h>

#include <QEvent>
#include <QLoggingCategory>
#include <QScreen>

#include <qpa/qplatformscreen.h>
#include <qpa/qplatformwindow.h>
#include <qpa/qwindowsysteminterface.h>

#include <utility>

namespace Clipboard::Wayland {

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.layers", QtWarningMsg)

quint32 showings = 0;

void setInputRegion(wl_surface* surface, const QRect& rect)
{
    wl_region* region = wl_compositor_create_region(LayerShell::compositor());
    wl_region_add(region, rect.x(), rect.y(), rect.width(), rect.height());
    wl_surface_set_input_region(surface, region);
    wl_region_destroy(region);
}

} // namespace

LayerSurface::LayerSurface(std::shared_ptr<LayerShell> shell, QWindow* window, Manner manner)
    : QObject(window)
    , m_shell(std::move(shell))
    , m_window(window)
    , m_manner(std::move(manner))
{
    // The toolkit gives such a window no role of its own.
    window->setFlags(window->flags() | Qt::BypassWindowManagerHint);
    window->create();
    auto* native = dynamic_cast<QObject*>(window->handle());
    connect(native, SIGNAL(wlSurfaceCreated()), this, SLOT(attach()));
    connect(native, SIGNAL(wlSurfaceDestroyed()), this, SLOT(detach()));
    window->installEventFilter(this);
}

LayerSurface::~LayerSurface()
{
    detach();
}

void LayerSurface::setShadow(const QMargins& shadow)
{
    m_shadow = shadow;
    if (m_surface != nullptr)
        limitPointer();
}

QRect LayerSurface::frameIn(QSize extent) const
{
    if (m_surface == nullptr)
        return {};
    return m_placement.frameIn(extent, m_window->handle()->geometry().size()).marginsRemoved(m_shadow);
}

/// In force with the next picture.
void LayerSurface::limitPointer()
{
    const QRect frame = QRect({}, m_window->handle()->geometry().size()).marginsRemoved(m_shadow);
    if (m_manner.place != Place::everywhere)
        setInputRegion(LayerShell::surfaceOf(m_window), m_manner.takesPointer ? frame : QRect());
}

bool LayerSurface::eventFilter(QObject* /*object*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show: // before the toolkit shows it: now or then it has a surface without a picture
        m_isShowing = true;
        attach();
        break;
    case QEvent::Hide:
        m_isShowing = false;
        break;
    case QEvent::FocusIn:
        qCDebug(log, "focused %u", m_showing);
        break;
    case QEvent::FocusOut:
        qCDebug(log, "unfocused %u", m_showing);
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (m_surface != nullptr && m_manner.place == Place::asSet) {
            place();
            wl_surface_commit(LayerShell::surfaceOf(m_window));
            report();
        }
        break;
    default:
        break;
    }
    return false;
}

void LayerSurface::attach()
{
    wl_surface* surface = m_isShowing && m_surface == nullptr ? LayerShell::surfaceOf(m_window) : nullptr;
    if (surface == nullptr)
        return;
    QScreen* screen = m_manner.screen();
    wl_output* output = screen != nullptr ? LayerShell::outputOf(screen) : nullptr;
    m_surface = zwlr_layer_shell_v1_get_layer_surface(m_shell->get(), surface, output,
                                                      ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "tessaly");
    static constexpr zwlr_layer_surface_v1_listener listener{
        [](void* self, zwlr_layer_surface_v1*, uint32_t serial, uint32_t width, uint32_t height) {
            static_cast<LayerSurface*>(self)->configure(serial, {static_cast<int>(width), static_cast<int>(height)});
        },
        [](void* self, zwlr_layer_surface_v1*) { // its output has gone
            QWindowSystemInterface::handleCloseEvent(static_cast<LayerSurface*>(self)->m_window);
        },
    };
    WaitingQueue queue(m_shell->display());
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(m_surface), queue.get());
    zwlr_layer_surface_v1_add_listener(m_surface, &listener, this);
    if (m_manner.keyboard == Keyboard::exclusive)
        zwlr_layer_surface_v1_set_keyboard_interactivity(m_surface,
                                                         ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
    limitPointer();
    place();
    wl_surface_commit(surface);
    awaitConfigure(queue);
}

/// A picture that comes before the compositor has answered is a fault that ends the connection.
void LayerSurface::awaitConfigure(WaitingQueue& queue)
{
    m_isConfigured = false;
    const bool isAnswered = queue.waitFor(m_isConfigured);
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(m_surface), nullptr); // the toolkit's
    queue.handlePending();                                               // what arrived in between
    if (isAnswered) {
        m_showing = ++showings;
        return report();
    }
    qCWarning(log) << "the compositor does not place a window";
    detach(); // a surface without a role is never shown
    QWindowSystemInterface::handleCloseEvent(m_window);
}

void LayerSurface::detach()
{
    if (m_surface == nullptr)
        return;
    zwlr_layer_surface_v1_destroy(std::exchange(m_surface, nullptr));
    if (m_isConfigured)
        qCDebug(log, "hidden %u", m_showing);
}

/// For those who cannot see it: the compositor lists no such surface.
void LayerSurface::report()
{
    if (m_manner.place == Place::everywhere || !log().isDebugEnabled())
        return;
    const QRect frame = m_window->geometry().marginsRemoved(m_shadow);
    const char* kind = m_manner.keyboard == Keyboard::exclusive ? "with-keyboard" : "without-keyboard";
    qCDebug(log, "shown %u %s %d %d %d %d %s", m_showing, kind, frame.x(), frame.y(), frame.width(), frame.height(),
            qUtf8Printable(m_window->title()));
}

void LayerSurface::configure(uint32_t serial, QSize extent)
{
    zwlr_layer_surface_v1_ack_configure(m_surface, serial);
    m_isConfigured = true;
    if (m_manner.place == Place::everywhere)
        emit extentChanged(extent);
}

/// The screen that it was measured for: the window's own is the one where it was the last time.
QRect LayerSurface::measuredArea() const
{
    QScreen* screen = m_window->screen()->virtualSiblingAt(m_window->geometry().center());
    return (screen != nullptr ? screen : m_window->screen())->handle()->geometry();
}

/// In the compositor's pixels, which are the toolkit's unless it was told to scale.
void LayerSurface::place()
{
    switch (m_manner.place) {
    case Place::asSet:
        m_placement = LayerPlacement::of(m_window->handle()->geometry(), measuredArea());
        break;
    case Place::centred:
        m_placement = LayerPlacement();
        break;
    case Place::everywhere:
        m_placement = LayerPlacement::everywhere();
        break;
    }
    const QSize extent = m_manner.place == Place::everywhere ? QSize(0, 0) : m_window->handle()->geometry().size();
    const QMargins& distances = m_placement.distances;
    zwlr_layer_surface_v1_set_size(m_surface, static_cast<uint32_t>(extent.width()),
                                   static_cast<uint32_t>(extent.height()));
    zwlr_layer_surface_v1_set_anchor(m_surface, m_placement.anchors);
    zwlr_layer_surface_v1_set_margin(m_surface, distances.top(), distances.right(), distances.bottom(),
                                     distances.left());
    emit placed();
}

} // namespace Clipboard::Wayland
