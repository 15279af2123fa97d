// Lets a history live for a while, and looks at what a disk may hold of it after the power went, or the process was
// killed, at any moment of that: the file has to be whole, and what was flushed, or told of, has to be there.
#include "History/JSONHistoryStore.h"
#include "WriteLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <map>
#include <random>

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::JSONHistoryStore;

namespace {

constexpr qsizetype cap = 60;
constexpr double saveDelay = 0.05; // seconds
constexpr int steps = 600;
constexpr quint32 longestPause = 5000; // µs
constexpr qsizetype largest = 20'000;  // bytes of a text

/// What has to be there when so much has happened on the disk.
struct Promise
{
    std::size_t events = 0;
    QSet<QUuid> entries;
};

class Life final
{
public:
    explicit Life(const QString& path)
        : m_store(path, cap, saveDelay)
    {
    }

    void live()
    {
        for (int i = 0; i < steps; ++i) {
            change(i);
            m_store.saveAsync();
            m_store.whenRecorded(&m_context, [this, ids = ids()] { m_recorded.push_back({WriteLog::count(), ids}); });
            if (m_random.bounded(40) == 0) {
                m_store.flush();
                m_flushed.push_back({WriteLog::count(), ids()});
            }
            QThread::usleep(m_random.bounded(longestPause));
            QCoreApplication::processEvents();
        }
    }

    /// The entries that must be there after so many events: those of the last promise that were not removed since.
    [[nodiscard]] QSet<QUuid> promised(const std::vector<Promise>& promises, std::size_t events) const
    {
        const auto after = std::ranges::upper_bound(promises, events, {}, &Promise::events);
        if (after == promises.begin())
            return {};
        QSet<QUuid> entries = std::prev(after)->entries;
        for (const auto& [id, when] : m_removed) {
            if (when <= events)
                entries.remove(id);
        }
        return entries;
    }

    [[nodiscard]] const std::vector<Promise>& flushed() const { return m_flushed; }
    [[nodiscard]] const std::vector<Promise>& recorded() const { return m_recorded; }
    [[nodiscard]] const QHash<QUuid, QByteArray>& contents() const { return m_contents; }

private:
    void change(int number)
    {
        const QList<ClipItem>& items = m_store.items();
        const int kind = m_random.bounded(10);
        if (kind < 7 || items.isEmpty()) {
            ClipItem item;
            item.id = QUuid::createUuid();
            item.content = ClipboardCore::Utf8Text::fromUtf8(
                QByteArray::number(number).leftJustified(m_random.bounded(largest), '.'));
            item.createdAt = m_store.timeOfNewEntry();
            m_contents.insert(item.id, item.content.utf8());
            remember(m_store.add(item));
        } else if (kind < 9) {
            const QUuid id = items[m_random.bounded(items.size())].id;
            m_removed[id] = WriteLog::count();
            static_cast<void>(m_store.remove(id));
        } else {
            m_store.togglePin(items[m_random.bounded(items.size())].id);
        }
    }

    void remember(const QList<ClipItem>& evicted)
    {
        for (const ClipItem& item : evicted)
            m_removed[item.id] = WriteLog::count();
    }

    [[nodiscard]] QSet<QUuid> ids() const
    {
        QSet<QUuid> ids;
        for (const ClipItem& item : m_store.items())
            ids.insert(item.id);
        return ids;
    }

    JSONHistoryStore m_store;
    QObject m_context;
    QRandomGenerator m_random{1};
    QHash<QUuid, QByteArray> m_contents;
    std::map<QUuid, std::size_t> m_removed; // before which event it may have gone
    std::vector<Promise> m_flushed;
    std::vector<Promise> m_recorded;
};

struct Verdict
{
    int unreadable = 0;
    int lost = 0;
    int changed = 0;
};

/// Starts with those files, and looks for what was promised.
void judge(const WriteLog::Files& files, const QSet<QUuid>& promised, const Life& life, Verdict& verdict)
{
    const QTemporaryDir folder;
    for (auto entry = files.cbegin(); entry != files.cend(); ++entry) {
        QFile file(folder.filePath(QFile::decodeName(entry.key())));
        if (!file.open(QFile::WriteOnly) || file.write(entry.value()) != entry.value().size())
            qFatal("The files could not be written.");
    }
    const JSONHistoryStore store(folder.filePath(u"history.json"_s), cap, saveDelay);
    verdict.unreadable += store.unreadableFile() ? 1 : 0;
    QSet<QUuid> present;
    for (const ClipItem& item : store.items()) {
        present.insert(item.id);
        verdict.changed += life.contents().value(item.id) != item.content.utf8() ? 1 : 0;
    }
    verdict.lost += static_cast<int>((promised - present).size());
}

void report(const char* what, int points, const Verdict& verdict)
{
    std::printf("%s at %d points: %d unreadable histories, %d entries lost, %d entries changed\n", what, points,
                verdict.unreadable, verdict.lost, verdict.changed);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int points = QCoreApplication::arguments().value(1, u"500"_s).toInt();
    const QTemporaryDir folder;
    WriteLog::listen(QFile::encodeName(folder.path()));
    Life life(folder.filePath(u"history.json"_s));
    life.live();

    std::mt19937 random(1);
    std::uniform_int_distribution moment(std::size_t{0}, WriteLog::count());
    Verdict powerLoss;
    Verdict kill;
    for (int i = 0; i < points; ++i) {
        const std::size_t events = moment(random);
        judge(WriteLog::afterPowerLoss(events, random), life.promised(life.flushed(), events), life, powerLoss);
        judge(WriteLog::afterKill(events), life.promised(life.recorded(), events), life, kill);
    }
    report("the power lost", points, powerLoss);
    report("killed", points, kill);
    const auto isGood = [](const Verdict& verdict) { return verdict.unreadable + verdict.lost + verdict.changed == 0; };
    return isGood(powerLoss) && isGood(kill) ? 0 : 1;
}
