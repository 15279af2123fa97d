#include "ViewModelFixture.h"

#include <QDir>
#include <QImage>
#include <QSemaphore>
#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class HistoryViewModelTest final : public QObject
{
    Q_OBJECT
private slots:
    void writesEachTypeInItsForm();
    void tellsAboutVanishedFiles();
    void pastesThenCloses();
    void pasteServiceLeavesTheKeyToTheUserWithoutTrust();
    void takesRemovalsBack();
    void keepsPicturesForAsLongAsTheyMayComeBack();
    void recordsWhatIsMarkedAndCopied();
    void annotatesPicturesOnly();
    void actionsOutliveTheirEntry();
};

void HistoryViewModelTest::writesEachTypeInItsForm()
{
    ViewModelFixture f;
    const QString oddlyNamed = f.folder.filePath(u"ü #%20?.png"_s);
    QVERIFY(QFile(oddlyNamed).open(QIODevice::WriteOnly));
    f.fill({ViewModelFixture::item(ClipType::text, u" padded \n"_s),
            ViewModelFixture::item(ClipType::image, oddlyNamed), ViewModelFixture::item(ClipType::file, oddlyNamed)});
    const QList<ClipItem> items = f.store.items();
    for (const ClipItem& item : items) {
        f.model.copy(item);
        QCOMPARE(f.toasts.last(), u"Copied "_s + item.snippet());
    }
    QCOMPARE(f.pasteboard.writes.size(), 3);
    QCOMPARE(f.ownChanges, 3);
    QCOMPARE(f.pasteboard.writes[0].string, " padded \n"_ba);
    QCOMPARE(f.pasteboard.pngFiles, QStringList{oddlyNamed});
    QCOMPARE(f.pasteboard.writes[2].fileURLs, QList{QUrl::fromLocalFile(oddlyNamed)});
}

void HistoryViewModelTest::tellsAboutVanishedFiles()
{
    using Command = void (HistoryViewModel::*)(const ClipItem&);
    for (const auto& [type, command] : {std::pair(ClipType::file, Command(&HistoryViewModel::paste)),
                                        {ClipType::image, Command(&HistoryViewModel::copy)},
                                        {ClipType::image, Command(&HistoryViewModel::annotate)}}) {
        for (const bool pinned : {false, true}) {
            ViewModelFixture f;
            ClipItem item = ViewModelFixture::item(type, f.folder.filePath(u"gone.png"_s));
            item.isPinned = pinned;
            f.fill({item});
            (f.model.*command)(f.entry(0));
            const QString notice = pinned ? u"File not found"_s : u"File no longer exists — removed from history"_s;
            QTRY_COMPARE(f.toasts, QStringList{notice});
            QCOMPARE(f.store.items().size(), pinned ? 1 : 0);
            QVERIFY(f.pasteboard.writes.isEmpty());
            QCOMPARE(f.ownChanges + f.closeRequests + f.keystrokes.pastes, 0);
        }
    }
}

void HistoryViewModelTest::pastesThenCloses()
{
    for (const auto& [result, notice] :
         {std::pair(PasteResult::sent, u"Pasted “b”"_s), {PasteResult::notSent, u"Copied “b” — press ⌘V to paste"_s}}) {
        ViewModelFixture f;
        f.keystrokes.finishesAtOnce = false;
        f.fillTexts({u"a"_s, u"b"_s});
        const QUuid id = f.entry(1).id;
        f.model.paste(f.entry(1));
        QCOMPARE(f.pasteboard.writes.first().string, QByteArray("b"));
        QCOMPARE(f.stored(), (QStringList{u"b"_s, u"a"_s})); // moved to the top, but the same entry
        QCOMPARE(f.store.items().first().id, id);
        QCOMPARE(f.selected(), u"a"_s); // the selection stays with its entry
        QCOMPARE(f.closeRequests, 1);
        QCOMPARE(f.keystrokes.pastes, 0); // only after the panel has closed
        QTRY_COMPARE(f.keystrokes.pastes, 1);
        QVERIFY(f.toasts.isEmpty()); // the key is still on its way
        f.keystrokes.finishPastes(result);
        QCOMPARE(f.toasts, QStringList{notice});
    }
}

void HistoryViewModelTest::pasteServiceLeavesTheKeyToTheUserWithoutTrust()
{
    FakeKeystrokeSender keystrokes;
    keystrokes.finishesAtOnce = false;
    keystrokes.trusted = false;
    QStringList toasts;
    auto service = std::make_unique<PasteService>(keystrokes, [&](const QString& text) { toasts.append(text); });
    service->pasteAfterClose(u"“x”"_s);
    QCOMPARE(toasts, QStringList{u"Copied “x” — press ⌘V to paste"_s});
    QCOMPARE(keystrokes.trustRequests, 1);
    // The key of a later paste would come after that of this one.
    keystrokes.trusted = true;
    service->pasteAfterClose(u"“y”"_s);
    QTRY_VERIFY(keystrokes.pastes > 0);
    QCOMPARE(keystrokes.pastes, 1);
    service.reset();
    keystrokes.finishPastes();
    QCOMPARE(toasts.size(), 1); // the answer comes too late for one
}

