#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace Clipboard {

/// What became of a paste. Not sent: the window that was to get the key has the keyboard no more, or no key types it.
enum class PasteResult { sent, notSent };

/// Sends the paste key to the application in front.
class KeystrokeSender : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// True when this process may send keys.
    [[nodiscard]] virtual bool isTrusted() const = 0;
    /// Asks the user for that permission, where the desktop has such a question.
    virtual void requestTrust() = 0;
    /// Why no key can be sent; empty when one can.
    [[nodiscard]] virtual QString unavailableReason() const = 0;
    /// Sends the paste chord of the remembered front window (Ctrl+V; a terminal's own) once that window has the focus
    /// again and the keys that the user still holds are released, then calls `done`. Sends nothing to any other window.
    /// Never waits on the calling thread.
    virtual void sendPaste(std::function<void(PasteResult)> done) = 0;
};

} // namespace Clipboard
