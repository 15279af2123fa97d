// What can go wrong with the history file: it is missing, damaged or unreadable, the folder or the disk refuses it, or
// the process is killed while writing.

#include "History/HistoryCoding.h"
#include "History/JSONHistoryStore.h"
#include "Support/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

constexpr double never = 3600;

ClipItem entry(const QString& content, double createdAt = 1)
{
    return {QUuid::createUuid(), ClipType::text, content, std::nullopt, std::nullopt, createdAt, false};
}

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

/// But for the journal.
QStringList filesIn(const QString& folder)
{
    QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    files.removeAll(u"history.journal"_s);
    return files;
}

bool isRoot()
{
    return geteuid() == 0;
}

/// A file system of its own, as small as asked for. Only root can have one.
class SmallDisk
{
public:
    explicit SmallDisk(const char* size)
    {
        const QByteArray options = QByteArrayLiteral("size=") + size;
        m_isMounted = mount("tmpfs", QFile::encodeName(path()).constData(), "tmpfs", 0, options.constData()) == 0;
    }
    ~SmallDisk()
    {
        if (m_isMounted)
            umount2(QFile::encodeName(path()).constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(SmallDisk)

    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    [[nodiscard]] QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    bool m_isMounted = false;
};

/// What the child process of the kill test does: saves ever other histories until it is killed.
int saveForEver(const QString& path)
{
    JSONHistoryStore store(path, 500, 0);
    for (int round = 0;; ++round) {
        static_cast<void>(store.removeAll(false));
        for (int i = 0; i < 5 + round % 40; ++i)
            static_cast<void>(
                store.add(entry(QString(1000 + 977 * i, QChar(u'a' + round % 26)) + QString::number(i), i)));
        static_cast<void>(store.save());
        store.saveAsync();
        puts("saved");
        fflush(stdout);
    }
}

} // namespace

class HistoryFileTest final : public QObject
{
    Q_OBJECT

    [[nodiscard]] QString path() const { return m_folder->filePath(u"history.json"_s); }

    [[nodiscard]] QList<ClipItem> saved() const { return JSONHistoryStore(path(), 500, never).items(); }
    [[nodiscard]] QStringList files() const { return filesIn(m_folder->path()); }
    /// Another process is writing: the temporary file, locked.
    [[nodiscard]] int openAsAnotherWriter() const
    {
        const int file = open(QFile::encodeName(path() + u".tmp"_s).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        return flock(file, LOCK_EX) == 0 ? file : -1;
    }

    std::optional<QTemporaryDir> m_folder;

private slots:
    void init();
    void startsEmptyWithout_data();
    void startsEmptyWithout();
    void fileIsPrivate();
    void leavesNothingBehind();
    void unreadableFile();
    void unwritableFolder();
    void savesOnceTheMissingFolderIsThere();
    void fullDiskKeepsTheOldFile();
    void writersTakeTurns();
    void doesNotWaitForEver();
    void followsNoLinkInPlaceOfTheTemporaryFile();
    void isWholeWheneverKilled();
};

void HistoryFileTest::init()
{
    m_folder.emplace();
    QVERIFY(m_folder->isValid());
}

void HistoryFileTest::startsEmptyWithout_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("content") << QByteArray();
    QTest::newRow("JSON") << "history"_ba;
    QTest::newRow("a valid element") << R"([{"type":"audio"}])"_ba;
    QTest::newRow("zero bytes") << QByteArray(4096, '\0');
}

void HistoryFileTest::startsEmptyWithout()
{
    QFETCH(QByteArray, content);
    write(path(), content);
    QVERIFY(JSONHistoryStore(path(), 500, never).items().isEmpty());
    // Not touched until something is saved.
    QCOMPARE(contentOf(path()), content);
    QCOMPARE(files(), QStringList{u"history.json"_s});

    JSONHistoryStore store(path(), 500, 0);
    QVERIFY(store.add(entry(u"a"_s)).isEmpty());
    store.saveAsync();
    QTRY_COMPARE(saved(), store.items());
}

void HistoryFileTest::fileIsPrivate()
{
    write(path(), "[]");
    QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    const mode_t mask = umask(0);
    QCOMPARE(JSONHistoryStore(path(), 500, never).save(), std::nullopt);
    umask(mask);
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0600));
}

