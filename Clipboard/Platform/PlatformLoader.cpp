#include "PlatformLoader.h"

#include "Null/NullHotKeyGrabber.h"
#include "Null/NullKeystrokeSender.h"
#include "Null/NullPasteboard.h"
#include "Null/NullWindowSystem.h"
#include "Null/NullWorkspace.h"

#include <QCoreApplication>

namespace Clipboard {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("PlatformLoader", text);
}

} // namespace

Platform loadPlatform()
{
    Platform platform;
    platform.pasteboard = std::make_unique<NullPasteboard>(
        tr("The clipboard cannot be watched in this session: there is no X11 display."));
    platform.workspace = std::make_unique<NullWorkspace>();
    platform.keystrokes =
        std::make_unique<NullKeystrokeSender>(tr("No key can be sent in this session: there is no X11 display."));
    platform.hotKey = std::make_unique<NullHotKeyGrabber>(
        tr("Super+Shift+V is not available in this session: there is no X11 display."));
    platform.windows = std::make_unique<NullWindowSystem>();
    return platform;
}

} // namespace Clipboard
