#pragma once

#include "Pasteboard.h"

#include <QFile>

namespace Clipboard {

/// A session whose clipboard cannot be reached: it never has content and forgets what is written.
class NullPasteboard final : public Pasteboard
{
public:
    explicit NullPasteboard(const QString& reason)
        : m_reason(reason)
    {
    }

    [[nodiscard]] QString unavailableReason() const override { return m_reason; }
    [[nodiscard]] qint64 changeCount() const override { return m_changeCount; }
    [[nodiscard]] QSet<QString> types() const override { return {}; }
    [[nodiscard]] QList<QUrl> fileURLs() const override { return {}; }
    [[nodiscard]] std::optional<QByteArray> pngData() const override { return {}; }
    [[nodiscard]] std::optional<QByteArray> tiffData() const override { return {}; }
    [[nodiscard]] std::optional<QByteArray> string() const override { return {}; }
    /// Nothing ever changes here, so nobody needs to poll.
    [[nodiscard]] bool notifiesChanges() const override { return true; }

    void setString(const QByteArray& /*utf8*/) override { ++m_changeCount; }
    void setFile(const QUrl& /*file*/) override { ++m_changeCount; }
    void setPNG(const QByteArray& /*png*/) override { ++m_changeCount; }
    /// Still tells a missing file from one that is there: the history forgets an entry whose file is gone.
    [[nodiscard]] bool setPNGFile(const QString& path) override
    {
        if (!QFile(path).open(QIODevice::ReadOnly))
            return false;
        ++m_changeCount;
        return true;
    }

private:
    QString m_reason;
    qint64 m_changeCount = 0;
};

} // namespace Clipboard
