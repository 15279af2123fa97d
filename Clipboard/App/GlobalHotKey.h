#pragma once

#include "Support/KeyChord.h"

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
    /// Runs `action` on every press.
    GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, QObject* parent = nullptr);

    /// Has the chord open the panel from now on, in place of an earlier one.
    void bind(const ClipboardCore::KeyChord& chord);
    /// A sentence for the user when it cannot be had; empty while it works.
    [[nodiscard]] const QString& problem() const { return m_problem; }
    /// The chord that opens the panel, as it is shown: the desktop may have another one than was asked for.
    [[nodiscard]] QString shown() const;

signals:
    /// Another chord, or another problem. The same trouble again, at a change of the keyboard, is none.
    void changed();

private:
    void become(const QString& problem);

    HotKeyGrabber& m_grabber;
    QString m_problem;
    ClipboardCore::KeyChord m_bound;
};

} // namespace Clipboard
