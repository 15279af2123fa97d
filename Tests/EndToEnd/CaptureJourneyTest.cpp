#include "ForeignClient.h"
#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QFile>
#include <QImage>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// From a copy made by another program to an entry in the history file.
class CaptureJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void recordsTypeAndContent_data();
    void recordsTypeAndContent();
    void recordsPictures_data();
    void recordsPictures();
    void recordsTheApplicationInFront();
    void neverReadsMarkedCopies_data();
    void neverReadsMarkedCopies();
    void mergesARepeatedCopy();
    void leavesOutWhiteSpaceAlone();
    void leavesOutWhatWasThereBefore();
    void keepsTheHistoryOverRestarts();
    void recordsEveryCopyOfABurst();

private:
    void copy(const QByteArray& content, const QString& target = u"UTF8_STRING"_s);
    void copyAndWait(const QByteArray& content, const QString& target = u"UTF8_STRING"_s);

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
};

void CaptureJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>();
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
}

void CaptureJourneyTest::cleanup()
{
    if (m_tessaly && m_tessaly->isRunning()) {
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    }
    m_tessaly.reset();
    m_session.reset();
}

void CaptureJourneyTest::copy(const QByteArray& content, const QString& target)
{
    m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s}, content);
}

void CaptureJourneyTest::copyAndWait(const QByteArray& content, const QString& target)
{
    copy(content, target);
    QVERIFY(m_tessaly->waitForCaptures(1));
}

void CaptureJourneyTest::recordsTypeAndContent_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("copied");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("content");

    const QString text = u"UTF8_STRING"_s;
    const QString files = u"text/uri-list"_s;
    QTest::newRow("text, white space kept")
        << text << QByteArray("  two\nlines \xc3\xa9\n") << u"text"_s << u"  two\nlines \u00e9\n"_s;
    QTest::newRow("link") << text << QByteArray("https://example.org/a?b=c") << u"link"_s
                          << u"https://example.org/a?b=c"_s;
    QTest::newRow("colour") << text << QByteArray("#ff8800") << u"color"_s << u"#ff8800"_s;
    QTest::newRow("code") << text << QByteArray("const f = (a) => { return a; };") << u"code"_s
                          << u"const f = (a) => { return a; };"_s;
    QTest::newRow("old-style text") << u"STRING"_s << QByteArray("caf\xe9") << u"text"_s << u"caf\u00e9"_s;
    QTest::newRow("a file") << files << QByteArray("file:///usr/share/a%20b.txt\r\n") << u"file"_s
                            << u"/usr/share/a b.txt"_s;
    QTest::newRow("three files give the first")
        << files << QByteArray("file:///c\r\nfile:///a\r\nfile:///b\r\n") << u"file"_s << u"/c"_s;
    QTest::newRow("files as file managers copy them")
        << u"x-special/gnome-copied-files"_s << QByteArray("copy\nfile:///d\nfile:///e") << u"file"_s << u"/d"_s;
}

void CaptureJourneyTest::recordsTypeAndContent()
{
    QFETCH(const QString, target);
    QFETCH(const QByteArray, copied);
    QFETCH(const QString, type);
    QFETCH(const QString, content);

    copy(copied, target);
    QVERIFY(m_tessaly->waitForNewest(content));
    const QList<RunningTessaly::Entry> entries = *m_tessaly->history();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().type, type);
}

void CaptureJourneyTest::recordsPictures_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("PNG") << u"image/png"_s << u"png"_s;
    QTest::newRow("TIFF") << u"image/tiff"_s << u"tiff"_s;
}

void CaptureJourneyTest::recordsPictures()
{
    QFETCH(const QString, target);
    QFETCH(const QString, suffix);

    const QString picture = m_session->homePath(u"picture."_s + suffix);
    QCOMPARE(m_session->run(u"convert"_s, {u"-size"_s, u"30x20"_s, u"xc:#336699"_s, picture}).exitCode, 0);
    QFile file(picture);
    QVERIFY(file.open(QFile::ReadOnly));
    copy(file.readAll(), target);

    QVERIFY(m_tessaly->waitForHistory([](const auto& entries) { return entries.size() == 1; }));
    const RunningTessaly::Entry entry = m_tessaly->history()->first();
    QCOMPARE(entry.type, u"image"_s);
    QVERIFY(entry.content.startsWith(m_tessaly->dataFolder() + u"/images/"_s));
    const QImage stored(entry.content, "PNG");
    QCOMPARE(stored.size(), QSize(30, 20));
    QCOMPARE(stored.pixelColor(15, 10), QColor(0x33, 0x66, 0x99));
    QCOMPARE(QFile::permissions(entry.content) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

void CaptureJourneyTest::recordsTheApplicationInFront()
{
    // A real editor copies by itself: all of the text, Ctrl+A, Ctrl+C.
    const QString document = m_session->homePath(u"letter.txt"_s);
    QFile file(document);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("Dear reader");
    file.close();
    m_session->start(u"mousepad"_s, {u"--disable-server"_s, document});
    QVERIFY(m_session->waitUntil([&] {
        return m_session->run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}).output.contains("letter.txt");
    }));
    m_tessaly->press(u"ctrl+a"_s);
    m_tessaly->press(u"ctrl+c"_s);

    QVERIFY(m_tessaly->waitForNewest(u"Dear reader"_s));
    const RunningTessaly::Entry entry = m_tessaly->history()->first();
    QCOMPARE(entry.sourceApp, u"Mousepad"_s);
    QCOMPARE(entry.bundleID, u"org.xfce.mousepad"_s);
}

