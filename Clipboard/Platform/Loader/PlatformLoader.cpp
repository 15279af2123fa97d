#include "PlatformLoader.h"

#include "NullHotKeyGrabber.h"
#include "NullKeystrokeSender.h"
#include "NullPasteboard.h"
#include "NullWindowSystem.h"
#include "NullWorkspace.h"
#include "WorkerLinkMetadataProvider.h"
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
    platform.hotKey = std::make_unique<NullHotKeyGrabber>(QCoreApplication::translate(
        "PlatformLoader", "Super+Shift+V is not available in this session: there is no X11 display."));
    platform.windows = std::make_unique<NullWindowSystem>();
    // These need no display.
    platform.textRecognizer = std::make_unique<WorkerTextRecognizer>(workerProgram());
    platform.linkMetadata = std::make_unique<WorkerLinkMetadataProvider>(workerProgram());
    return platform;
}

/// Replaces what a display can do better.
void addX11(Platform& platform)
{
    const auto session = X11::X11Session::open();
    if (!session)
        return;
    std::shared_ptr<X11::SelectionEngine> engine;
    if (auto pasteboard = X11Pasteboard::create()) {
        engine = pasteboard->engine();
        platform.pasteboard = std::move(pasteboard);
    } else {
        platform.pasteboard = std::make_unique<NullPasteboard>(QCoreApplication::translate(
            "PlatformLoader", "The clipboard cannot be watched in this session: the display has no XFixes extension."));
    }
    const auto frontWindow = std::make_shared<X11::FrontWindow>(session);
    platform.workspace = std::make_unique<X11Workspace>(session);
    platform.windows = std::make_unique<X11WindowSystem>(session, frontWindow);
    platform.hotKey = std::make_unique<X11HotKeyGrabber>(session);
    if (X11KeystrokeSender::isPossible(*session)) {
        platform.keystrokes = std::make_unique<X11KeystrokeSender>(session, frontWindow, engine);
    } else {
        platform.keystrokes = std::make_unique<NullKeystrokeSender>(QCoreApplication::translate(
            "PlatformLoader", "No key can be sent in this session: the display has no XTEST extension."));
    }
}

} // namespace

Platform loadPlatform()
{
    Platform platform = nullPlatform();
    // Windows shown by other means than X11 have nothing to do with a display that happens to be named.
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        addX11(platform);
    for (const QString& reason : {platform.pasteboard->unavailableReason(), platform.keystrokes->unavailableReason()}) {
        if (!reason.isEmpty())
            qCWarning(log).noquote() << reason;
    }
    return platform;
}

} // namespace Clipboard
