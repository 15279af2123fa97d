#include "EditorFixture.h"

#include "ResultFile.h"
#include "Rows.h"

#include <QFile>
#include <QFileDialog>
#include <QRegularExpression>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// How the editor opens, and what becomes of a picture when it is left.
class EditorControllerTest final : public QObject
{
    Q_OBJECT
private slots:
    void leavesWithTheResult();
    void unchangedPictureIsNotWrittenAgain();
    void failureLosesNothing();
    void asksBeforeItDiscards();
    void hearsNothingWhileItLeaves();
    void losesNothingWhenTheProgramEnds();
    void savesWhereTheUserWants();
    void remembersColorAndSize();
};

namespace {

void checkAnswer(const char* keys, bool isDiscarded)
{
    EditorFixture f;
    f.open();
    f.drag({100, 100}, {200, 200});
    f.keys(u"Escape"_s);
    QVERIFY(f.child(u"DiscardQuestion"_s)->isVisible());
    QTRY_VERIFY(f.child(u"Discard"_s)->hasFocus());
    f.keys(u"Ctrl++"_s); // not behind the question
    QCOMPARE(f.canvas()->zoomPercent(), 100);
    f.keys(QString::fromLatin1(keys));
    if (!isDiscarded) {
        QVERIFY(f.closedWith.isEmpty());
        QTRY_VERIFY(!f.child(u"DiscardQuestion"_s));
        f.keys(u"Ctrl+Z Escape"_s); // nothing to ask about any more
    }
    QCOMPARE(f.closedWith, QList{std::optional(f.item.id)});
    QTRY_VERIFY(!f.window());
}

} // namespace

void EditorControllerTest::leavesWithTheResult()
{
    EditorFixture f;
    for (const auto& [button, toast] :
         {std::pair(u"Exit.copy"_s, u"Copied “image”"_s), std::pair(u"Exit.save"_s, u"Saved image"_s),
          std::pair(u"Exit.paste"_s, u"Pasted “image”"_s)}) {
        f.open();
        f.keys(u"R"_s);
        f.drag({100, 100}, {200, 200});
        QTest::mouseClick(f.child(button), Qt::LeftButton);
        QTRY_VERIFY(!f.window());
        QTRY_VERIFY(!f.toasts.isEmpty());
        QCOMPARE(f.toasts.takeLast(), toast);
        QCOMPARE(extentOf(QImage(f.added.last())), QRect(98, 98, 104, 104));
    }
    QTRY_COMPARE(f.keystrokes.pastes, 1);
    QCOMPARE(f.added.size(), 3);
    QCOMPARE(f.written.size(), 2);
    QCOMPARE(QImage::fromData(f.written.last()), QImage(f.added.last()));
    for (const QString& path : {f.added.last(), f.imagesDir})
        QVERIFY(!(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)));
}

void EditorControllerTest::unchangedPictureIsNotWrittenAgain()
{
    EditorFixture f;
    f.open();
    f.keys(u"Ctrl+C"_s);
    QTRY_COMPARE(f.added, QStringList{f.item.content.toString()});
    QVERIFY(!QFile::exists(f.imagesDir));
    QTRY_VERIFY(!f.window());
    QVERIFY(QFile::remove(f.item.content.toString()));
    f.open();
    f.keys(u"Ctrl+S"_s);
    QTRY_COMPARE(f.added.size(), 2);
    QCOMPARE(QImage(f.added.last()), plain());
}

void EditorControllerTest::failureLosesNothing()
{
    EditorFixture f;
    QFile blocker(f.imagesDir); // a file where the folder should be
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    f.open();
    f.drag({100, 100}, {200, 200});
    f.keys(u"Ctrl+C"_s);
    QTRY_COMPARE(f.toasts, QStringList{u"Couldn't copy image"_s});
    QVERIFY(f.window() && f.written.isEmpty() && blocker.remove());
    f.keys(u"Ctrl+C"_s);
    QTRY_COMPARE(f.written.size(), 1);
    QVERIFY(QImage::fromData(f.written.first()) != plain());
}

void EditorControllerTest::asksBeforeItDiscards()
{
    checkRows(checkAnswer, {{"Return", true}, {"Escape", false}, {"Tab Return", false}, {"Tab Tab Return", true}});
    EditorFixture f;
    f.open();
    f.drag({100, 100}, {200, 200});
    f.open(plain(Qt::blue)); // the next picture waits for the answer
    QTRY_VERIFY(f.child(u"DiscardQuestion"_s));
    f.keys(u"Return"_s);
    QTRY_COMPARE(f.colorAt({150, 150}), QColor(Qt::blue));
    f.window()->close(); // by its frame
    QTRY_VERIFY(!f.window());
}

