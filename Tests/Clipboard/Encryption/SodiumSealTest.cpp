// Whatever is done to a byte of what is sealed, nothing wrong is read from it.

#include "SodiumSeal.h"
#include "HistoryFolder.h"
#include "Rows.h"

#include <QBuffer>
#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Clipboard::SodiumSeal;

namespace {

std::shared_ptr<const SodiumSeal> sealWith(char byte)
{
    return SodiumSeal::make(QByteArray(SodiumSeal::keySize, byte));
}

QByteArray sealedFile(const QByteArray& content, qsizetype piece)
{
    QByteArray sealed;
    const auto stream = sealWith('k')->sealing("context", [&sealed](QByteArrayView bytes) { sealed += bytes; });
    for (qsizetype at = 0; at < content.size(); at += piece)
        stream->append(content.mid(at, piece));
    stream->finish();
    return sealed;
}

std::optional<QByteArray> read(const QByteArray& sealed, char key = 'k', const QByteArray& context = "context")
{
    auto file = std::make_unique<QBuffer>();
    file->setData(sealed);
    file->open(QIODevice::ReadOnly);
    return opened(*sealWith(key), std::move(file), context);
}

void isReadBackOrRefused(const char* /*name*/, qsizetype size, qsizetype piece, qsizetype step)
{
    const QByteArray content = QByteArray("secret words ").repeated(size / 13 + 1).first(size);
    const QByteArray sealed = sealedFile(content, piece);
    QVERIFY(isSealed(sealed) && !sealed.contains("words"));
    QVERIFY(sealed != sealedFile(content, piece));
    QCOMPARE(read(sealed), content);
    QVERIFY(!read(sealed, 'x') && !read(sealed, 'k', "another") && !read(sealed + ' '));
    for (qsizetype at = 0; at < sealed.size(); at += step) {
        QByteArray changed = sealed;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        QVERIFY2(!read(changed), qPrintable(QString::number(at)));
        QVERIFY2(!read(sealed.first(at)), qPrintable(QString::number(at)));
    }
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One entry in the file, three in the journal.
void writeHistory(const HistoryFolder& folder)
{
    {
        const auto store = openHistory(folder.path());
        static_cast<void>(store->add(entry(u"in the file"_s)));
        QCOMPARE(store->save(), std::nullopt);
    }
    const auto store = openHistory(folder.path());
    for (const QString& text : {u"1st"_s, u"2nd"_s, u"3rd"_s}) {
        static_cast<void>(store->add(entry(text, 2)));
        store->saveAsync();
    }
}

} // namespace

class SodiumSealTest final : public QObject
{
    Q_OBJECT

    [[nodiscard]] bool isNoticedIn(const QString& path, const QByteArray& bytes) const
    {
        write(path, bytes);
        return openHistory(m_folder.path())->unreadableFile().has_value();
    }
    void eachByteOf(const char* name, const QString& path, qsizetype notTheLast);

