#include "NumberedCopy.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// No file of this process may grow beyond this while it lives: writing ends as on a full disk.
class FullDisk final
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
};

} // namespace

class NumberedCopyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void names_data();
    void names();
    void copiesContentAndMode();
    void replacesNothingWhenManyCopyAtOnce();
    void failures_data();
    void failures();
    void leavesNothingOnAFullDisk();

private:
    [[nodiscard]] QString source(const QString& name) const { return m_folder->filePath(u"source/"_s + name); }
    [[nodiscard]] QString desktop() const { return m_folder->filePath(u"desktop"_s); }
    [[nodiscard]] QStringList copies() const
    {
        return QDir(desktop()).entryList(QDir::NoDotAndDotDot | QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void NumberedCopyTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir(m_folder->path()).mkdir(u"source"_s);
    QDir(m_folder->path()).mkdir(u"desktop"_s);
}

void NumberedCopyTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("expected");

    QTest::newRow("free") << u"shot.png"_s << QStringList{} << u"shot.png"_s;
    QTest::newRow("taken") << u"shot.png"_s << QStringList{u"shot.png"_s} << u"shot 2.png"_s;
    QTest::newRow("taken twice") << u"shot.png"_s << QStringList{u"shot.png"_s, u"shot 2.png"_s} << u"shot 3.png"_s;
    QTest::newRow("gap") << u"shot.png"_s << QStringList{u"shot.png"_s, u"shot 3.png"_s} << u"shot 2.png"_s;
    QTest::newRow("no extension") << u"name"_s << QStringList{u"name"_s} << u"name 2"_s;
    QTest::newRow("hidden") << u".name"_s << QStringList{u".name"_s} << u".name 2"_s;
    QTest::newRow("two extensions") << u"a.tar.gz"_s << QStringList{u"a.tar.gz"_s} << u"a.tar 2.gz"_s;
    QTest::newRow("full stop at the end") << u"name."_s << QStringList{u"name."_s} << u"name. 2"_s;
}

void NumberedCopyTest::names()
{
    QFETCH(const QString, name);
    QFETCH(const QStringList, taken);
    QFETCH(const QString, expected);

    write(source(name), "new");
    for (const QString& other : taken)
        write(desktop() + u'/' + other, "old");
    QCOMPARE(copyNumbered(source(name), desktop()), desktop() + u'/' + expected);
    QCOMPARE(read(desktop() + u'/' + expected), "new");
    for (const QString& other : taken)
        QCOMPARE(read(desktop() + u'/' + other), "old");
}

void NumberedCopyTest::copiesContentAndMode()
{
    const QByteArray content = QByteArray("0123456789abcdef").repeated(100'000) + "odd";
    write(source(u"a"_s), content);
    QVERIFY(QFile::setPermissions(source(u"a"_s), QFile::ReadOwner | QFile::WriteOwner));
    // A link that leads nowhere is in the way as well, and is not followed.
    QVERIFY(QFile::link(m_folder->filePath(u"elsewhere"_s), desktop() + u"/a"_s));

    const QString copy = desktop() + u"/a 2"_s;
    QCOMPARE(copyNumbered(source(u"a"_s), desktop()), copy);
    QVERIFY(read(copy) == content);
    QVERIFY(!(QFile::permissions(copy) & (QFile::ReadGroup | QFile::ReadOther)));
    QVERIFY(!QFile::exists(m_folder->filePath(u"elsewhere"_s)));
}

void NumberedCopyTest::replacesNothingWhenManyCopyAtOnce()
{
    constexpr int threads = 8;
    constexpr int copiesEach = 25;
    QThreadPool pool;
    pool.setMaxThreadCount(threads);
    for (int thread = 0; thread < threads; ++thread) {
        const QString folder = source(QString::number(thread));
        QDir().mkpath(folder);
        write(folder + u"/shot.png"_s, QByteArray::number(thread));
        pool.start([path = folder + u"/shot.png"_s, target = desktop()] {
            for (int i = 0; i < copiesEach; ++i)
                (void)copyNumbered(path, target);
        });
    }
    pool.waitForDone();

    QMap<QByteArray, int> counts;
    for (const QString& name : copies())
        ++counts[read(desktop() + u'/' + name)];
    QCOMPARE(counts.size(), threads);
    QCOMPARE(counts.values(), QList<int>(threads, copiesEach));
}

void NumberedCopyTest::failures_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");

    QTest::newRow("deleted source") << u"source/gone"_s << u"desktop"_s;
    QTest::newRow("folder as source") << u"source"_s << u"desktop"_s;
    QTest::newRow("pipe as source") << u"source/pipe"_s << u"desktop"_s;
    QTest::newRow("no such folder") << u"source/file"_s << u"desktop/none"_s;
    QTest::newRow("a file for a folder") << u"source/file"_s << u"source/file"_s;
}

void NumberedCopyTest::failures()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);

    write(source(u"file"_s), "new");
    QCOMPARE(::mkfifo(QFile::encodeName(source(u"pipe"_s)).constData(), S_IRUSR | S_IWUSR), 0);
    QCOMPARE(copyNumbered(m_folder->filePath(from), m_folder->filePath(to)), std::nullopt);
    QCOMPARE(copies(), QStringList());
}

void NumberedCopyTest::leavesNothingOnAFullDisk()
{
    write(source(u"a"_s), QByteArray(1'000'000, 'x'));
    {
        const FullDisk disk(500'000);
        QCOMPARE(copyNumbered(source(u"a"_s), desktop()), std::nullopt);
    }
    QCOMPARE(copies(), QStringList());
}

QTEST_GUILESS_MAIN(NumberedCopyTest)

#include "NumberedCopyTest.moc"
