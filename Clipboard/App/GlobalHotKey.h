#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace Clipboard {

class HotKeyGrabber;

/// The system-wide hot key, for the life of the process. Main thread only.
class GlobalHotKey final : public QObject
{
    Q_OBJECT
public:
    /// Runs `action` on every press, `available` when the key is ours, and `unavailable` with a sentence for the user
    /// when it cannot be had.
    GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, std::function<void()> available,
                 std::function<void(const QString& reason)> unavailable, QObject* parent = nullptr);
};

} // namespace Clipboard
