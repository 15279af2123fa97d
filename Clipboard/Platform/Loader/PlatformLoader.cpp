#include "PlatformLoader.h"

#include "FakeInputSender.h"
#include "ForeignToplevels.h"
#include "GnomeHotKey.h"
#include "KGlobalAccelHotKey.h"
#include "NullHotKeyGrabber.h"
#include "NullKeystrokeSender.h"
#include "NullPasteboard.h"
#include "NullWindowSystem.h"
#include "NullWorkspace.h"
#include "PlasmaLayout.h"
#include "PlasmaToplevels.h"
#include "PortalHotKey.h"
#include "VirtualKeyboardSender.h"
#include "WaylandPasteboard.h"
#include "WaylandWindowSystem.h"
#include "WaylandWorkspace.h"
#include "WorkerLinkMetadataProvider.h"
#include "WorkerSelfCheck.h"
#include "WorkerTextRecognizer.h"
#include "X11HotKeyGrabber.h"
#include "X11KeystrokeSender.h"
#include "X11Pasteboard.h"
#include "X11WindowSystem.h"
#include "X11Workspace.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.platform")

/// In a development tree the worker is beside this program, else where the installation puts such programs.
QString workerProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString beside = folder + u"/tessaly-worker"_s;
    return QFileInfo::exists(beside) ? beside : folder + QStringLiteral("/" TESSALY_LIBEXEC_FROM_BIN "/tessaly-worker");
}

Platform nullPlatform()
{
    Platform platform;
    platform.pasteboard = std::make_unique<NullPasteboard>(QCoreApplication::translate(
        "PlatformLoader", "The clipboard cannot be watched in this session: there is no X11 display."));
    platform.workspace = std::make_unique<NullWorkspace>();
    platform.keystrokes = std::make_unique<NullKeystrokeSender>(
        QCoreApplication::translate("PlatformLoader", "No key can be sent in this session: there is no X11 display."));
    platform.hotKey = std::make_unique<NullHotKeyGrabber>(
        QCoreApplication::translate("PlatformLoader", "%1 is not available in this session: there is no X11 display."));
    platform.windows = std::make_unique<NullWindowSystem>();
    // These need no display.
    platform.textRecognizer = std::make_unique<WorkerTextRecognizer>(workerProgram());
    platform.linkMetadata = std::make_unique<WorkerLinkMetadataProvider>(workerProgram());
    platform.workerCheck = std::make_unique<WorkerSelfCheck>(workerProgram());
    return platform;
}

/// The clipboard of the X server. What Xwayland has is what the compositor mirrors of its own.
void addX11Clipboard(Platform& platform)
{
    if (auto pasteboard = X11Pasteboard::create()) {
        platform.pasteboard = std::move(pasteboard);
    } else {
        platform.pasteboard = std::make_unique<NullPasteboard>(QCoreApplication::translate(
            "PlatformLoader", "The clipboard cannot be watched in this session: the display has no XFixes extension."));
    }
}

/// Where the compositor lets programs follow its clipboard, whatever their windows are.
bool addWaylandClipboard(Platform& platform, const Wayland::WaylandSession& compositor)
{
    auto pasteboard = compositor.hasDataControl ? WaylandPasteboard::create() : nullptr;
    if (!pasteboard)
        return false;
    platform.pasteboard = std::move(pasteboard);
    return true;
}

std::unique_ptr<HotKeyGrabber> configuredHotKey()
{
    if (GnomeHotKey::isThere())
        return std::make_unique<GnomeHotKey>();
    return std::make_unique<NullHotKeyGrabber>(QCoreApplication::translate(
        "PlatformLoader", "%1 cannot be bound from here: have the desktop’s settings run “tessaly toggle” on a key. "
                          "In sway: bindsym --no-repeat Mod4+Shift+v exec tessaly toggle"));
}

/// A key grabbed from Xwayland is ours only while one of its windows has the keyboard.
void addCompositorHotKey(Platform& platform)
{
    platform.hotKey = std::make_unique<KGlobalAccelHotKey>(std::make_unique<PortalHotKey>(configuredHotKey()));
}

SnapshotPasteboard* clipboardOf(const Platform& platform)
{
    return dynamic_cast<SnapshotPasteboard*>(platform.pasteboard.get());
}

std::shared_ptr<ClipboardEngine> engineOf(const Platform& platform)
{
    const SnapshotPasteboard* clipboard = clipboardOf(platform);
    return clipboard != nullptr ? clipboard->engine() : nullptr;
}

