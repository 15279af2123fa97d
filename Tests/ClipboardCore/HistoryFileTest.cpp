// What can go wrong with the history's files: something else stands in their place, or the folder or the disk refuses
// them.

#include "History/HistoryCoding.h"
#include "History/HistoryDisk.h"
#include "History/HistoryJournal.h"
#include "HistoryFolder.h"
#include "Support/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode : 0;
}

} // namespace

class HistoryFileTest final : public QObject
{
    Q_OBJECT

    [[nodiscard]] QString path() const { return m_folder.path(); }
    [[nodiscard]] QString journal() const { return m_folder.journal(); }
    [[nodiscard]] QList<ClipItem> saved() const { return m_folder.saved(); }
    [[nodiscard]] QStringList files() const { return QDir(m_folder.folder()).entryList(QDir::Files | QDir::Hidden); }

    HistoryFolder m_folder;

private slots:
    void init() { m_folder.renew(); }
    void cleanup() { m_folder.checkOpenFiles(); }
    void keepsWhatItCannotRead();
    void appliesTheDocumentedJournal();
    void journalFitsTheFileBeforeAndAfter();
    void leavesTwoPrivateFiles();
    void rewritesALargeFileSeldom();
    void triesAgainUntilTheFolderIsThere();
    void writesWhatAnotherFileLacks();
    void survivesAFullDisk();
    void writersTakeTurns();
    void readsWhatAnotherSaves();
    void somethingElseInPlaceOf();
    void aLargeJournalGoesIntoTheFile();
};

void HistoryFileTest::keepsWhatItCannotRead()
{
    for (const QByteArray& content : {""_ba, "history"_ba, R"([{"type":"audio"}])"_ba}) {
        m_folder.renew();
        for (const QString& kept : {path() + u".bad"_s, path() + u".bad.1"_s}) {
            write(path(), content);
            JSONHistoryStore store(path(), 500, 0);
            QVERIFY(store.items().isEmpty());
            QCOMPARE(store.unreadableFile(), kept);
            QCOMPARE(contentOf(path()), content); // not touched until something is saved
            QVERIFY(!QFile::exists(kept));
            QVERIFY(store.add(entry(u"a"_s)).isEmpty());
            store.saveAsync();
            QTRY_COMPARE(saved(), store.items());
            QCOMPARE(contentOf(kept), content);
        }
        const JSONHistoryStore later(path(), 500, never);
        QVERIFY(!later.unreadableFile() && !later.namesAllPictures());
    }
}

/// The example of docs/history-format.md, and every operation, as an earlier version may have left them.
void HistoryFileTest::appliesTheDocumentedJournal()
{
    write(path(), R"([{"id":"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF","type":"link","content":"https:\/\/example.org\/",)"
                  R"("sourceApp":"Firefox","bundleID":"firefox","createdAt":812345678.25,"isPinned":false}])");
    const auto id = [](const char* digit) { return QByteArray("00000000-0000-0000-0000-00000000000") + digit; };
    const auto put = [&](const char* digit) {
        return R"({"op":"put","time":1,"device":"x","entry":{"id":")" + id(digit) + R"(","type":"text","content":")" +
               digit + R"(","createdAt":)" + digit + ",\"isPinned\":false}}\n";
    };
    write(journal(), R"({"op":"file","size":182,"fingerprint":"9d74dbf7c90da733","missing":0})"
                     "\n"
                     R"({"op":"file","size":182,"fingerprint":"9d74dbf7c90da733","missing":-9999})"
                     "\n" +
                         put("1") + put("2") + "{\"op\":\"wrong\n" + put("3") + "{\"op\":\"of a later version\"}\n" +
                         R"({"op":"touch","time":1,"id":")" + id("1") + "\",\"createdAt\":9}\n" +
                         R"({"op":"pin","time":1,"id":"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF","isPinned":true})"
                         "\n" +
                         R"({"op":"remove","time":1,"ids":[")" + id("2") + "\"]}\n" +
                         R"({"op":"evict","time":1,"ids":[")" + id("3") + "\"]}\n" + put("4").chopped(1));
    const QList<ClipItem> items = saved();
    QCOMPARE(items.size(), 2);
    QVERIFY(items[0].isPinned);
    QCOMPARE(items[1].content, u"1"_s);
    QCOMPARE(items[1].createdAt, 9.0);
}