    HistoryFolder m_folder;

private slots:
    void initTestCase() { sealingOfTests = {sealWith('k'), true}; }
    void init() { m_folder.renew(); }
    void files();
    void records();
    void aDamagedHistoryIsKept();
    void linesStayInTheirPlaces();
    void isLeftAloneWithoutItsKey();
};

void SodiumSealTest::files()
{
    checkRows(isReadBackOrRefused, {{"empty", 0, 1, 1},
                                    {"short", 100, 1, 1},
                                    {"a chunk", 65536, 1000, 997},
                                    {"one more byte", 65537, 65537, 997},
                                    {"many chunks", 200'000, 70'000, 9973}});
}

void SodiumSealTest::records()
{
    const auto seal = sealWith('k');
    const QByteArray sealed = seal->sealRecord("a line", "place");
    QCOMPARE(seal->openRecord(sealed, "place"), QByteArray("a line"));
    QVERIFY(!seal->openRecord(sealed, "another place") && !sealWith('x')->openRecord(sealed, "place"));
    for (qsizetype at = 0; at < sealed.size(); ++at) {
        QByteArray changed = sealed;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        QVERIFY(!seal->openRecord(changed, "place") && !seal->openRecord(sealed.first(at), "place"));
    }
    QVERIFY(!SodiumSeal::make("too short") && SodiumSeal::newKey() != SodiumSeal::newKey());
}

void SodiumSealTest::eachByteOf(const char* /*name*/, const QString& path, qsizetype notTheLast)
{
    const QByteArray bytes = contentOf(path);
    QVERIFY(bytes.size() > notTheLast && !isNoticedIn(path, bytes));
    for (qsizetype at = 0; at < bytes.size() - notTheLast; ++at) {
        QByteArray changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        QVERIFY2(isNoticedIn(path, changed), qPrintable(QString::number(at)));
    }
    write(path, bytes);
}

void SodiumSealTest::aDamagedHistoryIsKept()
{
    writeHistory(m_folder);
    // Without its last line feed, a journal is one that was being written.
    checkRows(this, &SodiumSealTest::eachByteOf, {{"file", m_folder.path(), 0}, {"journal", m_folder.journal(), 1}});

    QByteArray journal = contentOf(m_folder.journal());
    journal[journal.size() - 9] = '!';
    write(m_folder.journal(), journal);
    {
        const auto store = openHistory(m_folder.path());
        QCOMPARE(store->items().size(), 3); // what can be read is
        QCOMPARE(store->save(), std::nullopt);
    }
    QCOMPARE(contentOf(m_folder.journal() + u".bad"_s), journal);
    QCOMPARE(m_folder.saved().size(), 3);
}

void SodiumSealTest::linesStayInTheirPlaces()
{
    writeHistory(m_folder);
    const QList<QByteArray> lines = contentOf(m_folder.journal()).split('\n'); // a header, a mark, three entries
    QCOMPARE(lines.size(), 6);
    const auto with = [&lines](const QList<int>& order) {
        QList<QByteArray> changed;
        for (const int line : order)
            changed.append(lines[line]);
        return changed.join('\n');
    };
    QVERIFY(!isNoticedIn(m_folder.journal(), with({0, 1, 2, 3, 4, 5})));
    for (const QList<int>& order : {QList{0, 1, 3, 4, 5}, QList{0, 1, 2, 4, 3, 5}, QList{0, 1, 2, 3, 3, 4, 5}})
        QVERIFY(isNoticedIn(m_folder.journal(), with(order)));
}

void SodiumSealTest::isLeftAloneWithoutItsKey()
{
    writeHistory(m_folder);
    const QByteArray file = contentOf(m_folder.path());
    const QByteArray journal = contentOf(m_folder.journal());
    JSONHistoryStore store(m_folder.path(), 500, 0);
    static_cast<void>(store.add(entry(u"meanwhile"_s, 9)));
    static_cast<void>(store.add(entry(u"2nd"_s, 8, true)));
    store.saveAsync();
    store.flush();
    QVERIFY(store.isLocked() && store.save() && !store.namesAllPictures());
    QVERIFY(contentOf(m_folder.path()) == file && contentOf(m_folder.journal()) == journal);

    store.setSealing({sealWith('k'), true}, [](const auto& /*evicted*/) {});
    QTRY_VERIFY(!store.isLocked());
    QStringList contents;
    for (const ClipItem& item : store.items())
        contents.append(item.content.toString() + (item.isPinned ? u"!"_s : QString()));
    QCOMPARE(contents, QStringList({u"2nd!"_s, u"meanwhile"_s, u"3rd"_s, u"1st"_s, u"in the file"_s}));
    store.flush();
    QCOMPARE(m_folder.saved(), store.items());

    store.setSealing({sealWith('k'), false}, [](const auto& /*evicted*/) {});
    QTRY_VERIFY(contentOf(m_folder.path()).startsWith("[{"));
    store.flush(); // the journal follows the file
    QCOMPARE(JSONHistoryStore(m_folder.path(), 500, never).items(), store.items());
}

QTEST_GUILESS_MAIN(SodiumSealTest)
#include "SodiumSealTest.moc"
