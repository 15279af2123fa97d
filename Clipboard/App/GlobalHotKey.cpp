#include "GlobalHotKey.h"

#include "HotKeyGrabber.h"

#include <utility>

namespace Clipboard {

GlobalHotKey::GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, std::function<void()> available,
                           std::function<void(const QString& reason)> unavailable, QObject* parent)
    : QObject(parent)
{
    connect(&grabber, &HotKeyGrabber::pressed, this, std::move(action));
    connect(&grabber, &HotKeyGrabber::granted, this, std::move(available));
    connect(&grabber, &HotKeyGrabber::failed, this, std::move(unavailable));
    grabber.grab();
}

} // namespace Clipboard
