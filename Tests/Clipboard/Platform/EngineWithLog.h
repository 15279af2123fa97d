#pragma once

#include "ForeignClient.h"
#include "SelectionEngine.h"
#include "SessionTest.h"

#include <QDir>
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
        if (!VirtualSession::waitUntil([&] { return snapshots().size() >= count; }))
            return {};
        return snapshots()[count - 1].content;
    }

private:
    std::mutex m_mutex;
    std::vector<SelectionSnapshot> m_snapshots;

public:
    std::unique_ptr<X11::SelectionEngine> engine; // last: it calls back until it is gone
};

/// Functions that each have an engine of their own.
class SelectionTest : public SessionTest
{
    Q_OBJECT
protected:
    void startEngine(std::chrono::milliseconds stepTimeout = std::chrono::seconds(20),
                     std::chrono::milliseconds saveHold = std::chrono::seconds(20))
    {
        m_log.reset();
        m_log = std::make_unique<EngineWithLog>(m_session->display(), stepTimeout, saveHold);
        QVERIFY(m_log->engine);
    }
    [[nodiscard]] bool waitForManager() const
    {
        return VirtualSession::waitUntil([this] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; });
    }

    std::unique_ptr<EngineWithLog> m_log;

private slots:
    void init()
    {
        m_openFiles = openFiles();
        startEngine();
        QVERIFY(waitForManager());
    }
    void cleanup()
    {
        m_log.reset();
        QVERIFY(openFiles() <= m_openFiles);
    }

private:
    static uint openFiles() { return QDir(QStringLiteral("/proc/self/fd")).count(); }

    uint m_openFiles = 0;
};

} // namespace Clipboard::Testing
