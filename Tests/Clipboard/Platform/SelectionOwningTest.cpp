#include "EngineWithLog.h"
#include "ForeignClient.h"
#include "VirtualSession.h"
#include "Xcb.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <future>
#include <memory>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Manner = ForeignClient::Answer::Manner;

/// What other programs get of the content that the engine owns.
class SelectionOwningTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void formsOnOffer_data();
    void formsOnOffer();
    void multipleConversions();
    void formsAreConvertedOnceAndWithinABudget();
    void requestsFromBeforeTheWriteAreRefused();
    void largeReplies_data();
    void largeReplies();
    void readerFinishesAfterTheLoss();
    void lostReadersDoNoHarm();
    void pictureFileOutlivesItsName();
    void primaryFollows();
    void lostConnectionIsMadeAnew_data();
    void lostConnectionIsMadeAnew();

private:
    [[nodiscard]] QByteArray display() const { return m_session->display().toLatin1(); }
    void own(const SelectionForms& forms);

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<EngineWithLog> m_log;
};

void SelectionOwningTest::initTestCase()
{
    VirtualSession::Options options;
    options.windowManager = false;
    m_session = std::make_unique<VirtualSession>(options);
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
}

void SelectionOwningTest::init()
{
    m_log = std::make_unique<EngineWithLog>(m_session->display());
    QVERIFY(m_log->engine);
    QVERIFY(VirtualSession::waitUntil([&] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; }));
}

void SelectionOwningTest::cleanup()
{
    m_log.reset();
}

/// Puts the content on the clipboard and waits until it is there.
void SelectionOwningTest::own(const SelectionForms& forms)
{
    m_log->engine->own(forms);
    std::promise<void> done;
    m_log->engine->afterWrites(false, [&](bool) { done.set_value(); });
    done.get_future().wait();
}

void SelectionOwningTest::formsOnOffer_data()
{
    using Forms = QList<QPair<QByteArray, QByteArray>>;
    QTest::addColumn<SelectionForms>("forms");
    QTest::addColumn<Forms>("received");

    const QByteArray text = "caf\xC3\xA9 \xE2\x82\xAC";
    QTest::newRow("text") << formsOfText(text)
                          << Forms{{"UTF8_STRING", text},
                                   {"text/plain;charset=utf-8", text},
                                   {"text/plain", text},
                                   {"STRING", "caf\xE9 ?"},
                                   {"TEXT", text}};
    QTest::newRow("empty text") << formsOfText("") << Forms{{"UTF8_STRING", ""}, {"STRING", ""}};
    QTest::newRow("file") << formsOfFile(QUrl::fromLocalFile(u"/tmp/a b"_s))
                          << Forms{{"text/uri-list", "file:///tmp/a%20b\r\n"},
                                   {"x-special/gnome-copied-files", "copy\nfile:///tmp/a%20b"},
                                   {"UTF8_STRING", "/tmp/a b"}};
    QTest::newRow("picture") << formsOfPNG("\x89PNG") << Forms{{"image/png", "\x89PNG"}};
}

void SelectionOwningTest::formsOnOffer()
{
    using Forms = QList<QPair<QByteArray, QByteArray>>;
    QFETCH(const SelectionForms, forms);
    QFETCH(const Forms, received);
    own(forms);
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
    }
    QVERIFY(!reader.convert("application/unknown"));
}

void SelectionOwningTest::multipleConversions()
{
    own(formsOfText("text"));
    ForeignClient reader(display());
    const auto received = reader.convertMultiple({"UTF8_STRING", "image/png", "STRING", "MULTIPLE"});
    const std::vector<std::optional<QByteArray>> expected{"text", {}, "text", {}};
    QCOMPARE(received, expected);
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
    const auto received = reader.convertMultiple({"a", "a", "b", "a", "c"});
    QVERIFY(received.size() == 5 && received[0] && received[1] && received[2] && received[3]);
    QVERIFY(!received[4]);
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

void SelectionOwningTest::largeReplies_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<bool>("isIncremental");
    const qsizetype piece = X11::outgoingPieceBytes;
    QTest::newRow("one piece") << piece << false;
    QTest::newRow("a byte more") << piece + 1 << true;
    QTest::newRow("20 MB") << qsizetype(20'000'000) << true;
}

