#include "GlobalHotKey.h"

namespace Clipboard {

GlobalHotKey::GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, QObject* parent)
    : QObject(parent)
{
    connect(&grabber, &HotKeyGrabber::pressed, this, std::move(action));
    connect(&grabber, &HotKeyGrabber::failed, this, &GlobalHotKey::unavailable);
    // Queued, so that whoever creates this object can connect to unavailable() first.
    QMetaObject::invokeMethod(&grabber, &HotKeyGrabber::grab, Qt::QueuedConnection);
}

} // namespace Clipboard
