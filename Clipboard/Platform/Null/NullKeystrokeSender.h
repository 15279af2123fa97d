#pragma once

#include "KeystrokeSender.h"

#include <utility>

namespace Clipboard {

/// A session in which no program may send keys.
class NullKeystrokeSender final : public KeystrokeSender
{
public:
    explicit NullKeystrokeSender(const QString& reason)
        : m_reason(reason)
    {
    }

    [[nodiscard]] bool isTrusted() const override { return false; }
    void requestTrust() override {}
    [[nodiscard]] QString unavailableReason() const override { return m_reason; }
    void sendPaste(std::function<void(PasteResult)> done) override
    {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(PasteResult::notSent); }, Qt::QueuedConnection);
    }

private:
    QString m_reason;
};

} // namespace Clipboard
