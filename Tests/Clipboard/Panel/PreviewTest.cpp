#include "PanelFixture.h"

#include "ActionChip.h"
#include "CodeBody.h"
#include "ColorBody.h"
#include "MetaCaption.h"
#include "PreviewBody.h"
#include "PreviewPane.h"
#include "QRInline.h"
#include "TextBlock.h"
#include "TextBody.h"

#include <QFile>
#include <QLocale>
#include <QScrollArea>
#include <QScrollBar>
#include <QSemaphore>
#include <QSignalSpy>

#include <algorithm>
#include <utility>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

class PreviewTest final : public QObject
{
    Q_OBJECT
private slots:
    void longTextIsCutWithANote();
    void codeStaysInItsWell();
    void colorShowsItsValues();
    void captionTellsSourceAgeAndSize_data();
    void captionTellsSourceAgeAndSize();
    void captionReadsFilesAside();
    void filesShowWhatIsThere();
    void largeEntryGetsItsChipsWhenTheyAreFound();
    void chipsOutOfSightScrollIntoIt();
    void qrCodeStaysWithItsEntry();
    void markedTextIsCopied_data();
    void markedTextIsCopied();
};

namespace {

constexpr int width = 348;

ClipItem item(ClipType type, const QString& content)
{
    ClipItem made = ViewModelFixture::item(type, content);
    made.createdAt = ClipboardCore::currentTime();
    return made;
}

QList<TextBlock*> shownBlocks(const QWidget& body)
{
    QList<TextBlock*> shown;
    for (auto* block : body.findChildren<TextBlock*>()) {
        if (!block->isHidden())
            shown.append(block);
    }
    return shown;
}

QList<ActionChip*> shownChips(const PanelFixture& f)
{
    QList<ActionChip*> shown;
    for (auto* chip : f.view()->findChildren<ActionChip*>()) {
        if (chip->isVisible())
            shown.append(chip);
    }
    return shown;
}

} // namespace

void PreviewTest::longTextIsCutWithANote()
{
    for (const bool isCut : {false, true}) {
        TextBody body(ClipType::text, nullptr);
        body.resize(width, 0);
        body.setItem(item(ClipType::text, QString(isCut ? 20001 : 20000, u'a')), 400);
        const auto blocks = shownBlocks(body);
        QCOMPARE(blocks.size(), isCut ? 2 : 1);
        QVERIFY(body.contentHeight() >= std::min(400, blocks.first()->contentHeight()));
        if (isCut)
            QVERIFY(blocks.last()->accessibleName().contains(QLocale().toString(20000)));
    }
}

void PreviewTest::colorShowsItsValues()
{
    ColorBody body(nullptr);
    body.resize(width, 98);
    for (const auto& [content, values] :
         {std::pair(u"#e2725b"_s, QStringList({u"HEX #E2725B"_s, u"RGB 226, 114, 91"_s, u"HSL 10, 70%, 62%"_s})),
          std::pair(u"teal-ish"_s, QStringList({u"HEX TEAL-ISH"_s, u"RGB "_s, u"HSL "_s}))}) {
        body.setItem(item(ClipType::color, content), 400);
        QStringList shown;
        for (const auto* block : body.findChildren<TextBlock*>()) {
            shown.append(block->accessibleName());
            QVERIFY(block->contentHeight() <= 18); // on one line
        }
        QCOMPARE(shown, values);
    }
}

void PreviewTest::captionTellsSourceAgeAndSize_data()
{
    QTest::addColumn<ClipType>("type");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("details");
    const auto row = [](const char* name, ClipType type, const QString& content, const QStringList& details,
                        const QString& source = u"Notes"_s) {
        QTest::newRow(name) << type << content << source << details;
    };
    const QLocale here;
    row("text", ClipType::text, u"héllo"_s, {u"5 characters"_s});
    row("no source", ClipType::text, u"x"_s, {u"1 characters"_s}, {});
    row("largest counted text", ClipType::text, QString(262144, u'a'), {here.toString(262144) + u" characters"_s});
    row("larger text", ClipType::text, QString(262145, u'a'),
        {here.formattedDataSize(262145, 1, QLocale::DataSizeSIFormat)});
    row("code", ClipType::code, u"a\nb\n"_s, {u"3 lines"_s});
    row("picture that is gone", ClipType::image, u"/nowhere/a.png"_s, {});
}

void PreviewTest::captionTellsSourceAgeAndSize()
{
    QFETCH(ClipType, type);
    QFETCH(QString, content);
    QFETCH(QString, source);
    QFETCH(QStringList, details);
    PanelFixture f;
    MetaCaption caption(nullptr);
    ClipItem shown = item(type, content);
    if (!source.isEmpty())
        shown.sourceApp = source;
    caption.setItem(shown);
    QTRY_COMPARE(caption.parts(), QStringList({source.isEmpty() ? u"Unknown"_s : source, u"just now"_s}) + details);
}

