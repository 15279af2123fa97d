// The store beside a model of it that is as simple as can be, through random changes, ends, kills and torn journals.

#include "History/JSONHistoryStore.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

constexpr double never = 3600; // a save delay that no test waits for

ClipItem entry(const QString& content, double createdAt, bool isPinned = false, ClipType type = ClipType::text)
{
    return {QUuid::createUuid(), type, content, std::nullopt, std::nullopt, createdAt, isPinned};
}

QStringList contents(const QList<ClipItem>& items)
{
    QStringList result;
    for (const ClipItem& item : items)
        result.append(item.content.toString());
    return result;
}

bool before(const ClipItem& a, const ClipItem& b)
{
    return a.isPinned != b.isPinned ? a.isPinned : a.createdAt > b.createdAt;
}

/// What the store must do, each rule in one line.
struct Model
{
    QList<ClipItem> items;
    qsizetype cap = 0;

    void insert(const ClipItem& item)
    {
        const auto isBehind = [&item](const ClipItem& other) { return !before(other, item); };
        items.insert(std::ranges::find_if(items, isBehind), item);
    }
    QList<ClipItem> takeIf(const std::function<bool(const ClipItem&)>& condition)
    {
        QList<ClipItem> taken;
        std::ranges::copy_if(items, std::back_inserter(taken), condition);
        items.removeIf(condition);
        return taken;
    }
    QList<ClipItem> enforceCap()
    {
        QList<ClipItem> evicted;
        for (qsizetype i = items.size() - 1; i >= 0 && items.size() > cap; --i)
            if (!items[i].isPinned)
                evicted.append(items.takeAt(i));
        return evicted;
    }
    [[nodiscard]] std::function<bool(const ClipItem&)> isEqualTo(const ClipItem& item) const
    {
        return [item](const ClipItem& other) {
            const auto normal = [](const ClipItem& any) {
                return any.content.toString().normalized(QString::NormalizationForm_C);
            };
            return other.type == item.type && normal(other) == normal(item);
        };
    }
    QList<ClipItem> add(ClipItem item)
    {
        if (const QList<ClipItem> known = takeIf(isEqualTo(item)); !known.isEmpty()) {
            ClipItem merged = known.first();
            merged.createdAt = item.createdAt;
            if (item.sourceApp) {
                merged.sourceApp = item.sourceApp;
                merged.bundleID = item.bundleID;
            }
            item = merged;
        }
        insert(item);
        return enforceCap();
    }
    void togglePin(const QUuid& id)
    {
        for (ClipItem& item : items)
            if (item.id == id)
                item.isPinned = !item.isPinned;
        std::stable_sort(items.begin(), items.end(), before);
    }
    QList<ClipItem> restore(const QList<ClipItem>& removed)
    {
        for (const ClipItem& item : removed) {
            const auto isThere = [&item](const ClipItem& other) { return other.id == item.id; };
            const auto equal = std::ranges::find_if(items, isEqualTo(item));
            if (std::ranges::any_of(items, isThere))
                continue;
            if (equal == items.end())
                insert(item);
            else if (item.isPinned && !equal->isPinned)
                togglePin(equal->id);
        }
        return enforceCap();
    }
};

/// The store and its model, changed in the same random way.
class Pair
{
public:
    Pair(QString path, quint32 seed)
        : m_path(std::move(path))
        , m_random(seed)
    {
        start();
    }

    [[nodiscard]] JSONHistoryStore& store() { return *m_store; }
    [[nodiscard]] const QList<ClipItem>& expected() const { return m_model.items; }
    [[nodiscard]] quint32 random(quint32 below) { return m_random.bounded(below); }

