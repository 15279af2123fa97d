#include "EngineTest.h"
#include "Rows.h"
#include "Xcb.h"

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace std::chrono_literals;

using Answer = ForeignClient::Answer;
using Manner = ForeignClient::Answer::Manner;
using Answers = QHash<QByteArray, Answer>;

namespace {

const QByteArray png = "\x89PNG picture";

/// What was read, in one line: the kind and the bytes.
QByteArray summary(const SelectionContent& content)
{
    if (!content.fileURLs.isEmpty())
        return "files " + content.fileURLs.first().toLocalFile().toUtf8();
    if (content.png)
        return "png " + *content.png;
    if (content.tiff)
        return "tiff " + *content.tiff;
    return content.text ? "text " + *content.text : QByteArray("nothing");
}

} // namespace

/// What the engine makes of the owners that it meets: fair, old, slow, lying and dying ones.
class SelectionReadingTest final : public EngineTest
{
    Q_OBJECT
private slots:
    void firstContentWorthHaving();
    void badOwners();
    void whoTakesItBack();
    void secretsAreNeverAskedFor();
    void muteOwnerIsOvertaken();
    void lateReplyIsNotTakenForAnother();
    void abandonedOwnerComesToItsEnd();

private:
    void reads(const char* name, const Answers& answers, const QByteArray& content);
    void takesBack(const char* name, const std::function<void(ForeignClient& owner, ForeignClient& other)>& happen,
                   bool isTakenBack);
};

void SelectionReadingTest::reads(const char* /*name*/, const Answers& answers, const QByteArray& content)
{
    const bool isGivenUp = std::ranges::any_of(answers, [](const Answer& answer) {
        return QList{Manner::Mute, Manner::StallInTheMiddle, Manner::EndlessPieces}.contains(answer.manner);
    });
    startEngine(isGivenUp ? soon : 20s);
    ForeignClient owner(display());
    owner.copy(answers);
    QCOMPARE(summary(waitForSnapshot()), content);
    QCOMPARE(snapshots().size(), 1U);
    const QSet<QString> types = waitForSnapshot().types;
    QVERIFY(std::ranges::all_of(types, [](const QString& type) { return type.size() < 5000; }));

    // Whatever it did, the next copy is read as ever.
    ForeignClient next(display());
    next.copyText("next");
    QCOMPARE(summary(waitForSnapshot(2)), "text next");
}

void SelectionReadingTest::firstContentWorthHaving()
{
    const Answer text{.bytes = "text"};
    const Answer picture{.bytes = png};
    const QByteArray large(3'000'000, 'x');
    checkRows(
        this, &SelectionReadingTest::reads,
        {{"MIME text only", {{"text/plain;charset=utf-8", text}}, "text text"},
         {"TEXT answered as compound text", {{"TEXT", {.bytes = "\xE9", .type = "COMPOUND_TEXT"}}}, "text \xC3\xA9"},
         {"a file before its icon and name",
          {{"text/uri-list", {.bytes = "file:///a%20b\r\n"}}, {"image/png", picture}, {"UTF8_STRING", text}},
          "files /a b"},
         {"PNG before TIFF and its address",
          {{"image/tiff", text}, {"image/png", picture}, {"UTF8_STRING", text}},
          "png " + png},
         {"TIFF when PNG is refused",
          {{"image/tiff", text}, {"image/png", {.bytes = {}, .manner = Manner::Refuse}}},
          "tiff text"},
         {"links are no files",
          {{"text/uri-list", {.bytes = "https://example.org/\r\n"}}, {"UTF8_STRING", text}},
          "text text"},
         {"empty picture, then text", {{"image/png", {.bytes = {}}}, {"UTF8_STRING", text}}, "text text"},
         {"empty text", {{"UTF8_STRING", {.bytes = {}}}}, "nothing"},
         {"nothing that is wanted", {{"application/x-thing", text}}, "nothing"},
         {"in pieces",
          {{"UTF8_STRING", {.bytes = "in pieces", .manner = Manner::InPieces, .pieceBytes = 2}}},
          "text in pieces"},
         {"large, at once", {{"UTF8_STRING", {.bytes = large}}}, "text " + large}});
}