void SelectionOwningTest::largeReplies()
{
    QFETCH(const qsizetype, size);
    const QByteArray text = numbers(size);
    own(formsOfText(text));
    ForeignClient reader(display());
    const auto received = reader.convert("UTF8_STRING");
    QVERIFY(received);
    QVERIFY(received->bytes == text);
    QCOMPARE(received->type, QByteArray("UTF8_STRING"));
    QTEST(received->isIncremental, "isIncremental");
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
    other.offerText("other");
    other.take();
    QCOMPARE(m_log->waitForSnapshot().text, QByteArray("other"));

    for (auto piece = reader.nextPiece(); piece && !piece->isEmpty(); piece = reader.nextPiece())
        received += *piece;
    QVERIFY(received == text);
}

void SelectionOwningTest::lostReadersDoNoHarm()
{
    m_log.reset();
    m_log = std::make_unique<EngineWithLog>(m_session->display(), 200ms);
    own(formsOfText(numbers(3'000'000)));
    ForeignClient stalled(display());
    stalled.begin("UTF8_STRING");
    QVERIFY(stalled.isAccepted());
    for (int i = 0; i < 20; ++i) {
        ForeignClient reader(display());
        reader.begin("UTF8_STRING");
        if (i % 2 == 0) // the others are gone before they are answered
            QVERIFY(reader.isAccepted() && reader.nextPiece());
    }
    // Its window is watched until it is given up.
    QVERIFY(VirtualSession::waitUntil([&] {
        xcb_connection_t* xcb = m_session->connection();
        const Xcb::Pointer<xcb_get_window_attributes_reply_t> window(
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, stalled.window()), nullptr));
        return (window->all_event_masks & XCB_EVENT_MASK_STRUCTURE_NOTIFY) == 0;
    }));
    QCOMPARE(ForeignClient(display()).convert("STRING")->bytes, numbers(3'000'000));
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
    QVERIFY(ForeignClient(display()).convert("image/png")->bytes == bytes);
    QVERIFY(!FileHandle::open(picture.fileName()));
    QVERIFY2(!FileHandle::open(folder.path()), "A folder is no picture.");
}

void SelectionOwningTest::primaryFollows()
{
    m_log->engine->own(formsOfText("marked too"));
    std::promise<void> done;
    m_log->engine->afterWrites(true, [&](bool) { done.set_value(); });
    done.get_future().wait();
    QCOMPARE(ForeignClient(display(), "PRIMARY").convert("UTF8_STRING")->bytes, QByteArray("marked too"));
    QCOMPARE(ForeignClient(display()).convert("UTF8_STRING")->bytes, QByteArray("marked too"));
}

void SelectionOwningTest::lostConnectionIsMadeAnew_data()
{
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("killed") << true;
    QTest::newRow("without its window") << false;
}

void SelectionOwningTest::lostConnectionIsMadeAnew()
{
    QFETCH(const bool, isKilled);
    const auto cut = [&] {
        const auto window = m_session->selectionOwner("CLIPBOARD_MANAGER");
        if (isKilled)
            xcb_kill_client(m_session->connection(), window);
        else
            xcb_destroy_window(m_session->connection(), window);
        Xcb::synchronize(m_session->connection());
    };
    own(formsOfText("ours"));
    cut();
    QVERIFY(VirtualSession::waitUntil([&] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; }));
    QCOMPARE(ForeignClient(display()).convert("UTF8_STRING")->bytes, QByteArray("ours"));

    ForeignClient owner(display());
    owner.copyText("theirs");
    QCOMPARE(m_log->waitForSnapshot().text, QByteArray("theirs"));
    cut(); // what was there before is no change
    QVERIFY(VirtualSession::waitUntil([&] { return m_session->selectionOwner("CLIPBOARD_MANAGER") != 0; }));
    cut();
    owner.copyText("meanwhile");
    QCOMPARE(m_log->waitForSnapshot(2).text, QByteArray("meanwhile"));
}

QTEST_GUILESS_MAIN(SelectionOwningTest)
#include "SelectionOwningTest.moc"