void PreviewTest::captionReadsFilesAside()
{
    PanelFixture f;
    QFile file(f.folder.filePath(u"note.txt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    ClipItem note = item(ClipType::file, file.fileName());
    note.sourceApp = u"a program of many words "_s.repeated(9);
    MetaCaption caption(nullptr);
    caption.resize(width, MetaCaption::height);
    caption.setItem(note);
    QCOMPARE(caption.parts().size(), 2);
    QImage before;
    for (const int bytes : {1500, 2700}) { // it grows, and is shown again
        QVERIFY(file.resize(bytes));
        caption.setItem(note);
        const QString size = QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
        QTRY_COMPARE(caption.parts().last(), size);
        QVERIFY(caption.accessibleName().endsWith(size));
        const QImage shown = caption.grab().toImage();
        QVERIFY(shown != before); // the name gives way to the size, not the other way round
        before = shown;
    }
}

void PreviewTest::filesShowWhatIsThere()
{
    PanelFixture f;
    const QString late = f.folder.filePath(u"late.txt"_s);
    f.fill({f.item(ClipType::file, f.folder.path()), f.item(ClipType::file, u"/etc/passwd"_s),
            f.item(ClipType::file, late)});
    QVERIFY(f.open());
    QTRY_VERIFY(f.workspace.fileIconsAsked.endsWith(f.folder.path() + u'/'));
    const auto tile = [&](int row) { return f.colorAt(QPoint(8 + 11, 96 + 44 * row + 22)); };
    QTRY_VERIFY(tile(2) != tile(1)); // dimmed
    QFile file(late);
    QVERIFY(file.open(QIODevice::WriteOnly));
    f.panel.dismiss();
    QVERIFY(f.open()); // and looks again
    QTRY_COMPARE(tile(2), tile(1));
}

void PreviewTest::largeEntryGetsItsChipsWhenTheyAreFound()
{
    PanelFixture f;
    QSemaphore mayFind;
    QSemaphore mayRun;
    f.catalogueOf = [&](const ClipboardCore::ClipItem& entry) {
        if (entry.content.byteCount() > 50'000)
            mayFind.acquire();
        return QList<ClipboardCore::SmartAction>{{u"Slugify"_s, [&mayRun] {
                                                      mayRun.acquire();
                                                      return ClipboardCore::SmartActionResult();
                                                  }}};
    };
    f.fillTexts({u"small"_s, QString(100'000, u'a')});
    QVERIFY(f.open());
    f.press(Qt::Key_Down);
    QVERIFY(shownChips(f).isEmpty());
    // Keys that are pressed too soon are not misunderstood.
    f.press(Qt::Key_K, Qt::ControlModifier);
    f.press(Qt::Key_Return);
    QVERIFY(f.model.cmdkOpen());
    f.press(Qt::Key_Escape);
    f.press(Qt::Key_Right);
    QCOMPARE(f.model.focus(), FocusKey::action(0));
    mayFind.release();
    QTRY_COMPARE(shownChips(f).size(), 1);
    // What runs shows that it does, and nothing waits for it.
    QTest::mouseClick(shownChips(f).first(), Qt::LeftButton);
    QTRY_VERIFY(!shownChips(f).first()->accessibleDescription().isEmpty());
    QVERIFY(f.effects.isEmpty());
    mayRun.release();
    QTRY_VERIFY(shownChips(f).first()->accessibleDescription().isEmpty());
    QCOMPARE(f.effects.size(), 1);
}

void PreviewTest::chipsOutOfSightScrollIntoIt()
{
    PanelFixture f;
    for (int i = 0; i < 12; ++i)
        f.catalogue.append(f.action(u"A rather long name %1"_s.arg(i)));
    f.fillTexts({u"line\n"_s.repeated(200), u"short"_s});
    QVERIFY(f.open());
    QRect before;
    for (const ActionChip* shown : shownChips(f)) { // side by side, or in a row below
        const QRect place = shown->controlRectIn(f.view());
        QVERIFY(place.left() > before.right() ? place.top() == before.top() || before.isNull()
                                              : place.top() > before.bottom());
        QVERIFY(place.right() <= Theme::panelWidth - Theme::margin);
        before = place;
    }
    ActionChip* chip = shownChips(f).first();
    const QRect content(Theme::listWidth, Theme::headerHeight, Theme::panelWidth - Theme::listWidth, 372);
    QTRY_VERIFY(!content.contains(chip->controlRectIn(f.view())));
    f.press(Qt::Key_Right);
    for (const TextBlock* block : f.view()->findChildren<TextBlock*>())
        QTRY_VERIFY(block->isLaidOut()); // and the chips go down with it
    QVERIFY(content.contains(chip->controlRectIn(f.view())));
    QTRY_COMPARE(f.frame(FocusKey::action(0)), chip->controlRectIn(f.view()));
    f.press(Qt::Key_Left);
    QVERIFY(!f.model.focus().has_value());
    f.press(Qt::Key_Down);
    f.press(Qt::Key_Up);
    QTRY_VERIFY(!content.contains(chip->controlRectIn(f.view()))); // at its top again
}

void PreviewTest::qrCodeStaysWithItsEntry()
{
    PanelFixture f;
    f.fillTexts({u"line\n"_s.repeated(60), u"other"_s});
    QVERIFY(f.open());
    const auto* code = f.view()->findChild<QRInline*>();
    QVERIFY(!code->isVisible());
    f.model.setQrPreview(QImage(290, 290, QImage::Format_RGB32));
    f.view()->sync();
    QVERIFY(code->isVisible());
    const QPoint corner = code->mapTo(f.view(), QPoint(0, 0));
    const QRect ground(corner, QSize(184, 184));
    QVERIFY2(ground.top() >= Theme::headerHeight && ground.bottom() < 460, qPrintable(QString::number(ground.top())));
    f.press(Qt::Key_Down);
    QVERIFY(!code->isVisible());
    f.press(Qt::Key_Up);
    QVERIFY(!code->isVisible());
    QCOMPARE(f.view()->findChild<PreviewBody*>()->mapTo(f.view(), QPoint(0, 0)).y(),
             Theme::headerHeight + Theme::margin);
}

void PreviewTest::codeStaysInItsWell()
{
    CodeBody body(nullptr);
    body.resize(width, 200);
    body.show(); // what is hidden does not scroll
    const auto* area = body.findChild<QScrollArea*>();
    const auto* code = body.findChild<TextBlock*>();
    const auto show = [&](const QString& text) {
        body.setItem(item(ClipType::code, text), 400);
        QTRY_VERIFY(code->isLaidOut());
    };
    show(u"short\n"_s + QString(300, u'x'));
    QCOMPARE(body.contentHeight(), 2 * 18 + 16);
    QVERIFY(area->horizontalScrollBar()->maximum() > 300 * 5 - width);
    area->horizontalScrollBar()->setValue(200);
    show(QString(300, u'y'));
    QCOMPARE(area->horizontalScrollBar()->value(), 0);
    show(u"line\n"_s.repeated(5000));
    QCOMPARE(body.contentHeight(), 196);
    QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
    QVERIFY(area->verticalScrollBar()->maximum() > 3000 * 18); // as many lines as are shown of a long text
}

void PreviewTest::markedTextIsCopied_data()
{
    QTest::addColumn<ClipType>("type");
    QTest::addColumn<QString>("content");
    QTest::newRow("text") << ClipType::text << u"first line\nsecond line"_s;
    QTest::newRow("link") << ClipType::link << u"https://fieldnotes.example/2026"_s;
    QTest::newRow("code") << ClipType::code << u"a = 1\nb = 2"_s;
    QTest::newRow("colour") << ClipType::color << u"#E2725B"_s;
}

void PreviewTest::markedTextIsCopied()
{
    QFETCH(ClipType, type);
    QFETCH(QString, content);
    PanelFixture f;
    f.fill({f.item(ClipType::text, u"another"_s), f.item(type, content)});
    QVERIFY(f.open());
    f.press(Qt::Key_Down);
    // All that can be marked, one after the other: the last counts, and of several that is the first one here.
    auto blocks = shownBlocks(*f.view()->findChildren<PreviewBody*>().last());
    std::reverse(blocks.begin(), blocks.end());
    for (auto* block : std::as_const(blocks)) {
        const QPoint end(block->width() - 1, block->height() - 2);
        QTest::mousePress(block, Qt::LeftButton, {}, {0, 2});
        QTest::mouseMove(block, end);
        QTest::mouseRelease(block, Qt::LeftButton, {}, end);
    }
    f.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(f.pasteboard.content.string, content.toUtf8());
    QCOMPARE(f.stored().first(), content);
    QVERIFY(f.store.items().first().createdAt > 1000); // recorded just now
    QVERIFY(f.view()->activeField()->hasFocus());      // what is typed next is still a search
}

QTEST_MAIN(PreviewTest)

#include "PreviewTest.moc"
