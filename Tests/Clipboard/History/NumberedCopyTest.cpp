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

} // namespace

class NumberedCopyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.emplace();
        for (const QString& name : {u"source"_s, u"desktop"_s})
            QVERIFY(QDir(m_folder->path()).mkdir(name));
    }
    void copiesUnderFreeNames();
    void replacesNothingWhenManyCopyAtOnce();
    void failures();
    void leavesNothingOnAFullDisk();

private:
    [[nodiscard]] QString source(const QString& name) const { return m_folder->filePath(u"source/"_s + name); }
    [[nodiscard]] QString desktop() const { return m_folder->filePath(u"desktop"_s); }
    [[nodiscard]] QStringList copies() const
    {
        return QDir(desktop()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    std::optional<QTemporaryDir> m_folder;
};

void NumberedCopyTest::copiesUnderFreeNames()
{
    // A link that leads nowhere is in the way as well, and is not followed.
    QVERIFY(QFile::link(m_folder->filePath(u"elsewhere"_s), desktop() + u"/linked"_s));
    write(source(u"linked"_s), QByteArray("0123456789abcdef").repeated(100'000) + "odd");
    QVERIFY(QFile::setPermissions(source(u"linked"_s), QFile::ReadOwner | QFile::WriteOwner));
    const QString copy = desktop() + u"/linked 2"_s;
    QCOMPARE(copyNumbered(source(u"linked"_s), desktop()), copy);
    QVERIFY(read(copy) == read(source(u"linked"_s)));
    QVERIFY(!(QFile::permissions(copy) & (QFile::ReadGroup | QFile::ReadOther)));
    QVERIFY(!QFile::exists(m_folder->filePath(u"elsewhere"_s)));

    const QList<QStringList> names{
        {u"shot.png"_s, u"shot 2.png"_s, u"shot 3.png"_s},
        {u".name"_s, u".name 2"_s},
        {u"a.tar.gz"_s, u"a.tar 2.gz"_s},
    };
    for (const QStringList& expected : names) {
        for (const QString& name : expected) {
            write(source(expected[0]), name.toUtf8());
            QCOMPARE(copyNumbered(source(expected[0]), desktop()), desktop() + u'/' + name);
        }
        for (const QString& name : expected) // none has been replaced
            QCOMPARE(read(desktop() + u'/' + name), name.toUtf8());
    }
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

void NumberedCopyTest::failures()
{
    write(source(u"file"_s), "new");
    QCOMPARE(::mkfifo(QFile::encodeName(source(u"pipe"_s)).constData(), S_IRUSR | S_IWUSR), 0);
    for (const QString& name : {u"gone"_s, QString(), u"pipe"_s})
        QVERIFY2(!copyNumbered(source(name), desktop()), qPrintable(name));
    QVERIFY(!copyNumbered(source(u"file"_s), desktop() + u"/none"_s));
    QCOMPARE(copies(), QStringList());
}

void NumberedCopyTest::leavesNothingOnAFullDisk()
{
    write(source(u"a"_s), QByteArray(1'000'000, 'x'));
    // No file of this process may grow beyond this: writing ends as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{500'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    const auto copy = copyNumbered(source(u"a"_s), desktop());
    setrlimit(RLIMIT_FSIZE, &before);
    QCOMPARE(copy, std::nullopt);
    QCOMPARE(copies(), QStringList());
}

QTEST_GUILESS_MAIN(NumberedCopyTest)

#include "NumberedCopyTest.moc"
