#include "PasteService.h"

#include <QPointer>
#include <QTimer>

#include <chrono>
#include <utility>

namespace Clipboard {

namespace {

// Time for the panel to close and for the focus to return to the application behind it.
constexpr std::chrono::milliseconds closeDelay{80};

} // namespace

PasteService::PasteService(KeystrokeSender& keystrokes, std::function<void(const ClipboardCore::ToastText& text)> toast,
                           QObject* parent)
    : QObject(parent)
    , m_keystrokes(keystrokes)
    , m_toast(std::move(toast))
{
}

void PasteService::pasteAfterClose(const QString& snippet)
{
    if (!m_keystrokes.isTrusted()) {
        m_keystrokes.requestTrust();
        leaveTheKeyToTheUser(snippet);
        return;
    }
    QTimer::singleShot(closeDelay, Qt::PreciseTimer, this, [this, snippet] { sendPasteKeystroke(snippet); });
}

void PasteService::sendPasteKeystroke(const QString& snippet)
{
    m_keystrokes.sendPaste([guard = QPointer(this), snippet](PasteResult result) {
        if (!guard)
            return;
        if (result == PasteResult::sent)
            guard->m_toast(tr("Pasted %1").arg(snippet));
        else
            guard->leaveTheKeyToTheUser(snippet);
    });
}

void PasteService::leaveTheKeyToTheUser(const QString& snippet)
{
    m_toast(tr("Copied %1 — press ⌘V to paste").arg(snippet));
}

} // namespace Clipboard
