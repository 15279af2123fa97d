#pragma once

#include "HotKeyGrabber.h"
#include "KeystrokeSender.h"
#include "LinkMetadataProvider.h"
#include "Pasteboard.h"
#include "TextRecognizer.h"
#include "WaylandSession.h"
#include "WindowSystem.h"
#include "WorkerCheck.h"
#include "Workspace.h"

#include <memory>

namespace Clipboard {

/// Every port, each with the best adapter that this session offers, never null.
struct Platform
{
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<KeystrokeSender> keystrokes;
    std::unique_ptr<HotKeyGrabber> hotKey;
    std::unique_ptr<WindowSystem> windows;
    std::unique_ptr<TextRecognizer> textRecognizer;
    std::unique_ptr<LinkMetadataProvider> linkMetadata;
    std::unique_ptr<WorkerCheck> workerCheck;
};

/// Has the toolkit, which has yet to start, make windows that the adapters can work with. The kinds of windows to try,
/// in order, as QT_QPA_PLATFORM takes them.
[[nodiscard]] QByteArray prepareWindows(const Wayland::WaylandSession& compositor);
/// Once the toolkit has started: takes back what it alone was to know. It may still warn.
void finishWindows();

/// Picks the adapters, each service's on its own, from what the toolkit's display and the compositor, if there is one,
/// let programs do; the only code that names them.
[[nodiscard]] Platform loadPlatform(const Wayland::WaylandSession& compositor = {});

/// Whether the toolkit's own connection to its display is lost. Any thread.
[[nodiscard]] bool isDisplayLost();

/// Waits until there is a display again for those who start now. False, mostly at once, when there will be none.
[[nodiscard]] bool awaitDisplay();

} // namespace Clipboard
