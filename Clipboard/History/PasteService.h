#pragma once

#include "KeystrokeSender.h"
#include "Support/ToastText.h"

#include <QObject>
#include <QString>

#include <functional>

namespace Clipboard {

/// Finishes a paste: once the panel has closed, sends the paste key to the application in front, or tells the user to
/// press it. Main thread only.
class PasteService final : public QObject
{
    Q_OBJECT
public:
    PasteService(KeystrokeSender& keystrokes, std::function<void(const ClipboardCore::ToastText& text)> toast,
                 QObject* parent = nullptr);

    /// `snippet` is the entry's, already in quotes. Returns at once; key and notice follow.
    void pasteAfterClose(const QString& snippet);

private:
    void sendPasteKeystroke(const QString& snippet);
    void leaveTheKeyToTheUser(const QString& snippet);

    KeystrokeSender& m_keystrokes;
    std::function<void(const ClipboardCore::ToastText& text)> m_toast;
};

} // namespace Clipboard
