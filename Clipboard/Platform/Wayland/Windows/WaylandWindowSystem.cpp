#include "WaylandWindowSystem.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#include <qpa/qplatformnativeinterface.h>
#include <qpa/qwindowsysteminterface.h>
#include <wayland-client-core.h>

#include <algorithm>
#include <utility>

namespace Clipboard {

using Wayland::ClickCatcher;
using Wayland::LayerSurface;

namespace {

constexpr const char* bufferKind = "QT_WAYLAND_CLIENT_BUFFER_INTEGRATION";
constexpr const char* noKind = "none"; // the toolkit finds nothing of that name

} // namespace

void WaylandWindowSystem::forgoAcceleration()
{
    if (!qEnvironmentVariableIsSet(bufferKind))
        qputenv(bufferKind, noKind);
}

void WaylandWindowSystem::endForgoing()
{
    if (qgetenv(bufferKind) != noKind)
        return;
    // The toolkit looks for it when it is first asked for anything of it, and warns.
    QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("egldisplay");
    qunsetenv(bufferKind);
}

void WaylandWindowSystem::prepareToolkit()
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
}

bool WaylandWindowSystem::isDisplayLost()
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return false;
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    auto* display = static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display"));
    return display != nullptr && wl_display_get_error(display) != 0;
}

std::unique_ptr<WaylandWindowSystem> WaylandWindowSystem::create(std::shared_ptr<Wayland::Toplevels> toplevels)
{
    auto shell = Wayland::LayerShell::bind();
    if (!shell)
        return nullptr;
    return std::unique_ptr<WaylandWindowSystem>(new WaylandWindowSystem(std::move(shell), std::move(toplevels)));
}

WaylandWindowSystem::WaylandWindowSystem(std::shared_ptr<Wayland::LayerShell> shell,
                                         std::shared_ptr<Wayland::Toplevels> toplevels)
    : m_shell(std::move(shell))
    , m_toplevels(std::move(toplevels))
{
}

WaylandWindowSystem::~WaylandWindowSystem() = default;

void WaylandWindowSystem::prepare(QWindow* window, Role role)
{
    LayerSurface::Manner manner;
    manner.keyboard = role == Role::notice ? LayerSurface::Keyboard::none : LayerSurface::Keyboard::exclusive;
    manner.place = role == Role::dialog ? LayerSurface::Place::centred : LayerSurface::Place::asSet;
    manner.takesPointer = role != Role::notice;
    manner.screen = [toplevels = m_toplevels] { return screenNamed(toplevels->wantedOutput()); };
    auto* surface = new LayerSurface(m_shell, window, std::move(manner));
    if (role != Role::panel)
        return;
    m_panel = surface;
    m_panelWindow = window;
    connect(window, &QWindow::screenChanged, this, [this](QScreen* screen) {
        if (screen != nullptr)
            emit panelScreenChosen(screen);
    });
    connect(surface, &LayerSurface::placed, this, &WaylandWindowSystem::sparePanel);
    window->installEventFilter(this);
}

bool WaylandWindowSystem::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
        m_toplevels->setCovered(true);
        catchClicksBeside(static_cast<QWindow*>(object));
        break;
    case QEvent::Hide:
        m_toplevels->setCovered(false);
        dropCatchers();
        break;
    default:
        break;
    }
    return false;
}

void WaylandWindowSystem::catchClicksBeside(QWindow* panel)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (QScreen* screen : screens) {
        auto& catcher = m_catchers.emplace_back(std::make_unique<ClickCatcher>(m_shell, screen));
        // Later, for the catcher goes with the panel.
        connect(catcher.get(), &ClickCatcher::clicked, panel,
                [panel] { QWindowSystemInterface::handleCloseEvent(panel); });
        catcher->show();
    }
}

/// Gone from the screen at once, but destroyed later: a catcher that is given the keyboard takes it from the panel,
/// which hides at that, in the midst of what the toolkit does with the catcher.
void WaylandWindowSystem::dropCatchers()
{
    for (auto& catcher : m_catchers) {
        catcher->hide();
        m_dropped.push_back(std::move(catcher));
    }
    m_catchers.clear();
    QMetaObject::invokeMethod(
        this, [this] { m_dropped.clear(); }, Qt::QueuedConnection);
}

/// On every screen: which one the compositor takes is its choice.
void WaylandWindowSystem::sparePanel()
{
    for (const auto& catcher : m_catchers)
        catcher->spare(m_panel->frameIn(catcher->extent()));
}

QScreen* WaylandWindowSystem::workScreen() const
{
    m_toplevels->catchUp();
    if (QScreen* screen = screenNamed(m_toplevels->workOutput()))
        return screen;
    return m_panelWindow != nullptr ? m_panelWindow->screen() : nullptr;
}

QScreen* WaylandWindowSystem::screenNamed(const QString& name)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto found = std::ranges::find_if(screens, [&name](const QScreen* screen) { return screen->name() == name; });
    return name.isEmpty() || found == screens.end() ? nullptr : *found;
}

void WaylandWindowSystem::setShadow(QWindow* window, const QMargins& shadow)
{
    if (auto* surface = window->findChild<LayerSurface*>({}, Qt::FindDirectChildrenOnly))
        surface->setShadow(shadow);
}

void WaylandWindowSystem::activate(QWindow* window)
{
    const bool isLayer = window->findChild<LayerSurface*>({}, Qt::FindDirectChildrenOnly) != nullptr;
    if (!isLayer && !m_toplevels->activateOurs(window->title()))
        window->requestActivate();
}

} // namespace Clipboard
