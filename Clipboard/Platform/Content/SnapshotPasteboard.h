#pragma once

#include "ClipboardEngine.h"
#include "ContentReading.h"
#include "Pasteboard.h"

#include <deque>
#include <functional>
#include <memory>

namespace Clipboard {

/// A clipboard that an engine watches: the latest of its snapshots, in the main thread's memory.
class SnapshotPasteboard : public Pasteboard
{
public:
    /// Asked when a copy has come: calls back in the main thread, at once or later, when that may be shown to those who
    /// listen. They see each copy in its turn, at the latest when settle() is called.
    using Gate = std::function<void(std::function<void()> open)>;

    ~SnapshotPasteboard() override;

    /// Without one every copy is shown at once.
    void setGate(Gate gate) { m_gate = std::move(gate); }

    /// For those who must wait until a write is in force. It outlives this object, silent.
    [[nodiscard]] const std::shared_ptr<ClipboardEngine>& engine() const { return m_engine; }

    [[nodiscard]] QString unavailableReason() const override;
    [[nodiscard]] qint64 changeCount() const override { return m_changeCount; }
    [[nodiscard]] QSet<QString> types() const override { return m_content.types; }
    [[nodiscard]] QList<QUrl> fileURLs() const override { return m_content.fileURLs; }
    [[nodiscard]] std::optional<QByteArray> pngData() const override { return m_content.png; }
    [[nodiscard]] std::optional<QByteArray> tiffData() const override { return m_content.tiff; }
    [[nodiscard]] std::optional<QByteArray> string() const override { return m_content.text; }
    [[nodiscard]] bool isTakenBack() const override { return m_isTakenBack; }
    [[nodiscard]] bool notifiesChanges() const override { return true; }

    void setString(const QByteArray& utf8) override;
    void setFile(const QUrl& file) override;
    void setPNG(const QByteArray& png) override;
    /// Our own picture is read when another program asks for it; pngData() does not have it.
    [[nodiscard]] bool setPNGFile(const QString& path) override;

    void settle(std::chrono::milliseconds limit) override;

protected:
    SnapshotPasteboard() = default;

    /// What an engine is to read for this program, and what it must leave alone.
    [[nodiscard]] static ContentReading::Options readingOptions();
    // What an engine is to call; from any thread.
    [[nodiscard]] std::function<void(const SelectionSnapshot&)> changeListener();
    [[nodiscard]] std::function<void(bool)> connectionListener();
    /// False for null.
    [[nodiscard]] bool setEngine(std::shared_ptr<ClipboardEngine> engine);

private:
    void write(const SelectionForms& forms, SelectionContent content);
    void setConnected(bool isConnected);
    void arrive(const SelectionSnapshot& snapshot);
    void takeNext();
    void take(const SelectionSnapshot& snapshot);

    std::shared_ptr<ClipboardEngine> m_engine;
    Gate m_gate;
    std::deque<SelectionSnapshot> m_arrived; // before the gate
    SelectionContent m_content;
    bool m_isTakenBack = false;
    bool m_isConnected = true;
    qint64 m_changeCount = 0;
    quint64 m_writes = 0;
};

} // namespace Clipboard