void HistoryFileTest::leavesNothingBehind()
{
    write(path() + u".tmp"_s, QByteArray(100'000, 'x')); // of a process that was killed
    QCOMPARE(JSONHistoryStore(path(), 500, never).save(), std::nullopt);
    QCOMPARE(contentOf(path()), "[]");
    {
        AtomicFile dropped(path());
        dropped.append("half a file");
    }
    QCOMPARE(contentOf(path()), "[]");
    QCOMPARE(files(), QStringList{u"history.json"_s});
}

void HistoryFileTest::unreadableFile()
{
    if (isRoot())
        QSKIP("root reads everything");
    write(path(), "[]");
    QVERIFY(QFile::setPermissions(path(), {}));
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.items().isEmpty());
    QCOMPARE(store.save(), std::nullopt);
    QCOMPARE(contentOf(path()), "[]");
}

void HistoryFileTest::unwritableFolder()
{
    if (isRoot())
        QSKIP("root writes everywhere");
    write(path(), "[]");
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    JSONHistoryStore store(path(), 500, never);
    QVERIFY(store.add(entry(u"a"_s)).isEmpty());
    const auto failure = store.save();
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(failure.has_value());
    QCOMPARE(contentOf(path()), "[]");
    QCOMPARE(store.save(), std::nullopt);
}

void HistoryFileTest::savesOnceTheMissingFolderIsThere()
{
    const QString folder = m_folder->filePath(u"later"_s);
    JSONHistoryStore store(folder + u"/history.json"_s, 500, 0);
    QVERIFY(store.add(entry(u"a"_s)).isEmpty());
    store.saveAsync();
    store.flush();
    const auto failure = store.save();
    QVERIFY(failure.has_value());
    QVERIFY2(failure->contains(folder), qPrintable(*failure));
    QVERIFY(QDir().mkpath(folder));
    store.saveAsync();
    QTRY_COMPARE(JSONHistoryStore(folder + u"/history.json"_s, 500, never).items(), store.items());
}

void HistoryFileTest::fullDiskKeepsTheOldFile()
{
    if (!isRoot())
        QSKIP("only root can make a small disk");
    const SmallDisk disk("256k");
    if (!disk.isMounted())
        QSKIP("no file system can be mounted here");
    const QString file = disk.path() + u"/history.json"_s;
    JSONHistoryStore store(file, 500, never);
    QVERIFY(store.add(entry(QString(50'000, u'a'), 1)).isEmpty());
    QCOMPARE(store.save(), std::nullopt);
    const QByteArray old = contentOf(file);

    const ClipItem tooMuch = entry(QString(300'000, u'b'), 2);
    QVERIFY(store.add(tooMuch).isEmpty());
    QVERIFY(store.save().has_value());
    QCOMPARE(contentOf(file), old);
    QCOMPARE(filesIn(disk.path()), QStringList({u"history.json"_s}));

    QVERIFY(store.remove(tooMuch.id).has_value());
    QVERIFY(store.add(entry(u"fits"_s, 3)).isEmpty());
    QCOMPARE(store.save(), std::nullopt);
    QCOMPARE(JSONHistoryStore(file, 500, never).items(), store.items());
}

void HistoryFileTest::writersTakeTurns()
{
    const int other = openAsAnotherWriter();
    JSONHistoryStore store(path(), 500, 0);
    QVERIFY(store.add(entry(u"ours"_s)).isEmpty());
    store.saveAsync();
    QTest::qWait(100);
    QCOMPARE(::write(other, "[]", 2), 2);
    QVERIFY(QFile::rename(path() + u".tmp"_s, path()));
    QCOMPARE(contentOf(path()), "[]");
    close(other);
    QTRY_COMPARE(saved(), store.items());
}

void HistoryFileTest::doesNotWaitForEver()
{
    const int stopped = openAsAnotherWriter();
    QVERIFY(JSONHistoryStore(path(), 500, never).save().has_value());
    QVERIFY(QFile::exists(path() + u".tmp"_s)); // the other one's
    close(stopped);
}

void HistoryFileTest::followsNoLinkInPlaceOfTheTemporaryFile()
{
    const QString victim = m_folder->filePath(u"victim"_s);
    write(victim, "precious");
    QVERIFY(QFile::link(victim, path() + u".tmp"_s));
    QCOMPARE(JSONHistoryStore(path(), 500, never).save(), std::nullopt);
    QCOMPARE(contentOf(path()), "[]");
    QCOMPARE(contentOf(victim), "precious");
}

void HistoryFileTest::isWholeWheneverKilled()
{
    QByteArray previous;
    int changes = 0;
    for (int round = 0; round < 40; ++round) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {u"--save-for-ever"_s, path()});
        QVERIFY(child.waitForReadyRead(30'000));
        QTest::qWait(round % 8); // anywhere in some hundred saves, all rounds together
        QCOMPARE(::kill(static_cast<pid_t>(child.processId()), SIGKILL), 0);
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);

        const QByteArray content = contentOf(path());
        const auto items = HistoryCoding::decode(content);
        QVERIFY(items.has_value());
        QVERIFY(items->size() >= 5);
        changes += int(content != previous);
        previous = content;
    }
    QVERIFY(changes > 1);
    // What the killed ones left is at most one file, and the next save makes use of it.
    QCOMPARE(JSONHistoryStore(path(), 500, never).save(), std::nullopt);
    QCOMPARE(files(), QStringList{u"history.json"_s});
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == u"--save-for-ever"_s)
        return saveForEver(arguments[2]);
    HistoryFileTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "HistoryFileTest.moc"
