#include "EngineWithLog.h"

using namespace Clipboard;
using namespace Clipboard::Testing;

using Answers = QHash<QByteArray, ForeignClient::Answer>;
using Manner = ForeignClient::Answer::Manner;

/// What becomes of a program's content when it ends, gives it up, or asks for it to be kept.
class SelectionKeepingTest final : public SelectionTest
{
    Q_OBJECT
private slots:
    void contentOutlivesItsOwner_data();
    void contentOutlivesItsOwner();
    void unreadContentDoesNotOutlive();
    void deliberateClearStays();
    void managerRefusesWhatItCannotRead_data();
    void managerRefusesWhatItCannotRead();
    void contentIsLeftWithAnotherManager();

private:
    /// Ends the program and waits until its content is in our hands.
    void endAndTakeOver(ForeignClient& owner);
};

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
    QTest::addColumn<Answers>("answers");
    const auto row = [](const char* name, const Answers& answers) { QTest::newRow(name) << answers; };
    row("rich text", {{"UTF8_STRING", {.bytes = "text"}}, {"text/html", {.bytes = "<b>text</b>"}}});
    row("large text", {{"UTF8_STRING", {.bytes = numbers(3'000'000), .manner = Manner::InPieces}}});
    row("a table",
        {{"image/png", {.bytes = "\x89PNG"}}, {"text/html", {.bytes = "<table>"}}, {"UTF8_STRING", {.bytes = "a\tb"}}});
    row("files", {{"text/uri-list", {.bytes = "file:///a\r\nfile:///b\r\n"}},
                  {"x-special/gnome-copied-files", {.bytes = "cut\nfile:///a\nfile:///b"}},
                  {"UTF8_STRING", {.bytes = "/a /b"}}});
    row("link with its text",
        {{"text/uri-list", {.bytes = "https://a/\r\n"}}, {"UTF8_STRING", {.bytes = "https://a/"}}});
}

void SelectionKeepingTest::contentOutlivesItsOwner()
{
    QFETCH(const Answers, answers);
    ForeignClient owner(display());
    owner.copy(answers);
    const auto kept = owner.save(); // everything worth keeping has been read
    QVERIFY(kept);
    endAndTakeOver(owner);
    ForeignClient reader(display());
    for (auto answer = answers.begin(); answer != answers.end(); ++answer) {
        QVERIFY2(kept->contains(answer.key()), answer.key().constData());
        const auto received = reader.convert(answer.key());
        QVERIFY2(received, answer.key().constData());
        QVERIFY(received->bytes == answer->bytes);
    }
}

void SelectionKeepingTest::unreadContentDoesNotOutlive()
{
    ForeignClient owner(display());
    owner.copy({{"UTF8_STRING", {.bytes = numbers(400'000), .manner = Manner::StallInTheMiddle}}});
    QVERIFY(VirtualSession::waitUntil([&] { return owner.asked().contains("UTF8_STRING"); }));
    owner.die();
    QVERIFY(m_log->waitForSnapshot().types.isEmpty());
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionKeepingTest::deliberateClearStays()
{
    ForeignClient owner(display());
    owner.copyText("for ten seconds");
    QCOMPARE(m_log->waitForSnapshot().text, QByteArray("for ten seconds"));
    owner.clear();
    QVERIFY(m_log->waitForSnapshot(2).types.isEmpty());
    owner.die();
    m_log->engine->settled().wait();
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionKeepingTest::managerRefusesWhatItCannotRead_data()
{
    QTest::addColumn<Answers>("answers");
    QTest::newRow("a secret") << Answers{{"secret/marker", {.bytes = "secret"}}, {"UTF8_STRING", {.bytes = "hunter2"}}};
    QTest::newRow("what does not come") << Answers{{"UTF8_STRING", {.manner = Manner::Mute}}};
}

void SelectionKeepingTest::managerRefusesWhatItCannotRead()
{
    QFETCH(const Answers, answers);
    startEngine(std::chrono::seconds(20), std::chrono::milliseconds(1));
    QVERIFY(waitForManager());
    ForeignClient owner(display());
    owner.copy(answers);
    QVERIFY(!owner.save());
}

void SelectionKeepingTest::contentIsLeftWithAnotherManager()
{
    m_log.reset();
    ForeignClient other(display(), "CLIPBOARD_MANAGER");
    other.copy({{"SAVE_TARGETS", {.manner = Manner::Late}}});
    startEngine();
    m_log->engine->own(formsOfText("ours"));
    auto left = m_log->engine->handOver();
    QVERIFY(VirtualSession::waitUntil([&] { return other.asked().contains("SAVE_TARGETS"); }));
    QVERIFY(other.ownsSelection());
    // It fetches the content before it answers.
    QCOMPARE(ForeignClient(display()).convert("UTF8_STRING")->bytes, QByteArray("ours"));
    other.answerLate();
    left.wait();

    ForeignClient heir(display());
    heir.copyText("ours"); // which is no copy
    m_log->engine->settled().wait();
    QVERIFY(m_log->snapshots().empty());
}

QTEST_GUILESS_MAIN(SelectionKeepingTest)
#include "SelectionKeepingTest.moc"