void CaptureJourneyTest::neverReadsMarkedCopies_data()
{
    QTest::addColumn<QByteArray>("marker");

    for (const char* marker :
         {"x-kde-passwordManagerHint", "text/x-kde-passwordManagerHint", "org.nspasteboard.ConcealedType",
          "org.nspasteboard.TransientType", "org.nspasteboard.AutoGeneratedType"}) {
        QTest::newRow(marker) << QByteArray(marker);
    }
}

void CaptureJourneyTest::neverReadsMarkedCopies()
{
    QFETCH(const QByteArray, marker);

    ForeignClient secretive(*m_session);
    secretive.offer({{marker, {.bytes = "secret"}},
                     {"UTF8_STRING", {.bytes = "hunter2"}},
                     {"text/plain;charset=utf-8", {.bytes = "hunter2"}}});
    secretive.take();
    QVERIFY(m_session->waitUntil([&] { return secretive.asked().contains("TARGETS"); }));

    // Once a later copy is recorded, nothing can still be about to read the first.
    copyAndWait("harmless");
    QVERIFY(!secretive.asked().contains("UTF8_STRING"));
    QVERIFY(!secretive.asked().contains("text/plain;charset=utf-8"));
    QVERIFY(m_tessaly->waitForNewest(u"harmless"_s));
    QCOMPARE(m_tessaly->history()->size(), 1);
}

void CaptureJourneyTest::mergesARepeatedCopy()
{
    copyAndWait("again");
    copyAndWait("other");
    copyAndWait("again");
    QVERIFY(m_tessaly->waitForNewest(u"again"_s));
    QCOMPARE(m_tessaly->history()->size(), 2);
}

void CaptureJourneyTest::leavesOutWhiteSpaceAlone()
{
    copy(" \t\r\n\xe2\x80\x83\n"); // the last one is an em space
    copyAndWait("visible");
    QVERIFY(m_tessaly->waitForNewest(u"visible"_s));
    QCOMPARE(m_tessaly->history()->size(), 1);
}

void CaptureJourneyTest::leavesOutWhatWasThereBefore()
{
    QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    copy("from before");
    QVERIFY(m_tessaly->start());
    copyAndWait("from after");
    QVERIFY(m_tessaly->waitForNewest(u"from after"_s));
    QCOMPARE(m_tessaly->history()->size(), 1);
}

void CaptureJourneyTest::keepsTheHistoryOverRestarts()
{
    copyAndWait("first run");
    // At once: the save that waits for a pause of a second is still to come.
    QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    const std::optional<QList<RunningTessaly::Entry>> saved = m_tessaly->history();
    QVERIFY(saved);
    QCOMPARE(saved->size(), 1);

    QVERIFY(m_tessaly->start());
    copyAndWait("second run");
    QVERIFY(m_tessaly->waitForNewest(u"second run"_s));
    QCOMPARE(m_tessaly->history()->size(), 2);
    QCOMPARE(m_tessaly->history()->last().content, u"first run"_s);
}

void CaptureJourneyTest::recordsEveryCopyOfABurst()
{
    constexpr int copies = 300;
    ForeignClient owner(*m_session);
    for (int i = 0; i < copies; ++i) {
        owner.copyText("burst " + QByteArray::number(i));
        QTest::qSleep(2);
        // On a machine too busy to keep up, the burst slows down rather than replacing what nobody could have read.
        QVERIFY(m_session->waitUntil([&] { return owner.asked().contains("UTF8_STRING"); }));
    }
    QVERIFY(m_tessaly->waitForNewest(u"burst %1"_s.arg(copies - 1)));
    const QList<RunningTessaly::Entry> entries = *m_tessaly->history();
    QCOMPARE(entries.size(), copies);
    for (int i = 0; i < copies; ++i) {
        QCOMPARE(entries[i].content, u"burst %1"_s.arg(copies - 1 - i));
    }
}

QTEST_GUILESS_MAIN(CaptureJourneyTest)

#include "CaptureJourneyTest.moc"