void HistoryFileTest::journalFitsTheFileBeforeAndAfter()
{
    using JournalCoding::FileState;
    constexpr FileState old{2, 0x1234};
    constexpr FileState next{300, 0xFEDC'BA98'7654'3210};
    const auto loaded = [this](const FileState& file) {
        QStringList contents;
        HistoryJournal journal(this->journal());
        for (const HistoryOperation& operation : journal.load(journal.read(), file))
            contents.append(std::get<HistoryOperation::Put>(operation.change).entry.content.toString());
        return contents;
    };
    HistoryJournal writer(journal());
    QVERIFY(writer.load({}, old).isEmpty());
    const auto append = [&](const QString& content) {
        QVERIFY(writer.append({{1, HistoryOperation::Put{entry(content)}}}));
    };
    append(u"a"_s);
    const qint64 end = writer.end();
    append(u"while the file is written"_s);
    writer.announce(next, end);
    append(u"before its name is the file's"_s);
    const QStringList missing{u"while the file is written"_s, u"before its name is the file's"_s};
    QCOMPARE(loaded(old), QStringList(u"a"_s) + missing);
    QCOMPARE(loaded(next), missing);
    QVERIFY(loaded({2, 0x1235}).isEmpty());

    writer.rebase(next, end);
    QVERIFY(loaded(old).isEmpty());
    QCOMPARE(loaded(next), missing);
    QVERIFY(!contentOf(journal()).contains(R"("content":"a")"));
    append(u"b"_s);
    QCOMPARE(loaded(next), missing + QStringList(u"b"_s));
}

void HistoryFileTest::leavesTwoPrivateFiles()
{
    write(path() + u".tmp"_s, QByteArray(100'000, 'x')); // of a process that was killed
    for (const QString& file : {path(), journal()}) {
        write(file, "[]");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    }
    const mode_t mask = umask(0);
    QCOMPARE(JSONHistoryStore(path(), 500, never).save(), std::nullopt);
    umask(mask);
    AtomicFile(path()).append("half a file");
    QCOMPARE(contentOf(path()), "[]");
    QCOMPARE(contentOf(journal()), QByteArray());
    QCOMPARE(files(), QStringList({u"history.journal"_s, u"history.json"_s}));
    for (const QString& file : {path(), journal()})
        QCOMPARE(modeOf(file) & 07777, mode_t(0600));
}

/// Beyond 1 MiB only when the journal has grown to a quarter of it.
void HistoryFileTest::rewritesALargeFileSeldom()
{
    HistoryDisk disk(path());
    QVERIFY(disk.load()->items().isEmpty());
    const QList<ClipItem> small{entry(QString(1 << 20, u'x'))};
    const QList<ClipItem> large{entry(QString((1 << 20) + 1, u'x'))};
    QCOMPARE(disk.save(large), std::nullopt);
    for (const bool isDue : {false, true}) {
        disk.append({{1, HistoryOperation::Put{entry(QString(200'000, u'y'))}}}, large);
        QCOMPARE(disk.isSaveDue(), isDue);
    }
    QCOMPARE(disk.save(), std::nullopt);
    QVERIFY(!disk.isForgettingDue());
    disk.append({{1, HistoryOperation::Remove{{small[0].id}}}}, small);
    QVERIFY(disk.isSaveDue() && disk.isForgettingDue());
}

void HistoryFileTest::triesAgainUntilTheFolderIsThere()
{
    const QString folder = m_folder.file(u"later"_s);
    write(folder, "in its place");
    JSONHistoryStore store(folder + u"/history.json"_s, 500, 0);
    QStringList reports;
    store.onSaveFailureChanged([&](const auto& failure) { reports.append(failure.value_or(u"works"_s)); });
    QVERIFY(store.add(entry(u"a"_s)).isEmpty());
    store.saveAsync();
    QTRY_COMPARE(reports.size(), 1);
    QVERIFY2(reports.first().contains(folder), qPrintable(reports.first()));
    QVERIFY(QFile::remove(folder));
    QTRY_COMPARE(reports.size(), 2);
    QCOMPARE(reports.last(), u"works"_s);
    QCOMPARE(HistoryCoding::decode(contentOf(folder + u"/history.json"_s)), store.items());
    QVERIFY(QDir(folder).removeRecursively());
    QVERIFY(store.add(entry(u"b"_s)).isEmpty());
    store.saveAsync();
    QTRY_COMPARE(HistoryCoding::decode(contentOf(folder + u"/history.json"_s)), store.items());
    QCOMPARE(modeOf(folder) & 07777, mode_t(0700));
}

/// What happens to the files of a history so large that its changes are left to the journal.
void HistoryFileTest::writesWhatAnotherFileLacks()
{
    const QString away = m_folder.folder() + u"-away"_s;
    const auto leave = qScopeGuard([&away] { QDir(away).removeRecursively(); });
    const auto moveFolder = [&] { QVERIFY(QDir().rename(m_folder.folder(), away)); };
    const QList<std::function<void()>> accidents{
        [&] { QVERIFY(QFile::remove(path())); },
        [&] { QVERIFY(QFile::remove(journal())); },
        [&] { write(path(), "[]"); },
        [&] { QVERIFY(QFile::rename(journal(), away)); },
        moveFolder,
        [&] {
            moveFolder();
            QVERIFY(QDir().mkdir(m_folder.folder()));
            write(path(), "[]");
            write(journal(), "{}\n");
        },
    };
    for (const auto& happen : accidents) {
        for (const bool isChanged : {true, false}) {
            QDir(away).removeRecursively();
            QFile::remove(away);
            m_folder.renew();
            JSONHistoryStore store(path(), 500, 0);
            QVERIFY(store.add(entry(QString(1'200'000, u'a'))).isEmpty());
            store.saveAsync();
            store.flush();
            QVERIFY(store.add(entry(u"b"_s)).isEmpty());
            store.saveAsync();
            store.flush();
            happen();
            if (isChanged) {
                QVERIFY(store.add(entry(u"c"_s)).isEmpty());
                store.saveAsync();
                QTRY_COMPARE(saved(), store.items());
            } else if (!QFile::exists(path())) {
                store.flush(); // at the end
                QCOMPARE(saved(), store.items());
            }
        }
    }
}

void HistoryFileTest::survivesAFullDisk()
{
    const QByteArray disk = QFile::encodeName(m_folder.folder());
    if (mount("tmpfs", disk.constData(), "tmpfs", 0, "size=600k") != 0)
        QSKIP("no file system can be mounted here");
    const auto unmount = qScopeGuard([&disk] { umount2(disk.constData(), MNT_DETACH); });
    JSONHistoryStore store(path(), 500, 0);
    QVERIFY(store.add(entry(QString(50'000, u'a'), 1)).isEmpty());
    QCOMPARE(store.save(), std::nullopt);
    const QByteArray old = contentOf(path());

    write(m_folder.file(u"other"_s), QByteArray(450'000, 'o'));
    QVERIFY(store.add(entry(QString(150'000, u'b'), 2)).isEmpty());
    QVERIFY(store.save().has_value());
    store.saveAsync();
    QVERIFY(store.add(entry(u"small enough for the journal"_s, 3)).isEmpty());
    store.saveAsync();
    QTRY_COMPARE(saved().size(), 2);
    QCOMPARE(contentOf(path()), old);

    // So only the journal can take what is missing. A try that is under way has its file there.
    const auto standInTheWay = [this] { return QDir(m_folder.folder()).mkdir(u"history.json.tmp"_s); };
    QVERIFY(QTest::qWaitFor(standInTheWay, Clipboard::Testing::patience));
    QVERIFY(QFile::remove(m_folder.file(u"other"_s)));
    store.togglePin(store.items()[0].id);
    store.saveAsync();
    QTRY_COMPARE(saved(), store.items());
    QCOMPARE(contentOf(path()), old);
}

void HistoryFileTest::writersTakeTurns()
{
    // Another process is writing: the temporary file, locked.
    const int other = open(QFile::encodeName(path() + u".tmp"_s).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    QCOMPARE(flock(other, LOCK_EX), 0);
    JSONHistoryStore store(path(), 500, 0);
    QVERIFY(store.save().has_value()); // does not wait for ever
    QVERIFY(store.add(entry(u"ours"_s)).isEmpty());
    store.saveAsync();
    QTRY_VERIFY(QFile(journal()).size() > 0);
    QCOMPARE(::write(other, "[]", 2), 2);
    QVERIFY(QFile::rename(path() + u".tmp"_s, path()));
    QCOMPARE(contentOf(path()), "[]");
    close(other);
    QTRY_COMPARE(HistoryCoding::decode(contentOf(path())), store.items());
}

/// As a program does that starts while the one before it ends.
void HistoryFileTest::readsWhatAnotherSaves()
{
    HistoryDisk writer(path());
    QVERIFY(writer.load().has_value());
    std::atomic<qsizetype> written = 0;
    std::jthread saving([&] {
        for (QList<ClipItem> items; items.size() < 300;) {
            items.prepend(entry(QString::number(items.size())));
            writer.append({{1, HistoryOperation::Put{items.first()}}}, items);
            written = items.size();
            static_cast<void>(writer.save());
        }
    });
    for (qsizetype least = 0; least < 300; least = written)
        QVERIFY(saved().size() >= least);
    saving.join();
    QCOMPARE(contentOf(journal()), ""); // each was saved
}

/// It neither holds the start, a save and the end up nor is anything outside the folder touched.
void HistoryFileTest::somethingElseInPlaceOf()
{
    const QTemporaryDir elsewhere;
    const QString victim = elsewhere.filePath(u"victim"_s);
    write(victim, "precious");
    for (const QString& words :
         {u"pipe history.json"_s, u"pipe history.journal"_s, u"pipe history.json.tmp"_s, u"folder history.json"_s,
          u"folder history.journal"_s, u"pipe history.files"_s, u"folder history.files"_s, u"link history.json"_s,
          u"link history.journal"_s, u"link history.json.tmp"_s}) {
        m_folder.renew();
        const QString place = m_folder.file(words.section(u' ', 1));
        if (words.startsWith(u"pipe"))
            QCOMPARE(mkfifo(QFile::encodeName(place).constData(), 0600), 0);
        else if (words.startsWith(u"folder"))
            QVERIFY(QDir().mkpath(place + u"/inside"_s));
        else
            QVERIFY(QFile::link(words.endsWith(u"tmp") ? victim : elsewhere.filePath(place.section(u'/', -1)), place));

        ClipItem item = entry(u"a"_s);
        item.furtherFiles = 1;
        {
            JSONHistoryStore store(path(), 500, never);
            QVERIFY(store.add(item).isEmpty());
            store.saveAsync();
            store.flush();
        }
        QVERIFY2(saved() == QList{item}, qPrintable(words));
        QCOMPARE(contentOf(victim), "precious");
        if (words == u"link history.json") { // is followed
            QVERIFY(S_ISLNK(modeOf(path())));
            QCOMPARE(files(), QStringList{u"history.json"_s});
        }
    }
}

/// Programs that are killed before they save leave ever more of it.
void HistoryFileTest::aLargeJournalGoesIntoTheFile()
{
    {
        JSONHistoryStore store(path(), 500, never);
        QVERIFY(store.add(entry(QString(1'200'000, u'a'))).isEmpty());
        store.saveAsync();
    }
    const JSONHistoryStore store(path(), 500, 0);
    QTRY_COMPARE(QFile(journal()).size(), 0);
    QCOMPARE(HistoryCoding::decode(contentOf(path())), store.items());
}

QTEST_GUILESS_MAIN(HistoryFileTest)
#include "HistoryFileTest.moc"