    /// One change of the store and the model. True when both gave back the same.
    bool change()
    {
        const ClipItem known = m_model.items.value(random(6)); // perhaps none
        switch (random(8)) {
        case 0:
            m_model.togglePin(known.id);
            m_store->togglePin(known.id);
            return true;
        case 1:
            m_removed = m_model.takeIf([&](const ClipItem& item) { return item.id == known.id; });
            return m_store->remove(known.id) == (m_removed.isEmpty() ? std::nullopt : std::optional(m_removed.first()));
        case 2:
            return m_model.restore(m_removed) == m_store->restore(m_removed);
        case 3:
            if (const bool keeping = random(2) == 0; random(4) == 0) {
                m_removed = m_model.takeIf([&](const ClipItem& item) { return !keeping || !item.isPinned; });
                return m_store->removeAll(keeping) == m_removed;
            }
            [[fallthrough]];
        default:
            const ClipItem item = randomEntry();
            return m_model.add(item) == m_store->add(item);
        }
    }
    void saveAsync()
    {
        m_store->saveAsync();
        m_handedOver = m_model.items;
    }
    /// The store goes without a flush: what was handed over before is there again.
    void kill()
    {
        m_model.items = m_handedOver;
        start();
    }
    void end()
    {
        saveAsync();
        m_store->flush();
        start();
    }
    void save()
    {
        QCOMPARE(m_store->save(), std::nullopt);
        m_handedOver = m_model.items;
    }

private:
    void start()
    {
        m_model.cap = 4 + random(6);
        m_store.reset(); // before the next one reads what it leaves
        m_store = std::make_unique<JSONHistoryStore>(m_path, m_model.cap, random(2) == 0 ? never : 0);
    }
    ClipItem randomEntry()
    {
        static const QStringList texts{u"a"_s, u"b"_s, u"\u00E9"_s, u"e\u0301"_s, u"e"_s, u"\"/\\\n"_s, u"😀"_s};
        ClipItem item = entry(texts[random(7)].repeated(1 + random(3)), random(9) / 2.0, random(5) == 0,
                              random(4) == 0 ? ClipType::code : ClipType::text);
        if (random(2) == 0)
            item.sourceApp = u"App %1"_s.arg(random(3));
        if (random(2) == 0)
            item.bundleID = u"app"_s;
        return item;
    }

    QString m_path;
    QRandomGenerator m_random;
    Model m_model;
    std::unique_ptr<JSONHistoryStore> m_store;
    QList<ClipItem> m_handedOver;
    QList<ClipItem> m_removed;
};

} // namespace

class JSONHistoryStoreTest final : public QObject
{
    Q_OBJECT

    [[nodiscard]] QString path() const { return m_folder->filePath(u"history.json"_s); }
    [[nodiscard]] QString journal() const { return m_folder->filePath(u"history.journal"_s); }
    [[nodiscard]] QStringList saved() const { return contents(JSONHistoryStore(path(), 500, never).items()); }

    std::optional<QTemporaryDir> m_folder;

private slots:
    void init();
    void doesWhatTheModelDoes_data();
    void doesWhatTheModelDoes();
    void tornJournalIsAnEarlierState();
    void largestSizeEvictsOldestUnpinned();
    void newEntryIsNotBeforeTheNewest();
    void copyingAgainJournalsNoContent();
    void forgetsPicturesThatAreGone();
    void savesOnceForABurst();
    void flushOvertakesThePendingSave();
    void refusesTimesThatAreNoNumbers();
};

void JSONHistoryStoreTest::init()
{
    m_folder.emplace(u"/dev/shm/history-XXXXXX"_s); // where a flush costs nothing
    QVERIFY(m_folder->isValid());
}

void JSONHistoryStoreTest::doesWhatTheModelDoes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 30; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void JSONHistoryStoreTest::doesWhatTheModelDoes()
{
    QFETCH(quint32, seed);
    Pair pair(path(), seed);
    for (int step = 0; step < 200; ++step) {
        QVERIFY(pair.change());
        QCOMPARE(pair.store().items(), pair.expected());
        switch (pair.random(12)) {
        case 0:
            pair.kill();
            break;
        case 1:
            pair.end();
            break;
        case 2:
            pair.save();
            break;
        case 3:
        case 4:
        case 5:
        case 6:
            pair.saveAsync();
            break;
        default:
            break;
        }
        QCOMPARE(pair.store().items(), pair.expected());
    }
}

void JSONHistoryStoreTest::tornJournalIsAnEarlierState()
{
    Pair pair(path(), 7);
    pair.end();
    QList<QList<ClipItem>> states{pair.expected()};
    {
        JSONHistoryStore store(path(), 50, never);
        for (int i = 0; i < 20; ++i) {
            static_cast<void>(store.add(entry(QString::number(i % 7), i, i % 5 == 0)));
            states.append(store.items());
            store.togglePin(store.items().constLast().id);
            states.append(store.items());
            store.saveAsync();
        }
    }
    QFile file(journal());
    QVERIFY(file.open(QIODevice::ReadWrite));
    qsizetype earlier = states.size() - 1;
    QCOMPARE(JSONHistoryStore(path(), 50, never).items(), states.constLast());
    for (qint64 size = file.size() - 1; size >= 0; --size) {
        QVERIFY(file.resize(size));
        const QList<ClipItem> loaded = JSONHistoryStore(path(), 50, never).items();
        while (earlier > 0 && loaded != states[earlier])
            --earlier;
        QCOMPARE(loaded, states[earlier]);
    }
    QCOMPARE(earlier, 0);
}