void HistoryViewModelTest::takesRemovalsBack()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    f.model.togglePin(f.entry(2));
    f.model.clearHistory();
    QCOMPARE(f.stored(), QStringList{u"c"_s});
    f.model.remove(f.entry(0));
    QCOMPARE(f.toasts.filter(u"⌘Z"_s).size(), 2); // both tell of it
    QVERIFY(f.model.undoRemoval() && f.model.undoRemoval() && !f.model.undoRemoval());
    QCOMPARE(f.stored(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    QCOMPARE(f.selected(), u"a"_s);
}

void HistoryViewModelTest::keepsPicturesForAsLongAsTheyMayComeBack()
{
    ViewModelFixture f;
    QList<ClipItem> pictures;
    for (const QString& name : {u"deleted.png"_s, u"copied again.png"_s, u"brought back.png"_s}) {
        pictures.append(ViewModelFixture::item(ClipType::image, f.folder.filePath(name)));
        QVERIFY(QImage(1, 1, QImage::Format_RGB32).save(pictures.last().content.toString()));
    }
    f.fill(pictures);
    const auto files = [&f] { return QDir(f.folder.path()).entryList({u"*.png"_s}, QDir::Files, QDir::Name); };

    for (int i = 0; i < 3; ++i)
        f.model.remove(f.entry(0));
    QCOMPARE(files().size(), 3);
    QVERIFY(f.model.undoRemoval());
    (void)f.store.add(pictures.at(1));
    f.model.forgetRemoved();
    QVERIFY(!f.model.undoRemoval());
    QCOMPARE(files(), (QStringList{u"brought back.png"_s, u"copied again.png"_s}));
}

void HistoryViewModelTest::recordsWhatIsMarkedAndCopied()
{
    ViewModelFixture f;
    ClipItem from = ViewModelFixture::item(ClipType::text, u"see https://a.example"_s);
    from.sourceApp = u"Notes"_s;
    f.fill({from});
    f.model.copyMarked(u"https://a.example"_s, f.entry(0));
    QCOMPARE(f.pasteboard.writes.last().string, QByteArray("https://a.example"));
    QCOMPARE(f.ownChanges, 1);
    QCOMPARE(f.entry(0).type, ClipType::link);
    QCOMPARE(f.entry(0).sourceApp, u"Notes"_s);
    f.model.copyMarked(u" \n"_s, std::nullopt);
    QCOMPARE(f.stored().size(), 2);
}

void HistoryViewModelTest::annotatesPicturesOnly()
{
    ViewModelFixture f;
    const QString picture = f.folder.filePath(u"p.png"_s);
    QVERIFY(QImage(3, 2, QImage::Format_RGB32).save(picture));
    ClipItem from = ViewModelFixture::item(ClipType::image, picture);
    from.sourceApp = u"Shot"_s;
    from.isPinned = true;
    f.fill({from, ViewModelFixture::item(ClipType::file, picture)});
    QList<QSize> opened;
    f.model.onAnnotate = [&](const ClipItem&, const QImage& image) { opened.append(image.size()); };
    f.model.annotate(f.entry(1));
    f.model.annotate(f.entry(0));
    QVERIFY(opened.isEmpty()); // decoded elsewhere
    QTRY_COMPARE(opened, QList{QSize(3, 2)});

    const auto id = f.model.addAnnotateResult(u"/new.png"_s, f.entry(0));
    const ClipItem added = f.model.items().at(1); // behind the pinned one
    QCOMPARE(id, added.id);
    QCOMPARE(added.content.toString(), u"/new.png"_s);
    QCOMPARE(added.sourceApp, u"Shot"_s);
    QVERIFY(!added.isPinned);
}

void HistoryViewModelTest::actionsOutliveTheirEntry()
{
    ViewModelFixture f;
    QSemaphore mayRun;
    f.perform = [&f](const SmartActionEffect&) { f.model.setQrPreview(QImage(1, 1, QImage::Format_Mono)); };
    f.catalogue = {{u"One"_s, [&mayRun] {
                        mayRun.acquire();
                        return SmartActionResult{{SmartActionEffect::Kind::copyQRCode, u"1"_s}, u"done"_s};
                    }}};
    QVERIFY(f.model.smartActions().isEmpty()); // nothing selected
    f.fillTexts({u"a"_s, u"b"_s});
    const int readsBefore = f.catalogueReads;
    f.model.activate(FocusKey::action(1)); // there is only one
    f.model.activate(FocusKey::action(0));
    QVERIFY(f.model.isUnderWay(u"One"_s));
    QCOMPARE(f.catalogueReads, readsBefore + 1);
    f.model.remove(f.entry(0));
    QVERIFY(!f.model.isUnderWay(u"One"_s)); // of the entry that is selected now
    mayRun.release();
    QTRY_COMPARE(f.effects.size(), 1);
    QCOMPARE(f.toasts.last(), u"done"_s);
    QVERIFY(f.model.qrPreview().isNull()); // the code is not this entry's
}

QTEST_GUILESS_MAIN(HistoryViewModelTest)
#include "HistoryViewModelTest.moc"
