// The store beside a model of it that is as simple as can be, through random changes, ends, kills and torn journals.

#include "HistoryFolder.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

bool before(const ClipItem& a, const ClipItem& b)
{
    return a.isPinned != b.isPinned ? a.isPinned : a.createdAt > b.createdAt;
}

bool isSame(const QList<ClipItem>& a, const QList<ClipItem>& b)
{
    return a == b && std::ranges::equal(a, b, {}, &ClipItem::furtherFiles, &ClipItem::furtherFiles);
}

/// What the store must do, each rule in one line.
struct Model
{
    QList<ClipItem> items;
    qsizetype cap = 0;
    qsizetype largest = 0;

    void insert(const ClipItem& item)
    {
        items.prepend(item);
        std::stable_sort(items.begin(), items.end(), before);
    }
    QList<ClipItem> takeIf(const std::function<bool(const ClipItem&)>& condition)
    {
        QList<ClipItem> taken;
        std::ranges::copy_if(items, std::back_inserter(taken), condition);
        items.removeIf(condition);
        return taken;
    }
    std::optional<ClipItem> remove(const QUuid& id)
    {
        const QList<ClipItem> removed = takeIf([&id](const ClipItem& item) { return item.id == id; });
        return removed.isEmpty() ? std::nullopt : std::optional(removed.first());
    }
    QList<ClipItem> removeAll(bool keepingPinned)
    {
        return takeIf([=](const ClipItem& item) { return !keepingPinned || !item.isPinned; });
    }
    [[nodiscard]] bool isTooLarge() const
    {
        qsizetype size = 0;
        for (const ClipItem& item : items)
            size += item.content.byteCount();
        return size > largest;
    }
    QList<ClipItem> enforceCap(const QUuid& newest = {})
    {
        QList<ClipItem> evicted;
        for (qsizetype i = items.size() - 1; i >= 0; --i)
            if (!items[i].isPinned && (items.size() > cap || (isTooLarge() && items[i].id != newest)))
                evicted.append(items.takeAt(i));
        return evicted;
    }
    static std::function<bool(const ClipItem&)> isEqualTo(const ClipItem& item)
    {
        const auto normal = [](const ClipItem& any) {
            return std::pair(any.type, any.content.toString().normalized(QString::NormalizationForm_C));
        };
        return [wanted = normal(item), normal](const ClipItem& other) { return normal(other) == wanted; };
    }
    QList<ClipItem> add(ClipItem item)
    {
        if (const QList<ClipItem> known = takeIf(isEqualTo(item)); !known.isEmpty()) {
            ClipItem merged = known.first();
            merged.createdAt = item.createdAt;
            merged.furtherFiles = item.furtherFiles;
            if (item.sourceApp) {
                merged.sourceApp = item.sourceApp;
                merged.bundleID = item.bundleID;
            }
            item = merged;
        }
        insert(item);
        return enforceCap(item.id);
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
            const auto equal = std::ranges::find_if(items, isEqualTo(item));
            if (std::ranges::find(items, item.id, &ClipItem::id) != items.end())
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

    /// One change of both. True when they gave back the same and hold the same.
    bool change()
    {
        const quint32 kind = random(30);
        const ClipItem item = kind < 10 ? m_model.items.value(random(6)) : randomEntry(); // perhaps none
        const QList<ClipItem> expected = changed(m_model, kind, item);
        const QList<ClipItem> actual = changed(*m_store, kind, item);
        if (kind >= 4 && kind < 9)
            m_removed = expected;
        return isSame(actual, expected) && isSame(m_store->items(), m_model.items);
    }
    /// Something that writes or reads the files, or nothing. True when the history is what it has to be.
    bool turn()
    {
        static constexpr std::array turns{&Pair::kill,      &Pair::end,       &Pair::save,    &Pair::saveAsync,
                                          &Pair::saveAsync, &Pair::saveAsync, &Pair::nothing, &Pair::nothing};
        (this->*turns[random(turns.size())])();
        return isSame(m_store->items(), m_model.items);
    }

private:
    template <typename History>
    QList<ClipItem> changed(History& history, quint32 kind, const ClipItem& item) const
    {
        if (kind < 4) {
            history.togglePin(item.id);
            return {};
        }
        if (kind < 8) {
            const std::optional<ClipItem> removed = history.remove(item.id);
            return removed ? QList{*removed} : QList<ClipItem>();
        }
        if (kind == 8)
            return history.removeAll(item.isPinned);
        return kind < 13 ? history.restore(m_removed) : history.add(item);
    }
    quint32 random(quint32 below) { return m_random.bounded(below); }
    void nothing() {}
    void saveAsync()
    {
        m_store->saveAsync();
        m_isSavePending = true;
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
        m_store->flush();
        if (m_isSavePending)
            m_handedOver = m_model.items; // what came since as well
        kill();
    }
    void save()
    {
        QCOMPARE(m_store->save(), std::nullopt);
        m_handedOver = m_model.items;
    }
    void start()
    {
        m_isSavePending = false;
        m_model.cap = random(8) == 0 ? 0 : 4 + random(6);
        m_model.largest = 10 + random(30);
        m_store.reset(); // before the next one reads what it leaves
        m_store = openHistory(m_path, m_model.cap, random(2) == 0 ? never : 0, m_model.largest);
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
        item.furtherFiles = static_cast<int>(random(3));
        return item;
    }

    QString m_path;
    QRandomGenerator m_random;
    Model m_model;
    std::unique_ptr<JSONHistoryStore> m_store;
    bool m_isSavePending = false;
    QList<ClipItem> m_handedOver;
    QList<ClipItem> m_removed;
};

} // namespace

