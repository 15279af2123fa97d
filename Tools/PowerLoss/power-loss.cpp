// Lets a history live for a while, and looks at what a disk may hold of it after the power went, or the process was
// killed, at any moment of that: the file has to be whole, and what was flushed, or told of, has to be there. With the
// argument "switching", encryption is switched on and off meanwhile.
#include "History/JSONHistoryStore.h"
#include "SodiumSeal.h"
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
using ClipboardCore::ContentSeal;
using ClipboardCore::JSONHistoryStore;

namespace {

constexpr qsizetype cap = 60;
constexpr double saveDelay = 0.05; // seconds
constexpr int steps = 600;
constexpr quint32 longestPause = 5000; // µs
constexpr qsizetype largest = 20'000;  // bytes of a text
constexpr int stepsPerSwitch = 15;

using Seal = std::shared_ptr<const ContentSeal>;

/// What has to be there when so much has happened on the disk.
struct Promise
{
    std::size_t events = 0;
    QSet<QUuid> entries;
};

/// What an entry has of them, by the number with which its text begins.
int furtherFilesOf(const ClipItem& item)
{
    return item.content.utf8().split('.').first().toInt() % 3;
}

class Life final
{
public:
    /// Its files change between sealed and plain, unless the seal is null.
    Life(const QString& path, Seal seal)
        : m_store(path, cap, saveDelay)
        , m_seal(std::move(seal))
    {
    }

    void live()
    {
        for (int i = 0; i < steps; ++i) {
            change(i);
            m_store.saveAsync();
            if (m_seal && m_random.bounded(stepsPerSwitch) == 0)
                m_store.setSealing({m_seal, m_random.bounded(2) == 0}, [](const auto& /*evicted*/) {});
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
    [[nodiscard]] const Seal& seal() const { return m_seal; }

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
            item.furtherFiles = furtherFilesOf(item);
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
    Seal m_seal;
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
    int torn = 0; // sealed journals of which parts are missing, which are kept aside
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
    JSONHistoryStore store(folder.filePath(u"history.json"_s), cap, saveDelay);
    if (store.isLocked())
        store.setSealing({life.seal(), true}, [](const auto& /*evicted*/) {});
    while (store.isLocked())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const QString kept = store.unreadableFile().value_or(QString());
    verdict.torn += kept.contains("journal"_L1) ? 1 : 0;
    verdict.unreadable += kept.contains("json"_L1) ? 1 : 0;
    QSet<QUuid> present;
    for (const ClipItem& item : store.items()) {
        present.insert(item.id);
        const bool isSame = life.contents().value(item.id) == item.content.utf8();
        // One that was removed may come back after its number went.
        const bool hasNumber = item.furtherFiles == furtherFilesOf(item) || !promised.contains(item.id);
        verdict.changed += isSame && hasNumber ? 0 : 1;
    }
    verdict.lost += static_cast<int>((promised - present).size());
}

void report(const char* what, int points, const Verdict& verdict)
{
    std::printf("%s at %d points: %d unreadable histories, %d entries lost, %d entries changed, %d torn journals\n",
                what, points, verdict.unreadable, verdict.lost, verdict.changed, verdict.torn);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int points = QCoreApplication::arguments().value(1, u"500"_s).toInt();
    const QTemporaryDir folder;
    WriteLog::listen(QFile::encodeName(folder.path()));
    const bool isSwitching = QCoreApplication::arguments().value(2) == "switching"_L1;
    using Clipboard::SodiumSeal;
    Life life(folder.filePath(u"history.json"_s), isSwitching ? SodiumSeal::make(SodiumSeal::newKey()) : nullptr);
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
    return isGood(powerLoss) && isGood(kill) && kill.torn == 0 ? 0 : 1;
}
