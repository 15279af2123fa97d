#include "History/JSONHistoryStore.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

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

/// Adds what makes nothing else leave.
void add(JSONHistoryStore& store, const QList<ClipItem>& items)
{
    for (const ClipItem& item : items)
        QVERIFY(store.add(item).isEmpty());
}

} // namespace

class JSONHistoryStoreTest final : public QObject
{
    Q_OBJECT

    [[nodiscard]] QString path() const { return m_folder->filePath(u"history.json"_s); }
    [[nodiscard]] QStringList saved() const { return contents(JSONHistoryStore(path(), 500, never).items()); }

    std::optional<QTemporaryDir> m_folder;

private slots:
    void init();
    void pinnedThenNewestFirst();
    void mergesDuplicates();
    void mergesWhatIsCanonicallyEqual();
    void mergedSource();
    void pinnedStaysPinned();
    void capEvictsOldestUnpinned();
    void capSparesPinned();
    void capIsNotAppliedOnLoading();
    void pinning();
    void removing();
    void duplicatesAreFoundAfterEveryChange();
    void loadsInOrder();
    void savesOnceForABurst();
    void flushOvertakesThePendingSave();
    void destructionDropsThePendingSave();
    void refusesTimesThatAreNoNumbers();
};

void JSONHistoryStoreTest::init()
{
    m_folder.emplace();
}

void JSONHistoryStoreTest::pinnedThenNewestFirst()
{
    JSONHistoryStore store(path(), 500, never);
    add(store, {entry(u"2"_s, 2), entry(u"p1"_s, 1, true), entry(u"3"_s, 3), entry(u"p2"_s, 2, true), entry(u"1"_s, 1),
                entry(u"later of equal times"_s, 1)});
    QCOMPARE(contents(store.items()),
             QStringList({u"p2"_s, u"p1"_s, u"3"_s, u"2"_s, u"later of equal times"_s, u"1"_s}));
}

void JSONHistoryStoreTest::mergesDuplicates()
{
    JSONHistoryStore store(path(), 500, never);
    const ClipItem first = entry(u"a"_s, 1);
    add(store, {first, entry(u"b"_s, 2), entry(u"a"_s, 3), entry(u"a"_s, 0, false, ClipType::code)}); // types are apart
    QCOMPARE(contents(store.items()), QStringList({u"a"_s, u"b"_s, u"a"_s}));
    QCOMPARE(store.items().front().id, first.id);
    QCOMPARE(store.items().front().createdAt, 3.0);
}

void JSONHistoryStoreTest::mergesWhatIsCanonicallyEqual()
{
    JSONHistoryStore store(path(), 500, never);
    const QString filler(5000, u'x');
    add(store, {entry(filler + u"\u00E9"_s + filler, 1), entry(filler + u"e\u0301"_s + filler, 2),
                entry(filler + u"e"_s + filler, 3)}); // the same at both ends
    QCOMPARE(contents(store.items()), QStringList({filler + u"e"_s + filler, filler + u"\u00E9"_s + filler}));
}

void JSONHistoryStoreTest::mergedSource()
{
    using Source = std::pair<std::optional<QString>, std::optional<QString>>; // application and its identifier
    const auto merged = [this](const Source& later) {
        JSONHistoryStore store(path(), 500, never);
        ClipItem item = entry(u"a"_s, 1);
        for (const auto& [app, bundle] : {Source(u"App"_s, u"bundle"_s), later}) {
            item.sourceApp = app;
            item.bundleID = bundle;
            add(store, {item});
        }
        return Source(store.items().front().sourceApp, store.items().front().bundleID);
    };
    QVERIFY(merged({std::nullopt, u"new"_s}) == Source(u"App"_s, u"bundle"_s)); // no application: both stay
    QVERIFY(merged({u"New"_s, u"new"_s}) == Source(u"New"_s, u"new"_s));
    QVERIFY(merged({u"New"_s, std::nullopt}) == Source(u"New"_s, std::nullopt));
}

void JSONHistoryStoreTest::pinnedStaysPinned()
{
    JSONHistoryStore store(path(), 500, never);
    add(store, {entry(u"p1"_s, 1, true), entry(u"p2"_s, 2, true), entry(u"x"_s, 9), entry(u"p1"_s, 3, false)});
    QCOMPARE(contents(store.items()), QStringList({u"p1"_s, u"p2"_s, u"x"_s}));
    QVERIFY(store.items().front().isPinned);
}

void JSONHistoryStoreTest::capEvictsOldestUnpinned()
{
    JSONHistoryStore store(path(), 3, never);
    add(store, {entry(u"1"_s, 1), entry(u"2"_s, 2), entry(u"p"_s, 0, true)});
    QCOMPARE(contents(store.add(entry(u"3"_s, 3))), QStringList({u"1"_s}));
    QCOMPARE(contents(store.add(entry(u"0"_s, 0))), QStringList({u"0"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"p"_s, u"3"_s, u"2"_s}));
}

void JSONHistoryStoreTest::capSparesPinned()
{
    JSONHistoryStore store(path(), 2, never);
    add(store, {entry(u"0"_s, 0, true), entry(u"1"_s, 1, true), entry(u"2"_s, 2, true)});
    QCOMPARE(contents(store.add(entry(u"new"_s, 9))), QStringList({u"new"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"2"_s, u"1"_s, u"0"_s}));
}

