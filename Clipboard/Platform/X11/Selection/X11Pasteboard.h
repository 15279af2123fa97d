#pragma once

#include "Pasteboard.h"
#include "SelectionEngine.h"

#include <memory>

namespace Clipboard {

/// The CLIPBOARD selection: the latest snapshot of the selection engine, in the main thread's memory.
class X11Pasteboard final : public Pasteboard
{
public:
    /// Null when the display cannot be reached or lacks XFixes. An empty name means $DISPLAY.
    [[nodiscard]] static std::unique_ptr<X11Pasteboard> create(const QByteArray& display = {});
    ~X11Pasteboard() override;

    /// For those who must wait until a write is in force. It outlives this object, silent.
    [[nodiscard]] const std::shared_ptr<X11::SelectionEngine>& engine() const { return m_engine; }

    [[nodiscard]] QString unavailableReason() const override;
    [[nodiscard]] qint64 changeCount() const override { return m_changeCount; }
    [[nodiscard]] QSet<QString> types() const override { return m_content.types; }
    [[nodiscard]] QList<QUrl> fileURLs() const override { return m_content.fileURLs; }
    [[nodiscard]] std::optional<QByteArray> pngData() const override { return m_content.png; }
    [[nodiscard]] std::optional<QByteArray> tiffData() const override { return m_content.tiff; }
    [[nodiscard]] std::optional<QByteArray> string() const override { return m_content.text; }
    [[nodiscard]] bool notifiesChanges() const override { return true; }

    void setString(const QByteArray& utf8) override;
    void setFile(const QUrl& file) override;
    void setPNG(const QByteArray& png) override;
    /// Our own picture is read when another program asks for it; pngData() does not have it.
    [[nodiscard]] bool setPNGFile(const QString& path) override;

    void settle(std::chrono::milliseconds limit) override;
    void leave() override;

private:
    X11Pasteboard() = default;

    void write(const SelectionForms& forms, SelectionContent content);
    void setConnected(bool isConnected);
    void take(const SelectionSnapshot& snapshot);

    std::shared_ptr<X11::SelectionEngine> m_engine;
    SelectionContent m_content;
    bool m_isConnected = true;
    qint64 m_changeCount = 0;
    quint64 m_writes = 0;
};

} // namespace Clipboard
