#include "History/JSONHistoryStore.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

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
    void laterOfEqualTimesFirst();
    void mergesDuplicates();
    void mergesWhatIsCanonicallyEqual();
    void typesAreApart();
    void mergedSource_data();
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
    void flushWithoutRequestWritesNothing();
    void flushAfterASaveWritesAgain();
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
    for (const ClipItem& item :
         {entry(u"2"_s, 2), entry(u"p1"_s, 1, true), entry(u"3"_s, 3), entry(u"p2"_s, 2, true), entry(u"1"_s, 1)})
        QVERIFY(store.add(item).isEmpty());
    QCOMPARE(contents(store.items()), QStringList({u"p2"_s, u"p1"_s, u"3"_s, u"2"_s, u"1"_s}));
}

void JSONHistoryStoreTest::laterOfEqualTimesFirst()
{
    JSONHistoryStore store(path(), 500, never);
    for (const char16_t* name : {u"a", u"b", u"c"})
        QVERIFY(store.add(entry(QString::fromUtf16(name), 1)).isEmpty());
    QCOMPARE(contents(store.items()), QStringList({u"c"_s, u"b"_s, u"a"_s}));
}

void JSONHistoryStoreTest::mergesDuplicates()
{
    JSONHistoryStore store(path(), 500, never);
    const ClipItem first = entry(u"a"_s, 1);
    QVERIFY(store.add(first).isEmpty());
    QVERIFY(store.add(entry(u"b"_s, 2)).isEmpty());
    QVERIFY(store.add(entry(u"a"_s, 3)).isEmpty());
    QCOMPARE(contents(store.items()), QStringList({u"a"_s, u"b"_s}));
    QCOMPARE(store.items().front().id, first.id);
    QCOMPARE(store.items().front().createdAt, 3.0);
}

void JSONHistoryStoreTest::mergesWhatIsCanonicallyEqual()
{
    JSONHistoryStore store(path(), 500, never);
    const QString filler(5000, u'x');
    QVERIFY(store.add(entry(filler + u"\u00E9"_s + filler, 1)).isEmpty());
    QVERIFY(store.add(entry(filler + u"e\u0301"_s + filler, 2)).isEmpty());
    QVERIFY(store.add(entry(filler + u"e"_s + filler, 3)).isEmpty()); // the same at both ends
    QCOMPARE(contents(store.items()), QStringList({filler + u"e"_s + filler, filler + u"\u00E9"_s + filler}));
}

void JSONHistoryStoreTest::typesAreApart()
{
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.add(entry(u"a"_s, 1, false, ClipType::text)).isEmpty());
    QVERIFY(store.add(entry(u"a"_s, 2, false, ClipType::code)).isEmpty());
    QCOMPARE(store.items().size(), 2);
}

void JSONHistoryStoreTest::mergedSource_data()
{
    using Text = std::optional<QString>;
    QTest::addColumn<Text>("app");
    QTest::addColumn<Text>("bundle");
    QTest::addColumn<Text>("mergedApp");
    QTest::addColumn<Text>("mergedBundle");

    QTest::newRow("absent app keeps both") << Text() << Text(u"new"_s) << Text(u"App"_s) << Text(u"bundle"_s);
    QTest::newRow("present app replaces both") << Text(u"New"_s) << Text(u"new"_s) << Text(u"New"_s) << Text(u"new"_s);
    QTest::newRow("absent bundle clears the old one") << Text(u"New"_s) << Text() << Text(u"New"_s) << Text();
}

void JSONHistoryStoreTest::mergedSource()
{
    QFETCH(std::optional<QString>, app);
    QFETCH(std::optional<QString>, bundle);
    JSONHistoryStore store(path(), 500, never);
    ClipItem item = entry(u"a"_s, 1);
    item.sourceApp = u"App"_s;
    item.bundleID = u"bundle"_s;
    QVERIFY(store.add(item).isEmpty());
    item.sourceApp = app;
    item.bundleID = bundle;
    QVERIFY(store.add(item).isEmpty());
    QTEST(store.items().front().sourceApp, "mergedApp");
    QTEST(store.items().front().bundleID, "mergedBundle");
}

void JSONHistoryStoreTest::pinnedStaysPinned()
{
    JSONHistoryStore store(path(), 500, never);
    for (const ClipItem& item :
         {entry(u"p1"_s, 1, true), entry(u"p2"_s, 2, true), entry(u"x"_s, 9), entry(u"p1"_s, 3, false)})
        QVERIFY(store.add(item).isEmpty());
    QCOMPARE(contents(store.items()), QStringList({u"p1"_s, u"p2"_s, u"x"_s}));
    QVERIFY(store.items().front().isPinned);
}