void JSONHistoryStoreTest::capIsNotAppliedOnLoading()
{
    {
        JSONHistoryStore store(path(), 500, never);
        add(store, {entry(u"0"_s, 0), entry(u"1"_s, 1), entry(u"2"_s, 2)});
        QCOMPARE(store.save(), std::nullopt);
    }
    JSONHistoryStore store(path(), 2, never);
    QCOMPARE(store.items().size(), 3);
    QCOMPARE(contents(store.add(entry(u"new"_s, 9))), QStringList({u"0"_s, u"1"_s}));
}

void JSONHistoryStoreTest::pinning()
{
    JSONHistoryStore store(path(), 2, never);
    const ClipItem older = entry(u"1"_s, 1);
    add(store, {older, entry(u"2"_s, 2)});
    store.togglePin(older.id);
    store.togglePin(QUuid::createUuid());
    QVERIFY(store.items().front().isPinned);
    QCOMPARE(contents(store.items()), QStringList({u"1"_s, u"2"_s}));
    store.togglePin(older.id);
    QCOMPARE(contents(store.items()), QStringList({u"2"_s, u"1"_s}));
    QVERIFY(!store.items().back().isPinned);
}

void JSONHistoryStoreTest::removing()
{
    JSONHistoryStore store(path(), 500, never);
    const ClipItem item = entry(u"a"_s, 3);
    add(store, {item, entry(u"b"_s, 2), entry(u"p"_s, 1, true), entry(u"c"_s, 1)});
    QCOMPARE(store.remove(item.id), item);
    QCOMPARE(store.remove(item.id), std::nullopt);
    QCOMPARE(contents(store.removeAll(true)), QStringList({u"b"_s, u"c"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"p"_s}));
    QCOMPARE(contents(store.removeAll(false)), QStringList({u"p"_s}));
    QVERIFY(store.items().isEmpty());
}

void JSONHistoryStoreTest::duplicatesAreFoundAfterEveryChange()
{
    // Whatever moved the entries around, each is still recognised.
    JSONHistoryStore store(path(), 50, never);
    for (qsizetype i = 0; i < 200; ++i) {
        static_cast<void>(store.add(entry(QString::number(i % 60), double(i), i % 7 == 0)));
        if (i % 3 == 0)
            store.togglePin(store.items()[i % store.items().size()].id);
        if (i % 11 == 0)
            QVERIFY(store.remove(store.items()[i % store.items().size()].id).has_value());
        if (i % 97 == 96)
            QVERIFY(!store.removeAll(true).isEmpty());
        if (store.items().isEmpty())
            continue;
        const qsizetype count = store.items().size();
        const ClipItem& known = store.items()[(i * 5) % count];
        static_cast<void>(store.add(entry(known.content.toString(), known.createdAt)));
        QStringList all = contents(store.items());
        QCOMPARE(all.size(), count);
        QCOMPARE(all.removeDuplicates(), 0);
    }
}

void JSONHistoryStoreTest::loadsInOrder()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto json = [](const char* name, double time, bool isPinned) {
        return u"{\"id\":\"%1\",\"type\":\"text\",\"content\":\"%2\",\"createdAt\":%3,\"isPinned\":%4}"_s
            .arg(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(), QLatin1String(name))
            .arg(time)
            .arg(isPinned ? u"true"_s : u"false"_s)
            .toUtf8();
    };
    file.write('[' + json("a", 1, false) + ',' + json("b", 2, false) + ',' + json("c", 1, true) + ',' +
               json("d", 1, false) + ',' + json("a", 1, false) + ']');
    file.close();
    QCOMPARE(saved(), QStringList({u"c"_s, u"b"_s, u"a"_s, u"d"_s, u"a"_s}));
}

void JSONHistoryStoreTest::savesOnceForABurst()
{
    JSONHistoryStore store(path(), 500, 0.3);
    for (const ClipItem& item : {entry(u"0"_s, 0), entry(u"1"_s, 1), entry(u"2"_s, 2)}) {
        add(store, {item});
        store.saveAsync();
    }
    add(store, {entry(u"later"_s, 99)}); // than the last call: no part of what it saves
    QVERIFY(!QFile::exists(path()));
    QTRY_VERIFY(QFile::exists(path()));
    QCOMPARE(saved(), QStringList({u"2"_s, u"1"_s, u"0"_s}));

    QVERIFY(QFile::remove(path()));
    QTest::qWait(500);
    QVERIFY(!QFile::exists(path()));
}

void JSONHistoryStoreTest::flushOvertakesThePendingSave()
{
    JSONHistoryStore store(path(), 500, 0.2);
    add(store, {entry(u"a"_s, 1)});
    store.flush();
    QVERIFY(!QFile::exists(path())); // nothing was asked for
    store.saveAsync();
    add(store, {entry(u"b"_s, 2)});
    store.flush();
    QCOMPARE(saved(), QStringList({u"b"_s, u"a"_s}));

    QVERIFY(QFile::remove(path()));
    store.flush();
    QTest::qWait(400);
    QVERIFY(!QFile::exists(path())); // by neither the flush nor the save that it overtook
    store.saveAsync();
    QTRY_VERIFY(QFile::exists(path()));
    add(store, {entry(u"c"_s, 3)});
    store.flush(); // after the save as well
    QCOMPARE(saved(), QStringList({u"c"_s, u"b"_s, u"a"_s}));
}

void JSONHistoryStoreTest::destructionDropsThePendingSave()
{
    {
        JSONHistoryStore store(path(), 500, never);
        store.saveAsync();
    }
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
