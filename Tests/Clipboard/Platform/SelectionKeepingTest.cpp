#include "EngineTest.h"
#include "Rows.h"

#include <future>

using namespace Clipboard;
using namespace Clipboard::Testing;

using Answers = QHash<QByteArray, ForeignClient::Answer>;
using Manner = ForeignClient::Answer::Manner;

/// What becomes of a program's content when it ends, gives it up, or asks for it to be kept.
class SelectionKeepingTest final : public EngineTest
{
    Q_OBJECT
private slots:
    void contentOutlivesItsOwner();
    void contentOutlivesAllWhoEndInARow();
    void unreadContentDoesNotOutlive();
    void managerRefusesWhatItCannotRead();
    void whatWasRefusedIsAskedForAgain();
    void contentIsLeftWithAnotherManager();

private:
    void outlivesItsOwner(const char* name, const Answers& answers);
};

void SelectionKeepingTest::outlivesItsOwner(const char* /*name*/, const Answers& answers)
{
    ForeignClient owner(display());
    owner.copy(answers);
    const auto kept = owner.save(); // everything worth keeping has been read
    QVERIFY(kept);
    owner.die();
    QVERIFY(VirtualSession::waitUntil([&] {
        const auto current = m_session->selectionOwner("CLIPBOARD");
        return current != XCB_WINDOW_NONE && current != owner.window();
    }));
    ForeignClient reader(display());
    for (auto answer = answers.begin(); answer != answers.end(); ++answer) {
        QVERIFY2(kept->contains(answer.key()), answer.key().constData());
        const auto received = reader.convert(answer.key());
        QVERIFY2(received && received->bytes == answer->bytes, answer.key().constData());
    }
}

void SelectionKeepingTest::contentOutlivesItsOwner()
{
    checkRows(this, &SelectionKeepingTest::outlivesItsOwner,
              {{"large text", {{"UTF8_STRING", {.bytes = numbers(3'000'000), .manner = Manner::InPieces}}}},
               {"a table",
                {{"image/png", {.bytes = "\x89PNG"}},
                 {"text/html", {.bytes = "<table>"}},
                 {"UTF8_STRING", {.bytes = "a\tb"}}}},
               {"files",
                {{"text/uri-list", {.bytes = "file:///a\r\nfile:///b\r\n"}},
                 {"x-special/gnome-copied-files", {.bytes = "cut\nfile:///a\nfile:///b"}},
                 {"UTF8_STRING", {.bytes = "/a /b"}}}}});
}

/// However many, and however fast.
void SelectionKeepingTest::contentOutlivesAllWhoEndInARow()
{
    constexpr size_t many = 2 * X11::takeOversAtOnce + 1;
    for (size_t i = 1; i <= many; ++i) {
        ForeignClient owner(display());
        owner.copyText(QByteArray::number(i));
        QCOMPARE(waitForSnapshot(i).text, QByteArray::number(i)); // of those that ended there is nothing to be heard
        owner.die();
    }
    QVERIFY(VirtualSession::waitUntil([&] { return pasted() == QByteArray::number(many); }));
}

void SelectionKeepingTest::unreadContentDoesNotOutlive()
{
    ForeignClient owner(display());
    owner.copy({{"UTF8_STRING", {.bytes = numbers(400'000), .manner = Manner::StallInTheMiddle}}});
    QVERIFY(VirtualSession::waitUntil([&] { return owner.asked().contains("UTF8_STRING"); }));
    owner.die();
    QVERIFY(waitForSnapshot().types.isEmpty());
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionKeepingTest::managerRefusesWhatItCannotRead()
{
    const Answers secret{{"secret/marker", {.bytes = "secret"}}, {"UTF8_STRING", {.bytes = "hunter2"}}};
    for (const Answers& answers : {secret, Answers{{"UTF8_STRING", {.manner = Manner::Mute}}}}) {
        startEngine(std::chrono::seconds(20), std::chrono::milliseconds(1));
        ForeignClient owner(display());
        owner.copy(answers);
        QVERIFY(!owner.save());
    }
}

/// By an owner that had somebody else to serve.
void SelectionKeepingTest::whatWasRefusedIsAskedForAgain()
{
    ForeignClient owner(display());
    const auto hasAsked = [&owner](qsizetype times) {
        return VirtualSession::waitUntil([&] { return owner.asked().count("UTF8_STRING") == times; });
    };
    owner.copy({{"UTF8_STRING", {.bytes = "the last copy", .manner = Manner::Late}}});
    QVERIFY(hasAsked(1));
    owner.refuseLate();
    QVERIFY(!waitForSnapshot(1).text);
    auto kept = std::async(std::launch::async, [this] { return ForeignClient(display()).save(); });
    QVERIFY(hasAsked(2));
    owner.refuseLate();
    QVERIFY(hasAsked(3));
    owner.answerLate();
    QVERIFY(kept.get().value_or(QByteArrayList()).contains("UTF8_STRING"));
    QCOMPARE(waitForSnapshot(2).text, "the last copy");
}

void SelectionKeepingTest::contentIsLeftWithAnotherManager()
{
    m_engine.reset();
    ForeignClient other(display(), "CLIPBOARD_MANAGER");
    other.copy({{"SAVE_TARGETS", {.manner = Manner::Late}}});
    startEngine();
    m_engine->own(formsOfText("ours"));
    auto left = m_engine->handOver();
    QVERIFY(VirtualSession::waitUntil([&] { return other.asked().contains("SAVE_TARGETS"); }));
    QVERIFY(other.ownsSelection());
    // It fetches the content before it answers.
    QCOMPARE(pasted(), QByteArray("ours"));
    other.answerLate();
    left.wait();

    ForeignClient heir(display());
    heir.copyText("ours"); // which is no copy
    m_engine->settled().wait();
    QVERIFY(snapshots().empty());
}

QTEST_GUILESS_MAIN(SelectionKeepingTest)
#include "SelectionKeepingTest.moc"
