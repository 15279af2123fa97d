#pragma once

#include "SelectionEngine.h"

#include <QTest>

#include <mutex>

namespace Clipboard::Testing {

/// Bytes in which a piece out of place shows.
inline QByteArray numbers(qsizetype size)
{
    QByteArray bytes;
    bytes.reserve(size + 16);
    for (int i = 0; bytes.size() < size; ++i)
        bytes += QByteArray::number(i) + ' ';
    bytes.truncate(size);
    return bytes;
}

/// A selection engine and every snapshot that it published.
class EngineWithLog final
{
public:
    explicit EngineWithLog(const QString& display, std::chrono::milliseconds stepTimeout = std::chrono::seconds(20),
                           std::chrono::milliseconds saveHold = std::chrono::seconds(20))
    {
        X11::SelectionEngine::Options options;
        options.display = display.toLatin1();
        options.selections.reading.secretTargets = {QStringLiteral("secret/marker")};
        options.selections.reading.hostName = "thishost";
        options.selections.reading.stepTimeout = stepTimeout;
        options.selections.reading.formTimeout = 4 * stepTimeout;
        options.selections.writeTimeout = stepTimeout;
        options.selections.saveHold = saveHold;
        options.onChange = [this](const SelectionSnapshot& snapshot) {
            const std::scoped_lock lock(m_mutex);
            if (!snapshot.isInitial)
                m_snapshots.push_back(snapshot);
        };
        engine = X11::SelectionEngine::start(options);
    }

    /// All changes so far; the content at the start is none.
    [[nodiscard]] std::vector<SelectionSnapshot> snapshots()
    {
        const std::scoped_lock lock(m_mutex);
        return m_snapshots;
    }
    /// Waits until there are `count` snapshots; the last of them, empty when they do not come.
    [[nodiscard]] SelectionContent waitForSnapshot(size_t count = 1)
    {
        if (!QTest::qWaitFor([&] { return snapshots().size() >= count; }, 20000))
            return {};
        return snapshots()[count - 1].content;
    }

private:
    std::mutex m_mutex;
    std::vector<SelectionSnapshot> m_snapshots;

public:
    std::unique_ptr<X11::SelectionEngine> engine; // last: it calls back until it is gone
};

} // namespace Clipboard::Testing