void JSONHistoryStoreTest::largestSizeEvictsOldestUnpinned()
{
    JSONHistoryStore store(path(), 500, never, 10);
    QVERIFY(store.add(entry(u"pppp"_s, 0, true)).isEmpty());
    QVERIFY(store.add(entry(u"aaa"_s, 1)).isEmpty());
    QVERIFY(store.add(entry(u"bbb"_s, 2)).isEmpty());
    QCOMPARE(contents(store.add(entry(u"cc"_s, 3))), QStringList({u"aaa"_s}));
    QCOMPARE(contents(store.add(entry(u"too long to fit"_s, 1))), QStringList({u"bbb"_s, u"cc"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"pppp"_s, u"too long to fit"_s}));
}

void JSONHistoryStoreTest::newEntryIsNotBeforeTheNewest()
{
    JSONHistoryStore store(path(), 500, never);
    const double now = store.timeOfNewEntry();
    QVERIFY(now >= 7e8);
    QVERIFY(store.add(entry(u"from a wrong clock"_s, now + 1e9)).isEmpty());
    QVERIFY(store.add(entry(u"new"_s, store.timeOfNewEntry())).isEmpty());
    QCOMPARE(store.items().constFirst().content, u"new"_s);
}

void JSONHistoryStoreTest::copyingAgainJournalsNoContent()
{
    const QString large(100'000, u'x');
    {
        JSONHistoryStore store(path(), 500, never);
        QVERIFY(store.add(entry(large, 1)).isEmpty());
        QCOMPARE(store.save(), std::nullopt);
        QVERIFY(store.add(entry(large, 2)).isEmpty());
        store.saveAsync();
    }
    const qint64 size = QFile(journal()).size();
    QVERIFY2(size > 0 && size < 1000, qPrintable(QString::number(size)));
    QCOMPARE(JSONHistoryStore(path(), 500, never).items().constFirst().createdAt, 2.0);
}

void JSONHistoryStoreTest::forgetsPicturesThatAreGone()
{
    const QString there = m_folder->filePath(u"there.png"_s);
    QVERIFY(QFile(there).open(QIODevice::WriteOnly));
    {
        JSONHistoryStore store(path(), 500, never);
        QVERIFY(store.add(entry(there, 1, false, ClipType::image)).isEmpty());
        QVERIFY(store.add(entry(u"/gone.png"_s, 2, false, ClipType::image)).isEmpty());
        QVERIFY(store.add(entry(u"/pinned.png"_s, 3, true, ClipType::image)).isEmpty());
        store.saveAsync();
    }
    QCOMPARE(saved(), QStringList({u"/pinned.png"_s, there}));
}

void JSONHistoryStoreTest::savesOnceForABurst()
{
    JSONHistoryStore store(path(), 500, 0.3);
    for (const ClipItem& item : {entry(u"0"_s, 0), entry(u"1"_s, 1), entry(u"2"_s, 2)}) {
        QVERIFY(store.add(item).isEmpty());
        store.saveAsync();
    }
    QVERIFY(store.add(entry(u"later"_s, 99)).isEmpty()); // than the last call: no part of what it saves
    QVERIFY(!QFile::exists(path()));
    QTRY_VERIFY(QFile::exists(path()));
    QTRY_COMPARE(QFile(journal()).size(), 0);
    QCOMPARE(saved(), QStringList({u"2"_s, u"1"_s, u"0"_s}));
}

void JSONHistoryStoreTest::flushOvertakesThePendingSave()
{
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.add(entry(u"a"_s, 1)).isEmpty());
    store.flush();
    QVERIFY(!QFile::exists(path())); // nothing was asked for
    store.saveAsync();
    QVERIFY(store.add(entry(u"b"_s, 2)).isEmpty());
    store.flush();
    QCOMPARE(saved(), QStringList({u"b"_s, u"a"_s}));
    QCOMPARE(QFile(journal()).size(), 0);

    QVERIFY(QFile::remove(path()));
    store.flush();
    QVERIFY(!QFile::exists(path()));
}

void JSONHistoryStoreTest::refusesTimesThatAreNoNumbers()
{
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.add(entry(u"a"_s, qQNaN())).isEmpty());
    QVERIFY(store.save().has_value());
    QVERIFY(!QFile::exists(path()));
}

QTEST_GUILESS_MAIN(JSONHistoryStoreTest)
#include "JSONHistoryStoreTest.moc"
