#include "EngineWithLog.h"
#include "ForeignClient.h"
#include "VirtualSession.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

using namespace Clipboard;
using namespace Clipboard::Testing;

using Manner = ForeignClient::Answer::Manner;

/// What becomes of a program's content when it ends, gives it up, or asks for it to be kept.
class SelectionKeepingTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void contentOutlivesItsOwner_data();
    void contentOutlivesItsOwner();
    void takeOverIsNoChange();
    void unreadContentDoesNotOutlive();
    void deliberateClearStays();
    void managerSavesBeforeTheEnd();
    void managerRefusesWhatItCannotRead();
    void managerInPlaceIsRespected();

private:
    [[nodiscard]] QByteArray display() const { return m_session->display().toLatin1(); }
    /// Ends the program and waits until its content is in our hands.
    void endAndTakeOver(ForeignClient& owner);

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<EngineWithLog> m_log;
};

void SelectionKeepingTest::initTestCase()
{
    VirtualSession::Options options;
    options.windowManager = false;
    m_session = std::make_unique<VirtualSession>(options);
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
}

void SelectionKeepingTest::init()
{
    m_log = std::make_unique<EngineWithLog>(m_session->display());
    QVERIFY(m_log->engine);
    QVERIFY(VirtualSession::waitUntil([&] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; }));
}

void SelectionKeepingTest::cleanup()
{
    m_log.reset();
}

void SelectionKeepingTest::endAndTakeOver(ForeignClient& owner)
{
    owner.die();
    QVERIFY(VirtualSession::waitUntil([&] {
        const auto current = m_session->selectionOwner("CLIPBOARD");
        return current != XCB_WINDOW_NONE && current != owner.window();
    }));
}

void SelectionKeepingTest::contentOutlivesItsOwner_data()
{
    using Answers = QHash<QByteArray, ForeignClient::Answer>;
    QTest::addColumn<Answers>("answers");
    const auto row = [](const char* name, const Answers& answers) { QTest::newRow(name) << answers; };
    row("rich text", {{"UTF8_STRING", {.bytes = "text"}}, {"text/html", {.bytes = "<b>text</b>"}}});
    row("large text", {{"UTF8_STRING", {.bytes = numbers(3'000'000), .manner = Manner::InPieces}}});
    row("picture", {{"image/png", {.bytes = "\x89PNG"}}});
    row("TIFF picture", {{"image/tiff", {.bytes = "II*"}}});
    row("files", {{"text/uri-list", {.bytes = "file:///a\r\nfile:///b\r\n"}},
                  {"x-special/gnome-copied-files", {.bytes = "cut\nfile:///a\nfile:///b"}},
                  {"UTF8_STRING", {.bytes = "/a /b"}}});
    row("link with its text",
        {{"text/uri-list", {.bytes = "https://a/\r\n"}}, {"UTF8_STRING", {.bytes = "https://a/"}}});
}

void SelectionKeepingTest::contentOutlivesItsOwner()
{
    using Answers = QHash<QByteArray, ForeignClient::Answer>;
    QFETCH(const Answers, answers);
    ForeignClient owner(display());
    owner.offer(answers);
    owner.take();
    QVERIFY(owner.save()); // everything worth keeping has been read
    endAndTakeOver(owner);
    ForeignClient reader(display());
    for (auto answer = answers.begin(); answer != answers.end(); ++answer) {
        const auto received = reader.convert(answer.key());
        QVERIFY2(received, answer.key().constData());
        QVERIFY(received->bytes == answer->bytes);
    }
}

void SelectionKeepingTest::takeOverIsNoChange()
{
    ForeignClient owner(display());
    owner.offerText("left behind");
    owner.take();
    QCOMPARE(m_log->waitForSnapshot().text, QByteArray("left behind"));
    endAndTakeOver(owner);
    ForeignClient next(display());
    next.offerText("next");
    next.take();
    QCOMPARE(m_log->waitForSnapshot(2).text, QByteArray("next"));
}

void SelectionKeepingTest::unreadContentDoesNotOutlive()
{
    ForeignClient owner(display());
    owner.offer({{"UTF8_STRING", {.bytes = numbers(400'000), .manner = Manner::StallInTheMiddle}}});
    owner.take();
    QVERIFY(VirtualSession::waitUntil([&] { return owner.asked().contains("UTF8_STRING"); }));
    owner.die();
    QVERIFY(m_log->waitForSnapshot().types.isEmpty());
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionKeepingTest::deliberateClearStays()
{
    ForeignClient owner(display());
    owner.offerText("for ten seconds");
    owner.take();
    QCOMPARE(m_log->waitForSnapshot().text, QByteArray("for ten seconds"));
    owner.clear();
    QVERIFY(m_log->waitForSnapshot(2).types.isEmpty());
    owner.die();
    QTest::qWait(50);
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionKeepingTest::managerSavesBeforeTheEnd()
{
    // It asks before its content has been read, as a program does that copies and quits at once.
    const QByteArray text = numbers(5'000'000);
    ForeignClient owner(display());
    owner.offer({{"UTF8_STRING", {.bytes = text, .manner = Manner::InPieces}}});
    owner.take();
    QVERIFY(owner.save());
    endAndTakeOver(owner);
    QVERIFY(ForeignClient(display()).convert("UTF8_STRING")->bytes == text);
}

void SelectionKeepingTest::managerRefusesWhatItCannotRead()
{
    ForeignClient owner(display());
    owner.offer({{"secret/marker", {.bytes = "secret"}}, {"UTF8_STRING", {.bytes = "hunter2"}}});
    owner.take();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!owner.save());
    QVERIFY2(clock.elapsed() < 5000, "A program that wants to end was kept waiting.");
    QCOMPARE(owner.asked(), QByteArrayList{"TARGETS"});
}

void SelectionKeepingTest::managerInPlaceIsRespected()
{
    m_log.reset();
    ForeignClient other(display(), "CLIPBOARD_MANAGER");
    other.take();
    EngineWithLog log(m_session->display());
    ForeignClient owner(display());
    owner.offerText("text");
    owner.take();
    QCOMPARE(log.waitForSnapshot().text, QByteArray("text"));
    QVERIFY(other.ownsSelection());
}

QTEST_GUILESS_MAIN(SelectionKeepingTest)
#include "SelectionKeepingTest.moc"
