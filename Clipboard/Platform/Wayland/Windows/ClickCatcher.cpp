#include "ClickCatcher.h"

#include "LayerSurface.h"

#include <viewporter-client-protocol.h>

#include <QDrag>
#include <QDragEnterEvent>

#include <utility>

namespace Clipboard::Wayland {

ClickCatcher::ClickCatcher(std::shared_ptr<LayerShell> shell, QScreen* screen)
    : QWindow(screen)
    , m_shell(std::move(shell))
    , m_glass(m_shell->makeGlass())
{
    setFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    LayerSurface::Manner overAll{.place = LayerSurface::Place::everywhere, .screen = [screen] { return screen; }};
    auto* surface = new LayerSurface(m_shell, this, std::move(overAll));
    connect(surface, &LayerSurface::extentChanged, this, &ClickCatcher::cover);
}

ClickCatcher::~ClickCatcher()
{
    if (m_viewport != nullptr)
        wp_viewport_destroy(m_viewport);
    destroy(); // before its glass
    if (m_glass != nullptr)
        wl_buffer_destroy(m_glass);
}

void ClickCatcher::cover(QSize extent)
{
    wl_surface* surface = LayerShell::surfaceOf(this);
    if (surface == nullptr || extent.isEmpty() || m_glass == nullptr)
        return;
    m_extent = extent;
    if (m_viewport == nullptr)
        m_viewport = m_shell->viewportOf(surface);
    wp_viewport_set_destination(m_viewport, extent.width(), extent.height());
    wl_surface_attach(surface, m_glass, 0, 0);
    applyRegion();
}

void ClickCatcher::spare(const QRect& part)
{
    m_spared = part;
    applyRegion();
}

void ClickCatcher::setAside(bool isAside)
{
    if (std::exchange(m_isAside, isAside) != isAside)
        applyRegion();
}

void ClickCatcher::applyRegion()
{
    wl_surface* surface = LayerShell::surfaceOf(this);
    if (surface == nullptr)
        return;
    wl_region* region = wl_compositor_create_region(LayerShell::compositor());
    if (!m_isAside) {
        wl_region_add(region, 0, 0, m_extent.width(), m_extent.height());
        wl_region_subtract(region, m_spared.x(), m_spared.y(), m_spared.width(), m_spared.height());
    }
    wl_surface_set_input_region(surface, region);
    wl_region_destroy(region);
    wl_surface_commit(surface);
}

/// Until what is dragged has been let go.
void ClickCatcher::stepAside(const QDragEnterEvent& event)
{
    const auto* drag = event.source() != nullptr ? event.source()->findChild<QDrag*>() : nullptr;
    if (drag == nullptr)
        return; // not out of the panel
    connect(drag, &QObject::destroyed, this, [this] { setAside(false); });
    setAside(true);
}

bool ClickCatcher::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        emit clicked();
        return true;
    case QEvent::DragEnter:
        stepAside(*static_cast<QDragEnterEvent*>(event));
        break;
    default:
        break;
    }
    return QWindow::event(event);
}

} // namespace Clipboard::Wayland
