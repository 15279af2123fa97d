#pragma once

#include "History/JSONHistoryStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

constexpr double never = 3600; // a save delay that no test waits for

inline ClipboardCore::ClipItem entry(const QString& content, double createdAt = 1, bool isPinned = false,
                                     ClipboardCore::ClipType type = ClipboardCore::ClipType::text)
{
    return {QUuid::createUuid(), type, content, std::nullopt, std::nullopt, createdAt, isPinned};
}

/// How the stores of a test keep their files; set before main() where that is not the usual way.
inline ClipboardCore::Sealing sealingOfTests;

/// The store as the program has it once a key is known.
inline std::unique_ptr<ClipboardCore::JSONHistoryStore>
openHistory(const QString& path, qsizetype cap = 500, double delay = never,
            qint64 largest = ClipboardCore::JSONHistoryStore::largestHistory)
{
    auto store = std::make_unique<ClipboardCore::JSONHistoryStore>(path, cap, delay, largest);
    bool isOpen = sealingOfTests.seal == nullptr;
    if (!isOpen)
        store->setSealing(sealingOfTests, [&isOpen](const auto& /*evicted*/) { isOpen = true; });
    while (!isOpen)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return store;
}

/// A history's files in a folder of their own, which is in memory: a flush costs nothing there.
class HistoryFolder
{
public:
    void renew()
    {
        m_folder.emplace(QStringLiteral("/dev/shm/history-XXXXXX"));
        QVERIFY(m_folder->isValid());
        m_openFiles = openFiles();
    }
    /// After every store is gone.
    void checkOpenFiles() const { QCOMPARE(openFiles(), m_openFiles); }

    [[nodiscard]] QString file(const QString& name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString path() const { return file(QStringLiteral("history.json")); }
    [[nodiscard]] QString journal() const { return file(QStringLiteral("history.journal")); }
    [[nodiscard]] QString folder() const { return m_folder->path(); }
    /// What is there for the next start.
    [[nodiscard]] QList<ClipboardCore::ClipItem> saved() const { return openHistory(path())->items(); }

private:
    static qsizetype openFiles()
    {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
    }

    std::optional<QTemporaryDir> m_folder;
    qsizetype m_openFiles = 0;
};