void JSONHistoryStoreTest::capEvictsOldestUnpinned()
{
    JSONHistoryStore store(path(), 3, never);
    for (const ClipItem& item : {entry(u"1"_s, 1), entry(u"2"_s, 2), entry(u"p"_s, 0, true)})
        QVERIFY(store.add(item).isEmpty());
    QCOMPARE(contents(store.add(entry(u"3"_s, 3))), QStringList({u"1"_s}));
    QCOMPARE(contents(store.add(entry(u"0"_s, 0))), QStringList({u"0"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"p"_s, u"3"_s, u"2"_s}));
}

void JSONHistoryStoreTest::capSparesPinned()
{
    JSONHistoryStore store(path(), 2, never);
    for (int i = 0; i < 3; ++i)
        QVERIFY(store.add(entry(QString::number(i), i, true)).isEmpty());
    QCOMPARE(contents(store.add(entry(u"new"_s, 9))), QStringList({u"new"_s}));
    QCOMPARE(contents(store.items()), QStringList({u"2"_s, u"1"_s, u"0"_s}));
}

void JSONHistoryStoreTest::capIsNotAppliedOnLoading()
{
    {
        JSONHistoryStore store(path(), 500, never);
        for (int i = 0; i < 5; ++i)
            QVERIFY(store.add(entry(QString::number(i), i)).isEmpty());
        QCOMPARE(store.save(), std::nullopt);
    }
    JSONHistoryStore store(path(), 2, never);
    QCOMPARE(store.items().size(), 5);
    QCOMPARE(contents(store.add(entry(u"new"_s, 9))), QStringList({u"0"_s, u"1"_s, u"2"_s, u"3"_s}));
}

void JSONHistoryStoreTest::pinning()
{
    JSONHistoryStore store(path(), 2, never);
    const ClipItem older = entry(u"1"_s, 1);
    QVERIFY(store.add(older).isEmpty());
    QVERIFY(store.add(entry(u"2"_s, 2)).isEmpty());
    store.togglePin(older.id);
    QCOMPARE(contents(store.items()), QStringList({u"1"_s, u"2"_s}));
    QVERIFY(store.items().front().isPinned);
    store.togglePin(QUuid::createUuid());
    QCOMPARE(contents(store.items()), QStringList({u"1"_s, u"2"_s}));
    store.togglePin(older.id);
    QCOMPARE(contents(store.items()), QStringList({u"2"_s, u"1"_s}));
    QVERIFY(!store.items().back().isPinned);
}

void JSONHistoryStoreTest::removing()
{
    JSONHistoryStore store(path(), 500, never);
    const ClipItem item = entry(u"a"_s, 3);
    for (const ClipItem& added : {item, entry(u"b"_s, 2), entry(u"p"_s, 1, true), entry(u"c"_s, 1)})
        QVERIFY(store.add(added).isEmpty());
    QCOMPARE(store.remove(QUuid::createUuid()), std::nullopt);
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
    for (int i = 0; i < 10; ++i) {
        QVERIFY(store.add(entry(QString::number(i), i)).isEmpty());
        store.saveAsync();
    }
    // What comes after the last call is not part of what it saves.
    QVERIFY(store.add(entry(u"later"_s, 99)).isEmpty());
    QVERIFY(!QFile::exists(path()));
    QTRY_VERIFY(QFile::exists(path()));
    QCOMPARE(saved(), QStringList({u"9"_s, u"8"_s, u"7"_s, u"6"_s, u"5"_s, u"4"_s, u"3"_s, u"2"_s, u"1"_s, u"0"_s}));

    QVERIFY(QFile::remove(path()));
    QTest::qWait(500);
    QVERIFY(!QFile::exists(path()));
}

void JSONHistoryStoreTest::flushWithoutRequestWritesNothing()
{
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.add(entry(u"a"_s, 1)).isEmpty());
    store.flush();
    QVERIFY(!QFile::exists(path()));
}

void JSONHistoryStoreTest::flushAfterASaveWritesAgain()
{
    JSONHistoryStore store(path(), 500, 0.001);
    store.saveAsync();
    QTRY_VERIFY(QFile::exists(path()));
    QVERIFY(store.add(entry(u"a"_s, 1)).isEmpty());
    store.flush();
    QCOMPARE(saved(), QStringList({u"a"_s}));

    // Nothing was asked for since.
    QVERIFY(QFile::remove(path()));
    store.flush();
    QVERIFY(!QFile::exists(path()));
}

void JSONHistoryStoreTest::flushOvertakesThePendingSave()
{
    JSONHistoryStore store(path(), 500, 0.2);
    QVERIFY(store.add(entry(u"a"_s, 1)).isEmpty());
    store.saveAsync();
    QVERIFY(store.add(entry(u"b"_s, 2)).isEmpty());
    store.flush();
    QCOMPARE(saved(), QStringList({u"b"_s, u"a"_s}));
    QVERIFY(QFile::remove(path()));
    QTest::qWait(400);
    QVERIFY(!QFile::exists(path()));
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