void EditorControllerTest::hearsNothingWhileItLeaves()
{
    EditorFixture f;
    f.isPanelSlow = true;
    f.open();
    const double scale = f.canvas()->viewport().scale();
    f.keys(u"Escape"_s);
    QVERIFY(f.window()); // until the panel has the keyboard
    f.drag({100, 100}, {200, 200});
    f.keys(u"Ctrl++ Ctrl+S t"_s);
    f.window()->resize(f.window()->size() + QSize(60, 60));
    QCOMPARE(f.canvas()->viewport().scale(), scale);
    f.panel.show();
    f.panel.activateWindow();
    QTRY_VERIFY(!f.window());
    QVERIFY(f.added.isEmpty());
    QCOMPARE(f.closedWith.size(), 1);
}

void EditorControllerTest::losesNothingWhenTheProgramEnds()
{
    EditorFixture f;
    f.open();
    f.editor.keepChanges(30s);
    QVERIFY(f.added.isEmpty()); // nothing to keep
    f.beginLabel();
    f.type(u"typed"_s);
    f.editor.keepChanges(30s);
    QCOMPARE(f.added.size(), 1);
    QCOMPARE(extentOf(QImage(f.added.first())).topLeft(), QPoint(61, 53));
    f.keys(u"Escape"_s);
    f.editor.keepChanges(30s);
    QCOMPARE(f.added.last(), f.added.first()); // named by its content, which has the letters
    f.editor.quit();
    QCOMPARE(f.quits, 0);
    QVERIFY(f.child(u"DiscardQuestion"_s)->isVisible());
    f.keys(u"Return"_s);
    QCOMPARE(f.quits, 1);
    QTRY_VERIFY(!f.window());
    QVERIFY(f.closedWith.isEmpty()); // the panel does not open for an end
}

void EditorControllerTest::savesWhereTheUserWants()
{
    EditorFixture f;
    const QTemporaryDir pictures;
    const QString path = pictures.filePath(u"mine.png"_s);
    f.open();
    const auto saveAs = [&](const QString& to) {
        f.keys(u"Ctrl+Shift+S"_s);
        auto* dialog = f.child<QFileDialog>({});
        QVERIFY(dialog->selectedFiles().first().contains(QRegularExpression(u"Annotated [-\\d]+ [.\\d]+\\.png$"_s)));
        const qsizetype told = f.toasts.size();
        emit dialog->fileSelected(to);
        dialog->close();
        QTRY_COMPARE(f.toasts.size(), told + 1);
        QTRY_VERIFY(!f.child<QFileDialog>({}));
    };
    f.drag({100, 100}, {200, 100});
    saveAs(path);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    f.drag({100, 200}, {200, 200});
    saveAs(path);
    QCOMPARE(extentOf(QImage(path)).bottom(), 210);
    QCOMPARE(QFile::permissions(path) & QFile::ReadOther, QFile::Permissions());
    saveAs(path + u"/not/a/folder.png"_s);
    QCOMPARE(f.toasts, (QStringList{u"Saved image"_s, u"Saved image"_s, u"Couldn't save image"_s}));
    QCOMPARE(QDir(pictures.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"mine.png"_s});
    QVERIFY(f.added.isEmpty() && f.window());            // the history and the document are as they were
    QVERIFY(!ResultFile::write("another", path, false)); // made while the dialog was open
    QCOMPARE(QImage(path).size(), QSize(400, 300));
}

void EditorControllerTest::remembersColorAndSize()
{
    EditorFixture f;
    f.open();
    f.keys(u"4"_s);
    QTest::mouseClick(f.child(u"Size.large"_s), Qt::LeftButton);
    QCOMPARE(EditorController::rememberedColor(), AnnotationPalette::blue);
    QCOMPARE(EditorController::rememberedSize(), AnnotationSize::large);
    QSettings().setValue("editorColor", u"Red"_s);
    QSettings().setValue("editorSize", 7);
    QCOMPARE(EditorController::rememberedColor(), AnnotationPalette::red);
    QCOMPARE(EditorController::rememberedSize(), AnnotationSize::medium);
}

QTEST_MAIN(EditorControllerTest)
#include "EditorControllerTest.moc"
