#include "EngineTest.h"
#include "Rows.h"
#include "Xcb.h"

#include <QTemporaryDir>

#include <atomic>
#include <future>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Manner = ForeignClient::Answer::Manner;
using Forms = QList<QPair<QByteArray, QByteArray>>;

/// What other programs get of the content that the engine owns.
class SelectionOwningTest final : public EngineTest
{
    Q_OBJECT
private slots:
    void formsOnOffer();
    void formsAreConvertedOnceAndWithinABudget();
    void requestsFromBeforeTheWriteAreRefused();
    void largeReplies();
    void readerFinishesAfterTheLoss();
    void lostReadersDoNoHarm();
    void pictureFileOutlivesItsName();
    void lostConnectionIsMadeAnew();

private:
    void offers(const char* name, const SelectionForms& forms, const Forms& received);
    /// Puts the content on the clipboard, and on the primary selection, and waits until it is there.
    void own(const SelectionForms& forms, bool primaryToo = false);
};

void SelectionOwningTest::own(const SelectionForms& forms, bool primaryToo)
{
    m_engine->own(forms);
    std::promise<void> done;
    m_engine->afterWrites(primaryToo, [&](bool) { done.set_value(); });
    done.get_future().wait();
}

void SelectionOwningTest::offers(const char* /*name*/, const SelectionForms& forms, const Forms& received)
{
    own(forms, true);
    ForeignClient reader(display());
    QByteArrayList expected{"TARGETS", "TIMESTAMP", "MULTIPLE"};
    for (const auto& form : forms)
        expected.append(form.target);
    QCOMPARE(reader.targets(), expected);
    for (const auto& [target, bytes] : received) {
        const auto content = reader.convert(target);
        QVERIFY2(content, target.constData());
        QCOMPARE(content->bytes, bytes);
        QCOMPARE(content->type, target == "TEXT" ? QByteArray("UTF8_STRING") : target);
        QCOMPARE(content->format, 8);
        QCOMPARE(pasted(target, "PRIMARY"), bytes);
    }
    QVERIFY(!reader.convert("application/unknown"));
}

void SelectionOwningTest::formsOnOffer()
{
    const QByteArray text = "caf\xC3\xA9 \xE2\x82\xAC";
    checkRows(this, &SelectionOwningTest::offers,
              {{"text",
                formsOfText(text),
                {{"UTF8_STRING", text},
                 {"text/plain;charset=utf-8", text},
                 {"text/plain", text},
                 {"STRING", "caf\xE9 ?"},
                 {"TEXT", text}}},
               {"empty text", formsOfText(""), {{"UTF8_STRING", ""}, {"STRING", ""}}},
               {"file",
                formsOfFile(QUrl::fromLocalFile(u"/tmp/a b"_s)),
                {{"text/uri-list", "file:///tmp/a%20b\r\n"},
                 {"x-special/gnome-copied-files", "copy\nfile:///tmp/a%20b"},
                 {"UTF8_STRING", "/tmp/a b"}}},
               {"picture", formsOfPNG("\x89PNG"), {{"image/png", "\x89PNG"}}}});
}

void SelectionOwningTest::formsAreConvertedOnceAndWithinABudget()
{
    std::atomic<int> conversions = 0;
    const auto form = [&conversions](const QByteArray& target) {
        return SelectionForm{target, target, 8, [&conversions] {
                                 ++conversions;
                                 return QByteArray(maxSelectionBytes, Qt::Uninitialized);
                             }};
    };
    own({form("a"), form("b"), form("c")});
    ForeignClient reader(display());
    QList<bool> isAnswered;
    for (const auto& received : reader.convertMultiple({"a", "a", "unknown", "MULTIPLE", "b", "a", "c"}))
        isAnswered.append(received.has_value());
    QCOMPARE(isAnswered, QList({true, true, false, false, true, true, false}));
    QCOMPARE(conversions, 3);
}

void SelectionOwningTest::requestsFromBeforeTheWriteAreRefused()
{
    own(formsOfText("text"));
    ForeignClient reader(display());
    xcb_timestamp_t owned = 0;
    memcpy(&owned, reader.convert("TIMESTAMP")->bytes.constData(), sizeof owned);
    QVERIFY(!reader.convert("UTF8_STRING", owned - 1));
    QVERIFY(reader.convert("UTF8_STRING", owned));
}