void SelectionReadingTest::badOwners()
{
    const QByteArray large(400'000, 'x');
    const Answer text{.bytes = "text"};
    const Answer mute{.bytes = {}, .manner = Manner::Mute};
    const auto listing = [](const QByteArray& atoms) {
        return Answers{{"TARGETS", {.bytes = atoms, .type = "ATOM", .format = 32}}};
    };
    const auto promise = [](const QByteArray& bytes, quint32 announced) {
        return Answers{{"UTF8_STRING", {.bytes = bytes, .manner = Manner::InPieces, .announcedBytes = announced}}};
    };
    // Behind the text, and in front of what else there is.
    const auto amongAMillion = [&](const QByteArray& last) {
        QByteArray atoms(4'000'000, '\1'); // which do not exist
        for (const auto& [place, name] : {std::pair(0, QByteArray("UTF8_STRING")), std::pair(3'999'996, last)}) {
            const xcb_atom_t atom = Xcb::atom(m_session->connection(), name);
            memcpy(atoms.data() + place, &atom, sizeof atom);
        }
        Answers answers = listing(atoms);
        answers.insert("UTF8_STRING", text);
        return answers;
    };
    const Answer endless{.bytes = QByteArray(8'000'000, 'x'), .manner = Manner::EndlessPieces, .pieceBytes = 8'000'000};
    checkRows(
        this, &SelectionReadingTest::reads,
        {{"mute", {{"TARGETS", mute}}, "nothing"},
         {"refuses the target list",
          {{"TARGETS", {.bytes = {}, .manner = Manner::Refuse}}, {"UTF8_STRING", text}},
          "nothing"},
         {"target list is a text",
          {{"TARGETS", {.bytes = "UTF8_STRING", .type = "STRING"}}, {"UTF8_STRING", text}},
          "nothing"},
         {"target list of atoms that do not exist", listing(QByteArray(400, '\x7e')), "nothing"},
         {"endless target list", listing(QByteArray(maxTargetListBytes + 4, '\1')), "nothing"},
         {"a million targets", amongAMillion("STRING"), "text text"},
         {"a mark behind a million", amongAMillion("secret/marker"), "nothing"},
         {"names without end", {{QByteArray(60'000, 'n'), text}, {"UTF8_STRING", text}}, "text text"},
         {"more files than anybody copies",
          {{"text/uri-list", {.bytes = QByteArray("file:///a\r\n").repeated(100'000)}}},
          "files /a"},
         {"mute about the picture", {{"image/png", mute}, {"UTF8_STRING", text}}, "text text"},
         {"text of another type", {{"UTF8_STRING", {.bytes = "1234", .type = "INTEGER", .format = 32}}}, "nothing"},
         {"stalls in the middle", {{"UTF8_STRING", {.bytes = large, .manner = Manner::StallInTheMiddle}}}, "nothing"},
         {"dies in the middle", {{"UTF8_STRING", {.bytes = large, .manner = Manner::DieInTheMiddle}}}, "nothing"},
         {"changes in the middle", {{"UTF8_STRING", {.bytes = large, .manner = Manner::ChangeInTheMiddle}}}, "nothing"},
         {"loses its window in the middle",
          {{"UTF8_STRING", {.bytes = large, .manner = Manner::FallInTheMiddle}}},
          "nothing"},
         {"promises less than it sends", promise(large, 10), "text " + large},
         {"promises more than it sends", promise("few", 200'000'000), "text few"},
         {"promises more than the bound", promise("few", 0xffffffff), "nothing"},
         {"never comes to an end", {{"UTF8_STRING", endless}}, "nothing"},
         {"drips",
          {{"image/png", {.bytes = "x", .manner = Manner::EndlessPieces}}, {"UTF8_STRING", text}},
          "text text"}});
}

void SelectionReadingTest::takesBack(const char* /*name*/,
                                     const std::function<void(ForeignClient& owner, ForeignClient& other)>& happen,
                                     bool isTakenBack)
{
    startEngine();
    ForeignClient owner(display());
    ForeignClient other(display());
    owner.copy({{"image/png", {.bytes = png}}, {"secret/marker", {}}}); // does not outlive its owner
    QCOMPARE(summary(waitForSnapshot()), "nothing");
    owner.copyText("for a moment");
    QCOMPARE(summary(waitForSnapshot(2)), "text for a moment");
    QVERIFY(!snapshots().back().isTakenBack);
    happen(owner, other);
    QCOMPARE(summary(waitForSnapshot(3)), "nothing");
    QCOMPARE(snapshots().back().isTakenBack, isTakenBack);
}

void SelectionReadingTest::whoTakesItBack()
{
    using Client = ForeignClient;
    const auto nothing = [](Client& client) { client.copy({{"UTF8_STRING", {.bytes = {}}}}); };
    checkRows(this, &SelectionReadingTest::takesBack,
              {{"gives it up", [](Client& owner, Client&) { owner.clear(); }, true},
               {"has nothing any more", [&](Client& owner, Client&) { nothing(owner); }, true},
               {"another one has nothing", [&](Client&, Client& other) { nothing(other); }, false},
               {"something that nobody knows",
                [](Client& owner, Client&) {
                    owner.copy({{"application/x-thing", {}}});
                },
                false},
               {"a secret, given up",
                [&](Client& owner, Client&) {
                    owner.copy({{"secret/marker", {}}});
                },
                false}});
}

void SelectionReadingTest::secretsAreNeverAskedFor()
{
    ForeignClient owner(display());
    owner.copy({{"UTF8_STRING", {.bytes = "hunter2"}}, {"secret/marker", {.bytes = "secret"}}});
    const auto content = waitForSnapshot();
    QCOMPARE(summary(content), "nothing");
    QVERIFY(content.types.contains(QStringLiteral("secret/marker")));
    QCOMPARE(owner.asked(), QList<QByteArray>{"TARGETS"});

    // Nor does it outlive its owner.
    owner.die();
    QCOMPARE(summary(waitForSnapshot(2)), "nothing");
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
}

void SelectionReadingTest::muteOwnerIsOvertaken()
{
    ForeignClient mute(display());
    mute.copy({{"TARGETS", {.bytes = {}, .manner = Manner::Mute}}});
    QVERIFY(VirtualSession::waitUntil([&] { return !mute.asked().isEmpty(); }));

    ForeignClient next(display());
    next.copyText("next");
    QCOMPARE(summary(waitForSnapshot()), "text next"); // the mute one's time-out would be a change before it
    QCOMPARE(snapshots().size(), 1U);
}

void SelectionReadingTest::lateReplyIsNotTakenForAnother()
{
    for (const auto lateReply : {&ForeignClient::answerLate, &ForeignClient::refuseLate}) {
        startEngine();
        ForeignClient slow(display());
        ForeignClient next(display());
        slow.offer({{"UTF8_STRING", {.bytes = "slow", .manner = Manner::Late}}});
        next.offer({{"UTF8_STRING", {.bytes = "next", .manner = Manner::Late}}});
        for (ForeignClient* client : {&slow, &next}) {
            client->take();
            QVERIFY(VirtualSession::waitUntil([&] { return client->asked().contains("UTF8_STRING"); }));
            QTest::qSleep(2); // the next one is of another time of the server
        }
        (slow.*lateReply)();
        next.answerLate();
        QCOMPARE(summary(waitForSnapshot()), "text next");
        QCOMPARE(snapshots().size(), 1U);
    }
}

void SelectionReadingTest::abandonedOwnerComesToItsEnd()
{
    // xclip ends when it has lost the selection, but not before its reader has fetched all of what it is sending.
    QProcess& xclip = m_session->start(
        QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-quiet")},
        QByteArray(30'000'000, 'x'));
    QVERIFY(VirtualSession::waitUntil([&] { return m_session->selectionOwner("CLIPBOARD") != 0; }));
    ForeignClient next(display());
    next.copyText("next");
    QVERIFY(
        VirtualSession::waitUntil([&] { return !snapshots().empty() && snapshots().back().content.text == "next"; }));
    QVERIFY(VirtualSession::waitUntil([&] { return xclip.state() == QProcess::NotRunning; }));
}

QTEST_GUILESS_MAIN(SelectionReadingTest)
#include "SelectionReadingTest.moc"