class JSONHistoryStoreTest final : public QObject
{
    Q_OBJECT

    HistoryFolder m_folder;

private slots:
    void init() { m_folder.renew(); }
    void cleanup() { m_folder.checkOpenFiles(); }
    void doesWhatTheModelDoes();
    void tornJournalIsAnEarlierState();
    void times();
    void forgetsPicturesThatAreGone();
};

void JSONHistoryStoreTest::doesWhatTheModelDoes()
{
    for (quint32 seed = 1; seed <= 30; ++seed) {
        m_folder.renew();
        Pair pair(m_folder.path(), seed);
        for (int step = 0; step < 200; ++step)
            QVERIFY2(pair.change() && pair.turn(), qPrintable(u"seed %1, step %2"_s.arg(seed).arg(step)));
    }
}

void JSONHistoryStoreTest::tornJournalIsAnEarlierState()
{
    QList<QList<ClipItem>> states{{}};
    {
        const auto store = openHistory(m_folder.path());
        for (int i = 0; i < 20; ++i) {
            static_cast<void>(store->add(entry(QString::number(i % 7), i, i % 5 == 0)));
            states.append(store->items());
            store->togglePin(store->items().constLast().id);
            states.append(store->items());
            store->saveAsync();
        }
    }
    QFile file(m_folder.journal());
    QVERIFY(file.open(QIODevice::ReadWrite));
    // A text copied again is not written again.
    QCOMPARE(file.readAll().count("\"content\""), sealingOfTests.isWanted ? 0 : 7);
    qsizetype earlier = states.size() - 1;
    QCOMPARE(m_folder.saved(), states.constLast());
    for (qint64 size = file.size() - 1; size >= 0; --size) {
        QVERIFY(file.resize(size));
        const QList<ClipItem> loaded = m_folder.saved();
        while (earlier > 0 && loaded != states[earlier])
            --earlier;
        QCOMPARE(loaded, states[earlier]);
    }
    QCOMPARE(earlier, 0);
}

void JSONHistoryStoreTest::times()
{
    JSONHistoryStore store(m_folder.path(), 500, never);
    const double now = store.timeOfNewEntry();
    QVERIFY(now >= 7e8);
    QVERIFY(store.add(entry(u"from a wrong clock"_s, now + 1e9)).isEmpty());
    QVERIFY(store.add(entry(u"new"_s, store.timeOfNewEntry())).isEmpty());
    QCOMPARE(store.items().constFirst().content, u"new"_s);
    QVERIFY(store.add(entry(u"no number"_s, qQNaN())).isEmpty());
    QVERIFY(store.save().has_value());
    QVERIFY(!QFile::exists(m_folder.path()));
}

void JSONHistoryStoreTest::forgetsPicturesThatAreGone()
{
    const QString there = m_folder.file(u"there.png"_s);
    QVERIFY(QFile(there).open(QIODevice::WriteOnly));
    QList<ClipItem> items{entry(u"/pinned.png"_s, 3, true, ClipType::image), entry(there, 1, false, ClipType::image),
                          entry(u"/gone.png"_s, 0, false, ClipType::image)};
    {
        JSONHistoryStore store(m_folder.path(), 500, never);
        QVERIFY(store.restore(items).isEmpty());
        store.saveAsync();
    }
    QCOMPARE(m_folder.saved(), items.first(2));
}

QTEST_GUILESS_MAIN(JSONHistoryStoreTest)
#include "JSONHistoryStoreTest.moc"