void SelectionOwningTest::largeReplies()
{
    const qsizetype piece = X11::outgoingPieceBytes;
    for (const qsizetype size : {piece, piece + 1, qsizetype(20'000'000)}) {
        const QByteArray text = numbers(size);
        own(formsOfText(text));
        const auto received = ForeignClient(display()).convert("UTF8_STRING");
        QVERIFY(received && received->bytes == text);
        QCOMPARE(received->type, QByteArray("UTF8_STRING"));
        QCOMPARE(received->isIncremental, size > piece);
    }
}

void SelectionOwningTest::readerFinishesAfterTheLoss()
{
    const QByteArray text = numbers(3'000'000);
    own(formsOfText(text));
    ForeignClient reader(display());
    reader.begin("UTF8_STRING");
    QVERIFY(reader.isAccepted());
    QByteArray received = reader.nextPiece().value_or("");

    ForeignClient other(display());
    other.copyText("other");
    QCOMPARE(waitForSnapshot().text, QByteArray("other"));

    for (auto piece = reader.nextPiece(); piece && !piece->isEmpty(); piece = reader.nextPiece())
        received += *piece;
    QVERIFY(received == text);
}

void SelectionOwningTest::lostReadersDoNoHarm()
{
    startEngine(soon);
    own(formsOfText(numbers(3'000'000)));
    ForeignClient mute(display()); // takes not even the announcement
    mute.begin("UTF8_STRING");
    ForeignClient stalled(display());
    stalled.begin("UTF8_STRING");
    QVERIFY(stalled.isAccepted());
    for (int i = 0; i < 20; ++i) {
        ForeignClient reader(display());
        reader.begin("UTF8_STRING");
        if (i % 2 == 0) // the others are gone before they are answered
            QVERIFY(reader.isAccepted() && reader.nextPiece());
    }
    // Their windows are watched until they are given up.
    const auto isWatched = [&](const ForeignClient& client) {
        xcb_connection_t* xcb = m_session->connection();
        const Xcb::Pointer<xcb_get_window_attributes_reply_t> window(
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, client.window()), nullptr));
        return (window->all_event_masks & XCB_EVENT_MASK_STRUCTURE_NOTIFY) != 0;
    };
    QVERIFY(VirtualSession::waitUntil([&] { return !isWatched(stalled) && !isWatched(mute); }));
    QCOMPARE(pasted("STRING"), numbers(3'000'000));
}

void SelectionOwningTest::pictureFileOutlivesItsName()
{
    const QTemporaryDir folder;
    const QByteArray bytes = "\x89PNG" + numbers(1'000'000);
    QFile picture(folder.filePath(u"a.png"_s));
    QVERIFY(picture.open(QIODevice::WriteOnly) && picture.write(bytes) == bytes.size());
    picture.close();

    const auto handle = FileHandle::open(picture.fileName());
    QVERIFY(handle);
    own(formsOfPNGFile(handle));
    QVERIFY(picture.remove());
    QVERIFY(pasted("image/png") == bytes);
    QVERIFY(!FileHandle::open(picture.fileName()));
    QVERIFY2(!FileHandle::open(folder.path()), "A folder is no picture.");
}

void SelectionOwningTest::lostConnectionIsMadeAnew()
{
    for (const auto cutBy : {&xcb_kill_client, &xcb_destroy_window}) {
        startEngine();
        const auto cut = [&] {
            cutBy(m_session->connection(), m_session->selectionOwner("CLIPBOARD_MANAGER"));
            Xcb::synchronize(m_session->connection());
        };
        own(formsOfText("ours"));
        cut();
        waitForManager();
        QCOMPARE(pasted(), QByteArray("ours"));

        ForeignClient owner(display());
        owner.copyText("theirs");
        QCOMPARE(waitForSnapshot().text, QByteArray("theirs"));
        cut(); // what was there before is no change
        waitForManager();
        cut();
        owner.copyText("meanwhile");
        QCOMPARE(waitForSnapshot(2).text, QByteArray("meanwhile"));

        // Who has to be asked again, in the middle of an answer, is.
        owner.copy({{"UTF8_STRING", {.bytes = numbers(400'000), .manner = Manner::StallInTheMiddle}}});
        QVERIFY(VirtualSession::waitUntil([&] { return owner.answered().contains("UTF8_STRING"); }));
        owner.offerText("in the end");
        cut();
        QCOMPARE(waitForSnapshot(3).text, QByteArray("in the end"));
    }
}

QTEST_GUILESS_MAIN(SelectionOwningTest)
#include "SelectionOwningTest.moc"
