#pragma once

#include "HotKeyGrabber.h"

#include <functional>

namespace Clipboard {

/// Runs an action on the main thread whenever Super+Shift+V is pressed, in whatever program.
class GlobalHotKey final : public QObject
{
    Q_OBJECT
public:
    GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, QObject* parent = nullptr);

signals:
    /// Another program owns the combination; `reason` is a sentence for the user.
    void unavailable(const QString& reason);
};

} // namespace Clipboard
