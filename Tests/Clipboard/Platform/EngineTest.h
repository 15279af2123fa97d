#pragma once

#include "SelectionEngine.h"
#include "SessionTest.h"

#include <QDir>

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

/// Functions that each have an engine of their own, and every snapshot that it published.
class EngineTest : public SessionTest
{
    Q_OBJECT
protected:
    /// How long a step may take with a client that never takes it: a fair one is to be served in that time, too.
    static constexpr std::chrono::seconds soon{3};

    void startEngine(std::chrono::milliseconds stepTimeout = std::chrono::seconds(20),
                     std::chrono::milliseconds saveHold = std::chrono::seconds(20))
    {
        m_engine.reset();
        m_snapshots.clear();
        X11::SelectionEngine::Options options;
        options.display = display();
        options.selections.reading.secretTargets = {QStringLiteral("secret/marker")};
        options.selections.reading.stepTimeout = stepTimeout;
        options.selections.reading.formTimeout = 2 * stepTimeout;
        options.selections.writeTimeout = stepTimeout;
        options.selections.saveHold = saveHold;
        options.onChange = [this](const SelectionSnapshot& snapshot) {
            const std::scoped_lock lock(m_mutex);
            if (!snapshot.isInitial)
                m_snapshots.push_back(snapshot);
        };
        m_engine = X11::SelectionEngine::start(options);
        QVERIFY(m_engine);
        waitForManager();
    }
    void waitForManager() const
    {
        QVERIFY(VirtualSession::waitUntil([this] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; }));
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
        if (!VirtualSession::waitUntil([&] { return snapshots().size() >= count; }))
            return {};
        return snapshots()[count - 1].content;
    }

private:
    static uint openFiles() { return QDir(QStringLiteral("/proc/self/fd")).count(); }

    uint m_openFiles = 0;
    std::mutex m_mutex;
    std::vector<SelectionSnapshot> m_snapshots;

protected:
    std::unique_ptr<X11::SelectionEngine> m_engine; // last: it calls back until it is gone

private slots:
    void init()
    {
        m_openFiles = openFiles();
        startEngine();
    }
    void cleanup()
    {
        m_engine.reset();
        QVERIFY(openFiles() <= m_openFiles);
    }
};

} // namespace Clipboard::Testing