std::shared_ptr<Wayland::Toplevels> followToplevels()
{
    if (auto toplevels = Wayland::ForeignToplevels::follow())
        return toplevels;
    return Wayland::PlasmaToplevels::follow();
}

/// By a keyboard of our own, else on the user's; null where the compositor takes no keys from us.
std::unique_ptr<KeystrokeSender> waylandKeystrokes(const std::shared_ptr<Wayland::Toplevels>& toplevels,
                                                   const std::shared_ptr<ClipboardEngine>& engine)
{
    if (auto keystrokes = VirtualKeyboardSender::create(toplevels, engine))
        return keystrokes;
    return FakeInputSender::create(toplevels, engine,
                                   [layout = std::make_shared<PlasmaLayout>()] { return layout->inForce(); });
}

/// Where the compositor tells which window is active. Keys sent to an X server reach no window but those of X11.
void addWaylandDesktop(Platform& platform, const Wayland::WaylandSession& compositor)
{
    const auto toplevels = followToplevels();
    if (!toplevels)
        return;
    platform.workspace = std::make_unique<WaylandWorkspace>(toplevels);
    if (SnapshotPasteboard* clipboard = clipboardOf(platform))
        clipboard->setGate([toplevels](std::function<void()> open) { toplevels->whenDescribed(std::move(open)); });
    if (auto windows = compositor.hasLayerShell ? WaylandWindowSystem::create(toplevels) : nullptr)
        platform.windows = std::move(windows);
    if (auto keystrokes = waylandKeystrokes(toplevels, engineOf(platform)))
        platform.keystrokes = std::move(keystrokes);
}

void addX11(Platform& platform, const std::shared_ptr<X11::X11Session>& session, bool isThroughXwayland)
{
    const auto frontWindow = std::make_shared<X11::FrontWindow>(session);
    platform.workspace = std::make_unique<X11Workspace>(session);
    platform.windows = std::make_unique<X11WindowSystem>(session, frontWindow);
    platform.hotKey = std::make_unique<X11HotKeyGrabber>(session);
    if (X11KeystrokeSender::isPossible(*session)) {
        const QString limits =
            isThroughXwayland
                ? QCoreApplication::translate("PlatformLoader", "The compositor takes keys for windows of X11 only.")
                : QString();
        platform.keystrokes = std::make_unique<X11KeystrokeSender>(session, frontWindow, engineOf(platform), limits);
    } else {
        platform.keystrokes = std::make_unique<NullKeystrokeSender>(QCoreApplication::translate(
            "PlatformLoader", "No key can be sent in this session: the display has no XTEST extension."));
    }
}

} // namespace

/// Where the session offers X11 beside Wayland and the compositor does not let the panel take the keyboard and give it
/// back, X11 does.
QByteArray prepareWindows(const Wayland::WaylandSession& compositor)
{
    if (compositor.isThere)
        WaylandWindowSystem::forgoAcceleration();
    if (compositor.hasLayerShell)
        WaylandWindowSystem::prepareToolkit();
    return compositor.hasLayerShell && compositor.hasDataControl ? "wayland;xcb" : "xcb;wayland";
}

void finishWindows()
{
    WaylandWindowSystem::endForgoing();
}

Platform loadPlatform(const Wayland::WaylandSession& compositor)
{
    Platform platform = nullPlatform();
    // Windows shown by other means than X11 have nothing to do with a display that happens to be named.
    const auto x11 = QGuiApplication::platformName() == QLatin1String("xcb") ? X11::X11Session::open() : nullptr;
    if (!addWaylandClipboard(platform, compositor) && x11)
        addX11Clipboard(platform);
    if (x11)
        addX11(platform, x11, compositor.isThere);
    if (compositor.isThere) {
        addWaylandDesktop(platform, compositor);
        addCompositorHotKey(platform);
    }
    for (const QString& reason : {platform.pasteboard->unavailableReason(), platform.keystrokes->unavailableReason()}) {
        if (!reason.isEmpty())
            qCWarning(log).noquote() << reason;
    }
    return platform;
}

bool isDisplayLost()
{
    return X11WindowSystem::isDisplayLost() || WaylandWindowSystem::isDisplayLost();
}

bool awaitDisplay()
{
    return Wayland::WaylandSession::awaitAgain();
}

} // namespace Clipboard
