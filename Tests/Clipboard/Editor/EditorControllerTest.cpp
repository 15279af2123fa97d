#include "EditorController.h"
#include "CanvasView.h"
#include "EditorWindow.h"
#include "Fakes.h"
#include "PasteService.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QInputMethodEvent>
#include <QPaintEvent>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

constexpr QRgb red = 0xffff3b30;

QImage plain(const QColor& color = Qt::white)
{
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// The editor with the desktop faked, and a mouse and a keyboard.
struct Fixture
{
    QTemporaryDir folder;
    QWidget panel; // takes the keyboard from the editor
    FakeWindowSystem windows;
    FakeKeystrokeSender keystrokes;
    QStringList toasts;
    PasteService pasteService{keystrokes, [this](const QString& text) { toasts.append(text); }};
    QString imagesDir = folder.filePath(u"images"_s);
    EditorController editor{
        imagesDir,
        {windows, pasteService, [this](const QString& text) { toasts.append(text); }, [] { return u"pas\r\nted"_s; }}};
    ClipItem item{QUuid::createUuid(), ClipType::image, folder.filePath(u"original.png"_s), {}, {}, 0, false};
    const QUuid newID = QUuid::createUuid();
    QStringList added;
    QList<QByteArray> written;
    QList<std::optional<QUuid>> closedWith;

    Fixture()
    {
        editor.addResult = [this](const QString& path, const ClipItem& /*from*/) {
            added.append(path);
            return newID;
        };
        editor.writePNG = [this](const QByteArray& png) { written.append(png); };
        editor.onClose = [this](std::optional<QUuid> selecting) {
            closedWith.append(selecting);
            panel.show();
            panel.activateWindow();
        };
        plain().save(item.content.toString());
    }
    void open(const QImage& picture = plain())
    {
        panel.hide();
        editor.open(picture, nullptr, EditorController::rememberedColor(), EditorController::rememberedSize(), item);
        QTRY_VERIFY(window() && QTest::qWaitForWindowActive(window()));
    }
    [[nodiscard]] static EditorWindow* window()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<EditorWindow*>(widget);
            if (found && found->isVisible())
                return found;
        }
        return nullptr;
    }
    [[nodiscard]] static CanvasView* canvas() { return window()->findChild<CanvasView*>(); }
    template <typename Widget = QWidget>
    [[nodiscard]] static Widget* child(const QString& name)
    {
        return window()->findChild<Widget*>(name);
    }
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window()->windowHandle(), key, modifiers);
    }
    static void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(window()->windowHandle(), character.toLatin1());
    }
    static QPoint place(QPointF picture) { return canvas()->viewport().toCanvas(picture).toPoint(); }
    static void drag(QPointF from, QPointF to)
    {
        QTest::mousePress(canvas(), Qt::LeftButton, {}, place(from));
        QTest::mouseMove(canvas(), place((from + to) / 2));
        QTest::mouseMove(canvas(), place(to));
        QTest::mouseRelease(canvas(), Qt::LeftButton, {}, place(to));
    }
    [[nodiscard]] QStringList files() const { return QDir(imagesDir).entryList(QDir::Files); }
};

/// Adds up what a widget is asked to paint.
class PaintedArea final : public QObject
{
public:
    explicit PaintedArea(QWidget* widget) { widget->installEventFilter(this); }
    QRegion region;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

} // namespace

class EditorControllerTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void leavesWithTheResult_data();
    void leavesWithTheResult();
    void pastesIntoTheApplicationInFront();
    void unchangedPictureIsNotWrittenAgain();
    void failureLosesNothing();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void nextDocumentWaitsForTheAnswer();
    void remembersColorAndSize();
    void typedLabelLooksLikeTheResult();
    void labelTakesWhatIsTyped();
    void labelComposesWithAnInputMethod();
    void dragPaintsWhatItChanges();

private:
    QTemporaryDir m_settings;
};

void EditorControllerTest::initTestCase()
{
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    QCoreApplication::setApplicationName(u"Tessaly"_s);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
}

void EditorControllerTest::init()
{
    QSettings().clear();
}

void EditorControllerTest::leavesWithTheResult_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("isOnPasteboard");
    QTest::addColumn<QString>("toast");
    QTest::newRow("copy") << Qt::Key_C << true << u"Copied “image”"_s;
    QTest::newRow("save") << Qt::Key_S << false << u"Saved image"_s;
}

void EditorControllerTest::leavesWithTheResult()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const bool, isOnPasteboard);
    QFETCH(const QString, toast);
    Fixture f;
    f.open();
    f.key(Qt::Key_R);
    f.drag({100, 100}, {200, 200});
    f.key(key, Qt::ControlModifier);
    QTRY_COMPARE(f.closedWith, QList{std::optional(f.newID)});
    QTRY_VERIFY(!f.window());
    QCOMPARE(f.toasts, QStringList{toast});
    QCOMPARE(f.added.size(), 1);
    const QImage result(f.added.first());
    QCOMPARE(result.size(), QSize(400, 300));
    QCOMPARE(result.pixel(100, 150), red);
    QCOMPARE(result.pixel(150, 150), 0xffffffff);
    QVERIFY(!(QFile::permissions(f.added.first()) & (QFile::ReadGroup | QFile::ReadOther)));
    QVERIFY(!(QFile::permissions(f.imagesDir) & (QFile::ReadGroup | QFile::ReadOther)));
    QCOMPARE(f.written.size(), isOnPasteboard ? 1 : 0);
    if (isOnPasteboard)
        QCOMPARE(QImage::fromData(f.written.first()), result);
}

void EditorControllerTest::pastesIntoTheApplicationInFront()
{
    Fixture f;
    f.open();
    f.drag({100, 100}, {200, 200});
    f.key(Qt::Key_Return, Qt::ControlModifier);
    QTRY_COMPARE(f.keystrokes.pastes, 1);
    QTRY_VERIFY(!f.window());
    QCOMPARE(f.windows.calls.last(), u"restoreFrontWindow"_s);
    QCOMPARE(f.written.size(), 1);
    QVERIFY(f.closedWith.isEmpty()); // the panel would be in the way of the key
}

void EditorControllerTest::unchangedPictureIsNotWrittenAgain()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE(f.added, QStringList{f.item.content.toString()});
    QCOMPARE(f.files(), QStringList());
    QTRY_VERIFY(!f.window());

    QVERIFY(QFile::remove(f.item.content.toString()));
    f.open();
    f.key(Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(f.added.size(), 2);
    QCOMPARE(QImage(f.added.last()), plain());
}

void EditorControllerTest::failureLosesNothing()
{
    Fixture f;
    QFile blocker(f.imagesDir); // a file where the folder should be
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    f.open();
    f.drag({100, 100}, {200, 200});
    f.key(Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE(f.toasts, QStringList{u"Couldn't copy image"_s});
    QVERIFY(f.window());
    QVERIFY(f.written.isEmpty());
    QVERIFY(blocker.remove());
    f.key(Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE(f.written.size(), 1);
    QVERIFY(QImage::fromData(f.written.first()) != plain());
}

void EditorControllerTest::asksBeforeItDiscards_data()
{
    QTest::addColumn<Qt::Key>("answer");
    QTest::addColumn<bool>("isMoved");
    QTest::addColumn<bool>("isDiscarded");
    QTest::newRow("return") << Qt::Key_Return << false << true;
    QTest::newRow("escape") << Qt::Key_Escape << false << false;
    QTest::newRow("return on the other button") << Qt::Key_Return << true << false;
}

void EditorControllerTest::asksBeforeItDiscards()
{
    QFETCH(const Qt::Key, answer);
    QFETCH(const bool, isMoved);
    QFETCH(const bool, isDiscarded);
    Fixture f;
    f.open();
    f.drag({100, 100}, {200, 200});
    f.key(Qt::Key_Escape);
    QVERIFY(f.child(u"DiscardQuestion"_s)->isVisible());
    QTRY_VERIFY(f.child(u"Discard"_s)->hasFocus());
    if (isMoved)
        f.key(Qt::Key_Tab);
    f.key(answer);
    if (isDiscarded) {
        QCOMPARE(f.closedWith, QList{std::optional(f.item.id)});
        QTRY_VERIFY(!f.window());
        return;
    }
    QVERIFY(f.closedWith.isEmpty());
    QTRY_VERIFY(!f.child(u"DiscardQuestion"_s));
    QVERIFY(f.canvas()->hasFocus());
    f.key(Qt::Key_Z, Qt::ControlModifier);
    f.key(Qt::Key_Escape); // nothing to ask about any more
    QCOMPARE(f.closedWith.size(), 1);
}

void EditorControllerTest::nextDocumentWaitsForTheAnswer()
{
    Fixture f;
    f.open();
    f.drag({100, 100}, {200, 200});
    f.open(plain(Qt::blue));
    QTRY_VERIFY(f.child(u"DiscardQuestion"_s));
    f.key(Qt::Key_Return);
    QVERIFY(f.window());
    QTRY_COMPARE(f.canvas()->grab().toImage().pixelColor(f.place({150, 150})), QColor(Qt::blue));
    f.key(Qt::Key_Escape);
    QTRY_VERIFY(!f.window());
}

void EditorControllerTest::remembersColorAndSize()
{
    Fixture f;
    f.open();
    f.child<QAbstractButton>(u"Color.blue"_s)->click();
    f.child<QAbstractButton>(u"Size.large"_s)->click();
    QCOMPARE(QSettings().value("editorColor").toString(), u"blue"_s);
    QCOMPARE(QSettings().value("editorSize").toString(), u"large"_s);
    f.key(Qt::Key_Escape);
    QTRY_VERIFY(!f.window());
    f.open();
    QVERIFY(f.child<QAbstractButton>(u"Color.blue"_s)->isChecked());
    QVERIFY(f.child<QAbstractButton>(u"Size.large"_s)->isChecked());
    f.key(Qt::Key_N);
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({200, 150}));
    f.key(Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(f.added.size(), 1);
    QCOMPARE(QColor(QImage(f.added.first()).pixel(185, 150)), QColor(0, 122, 255));

    QSettings().setValue("editorColor", u"Red"_s);
    QSettings().setValue("editorSize", 7);
    QCOMPARE(EditorController::rememberedColor(), AnnotationPalette::red);
    QCOMPARE(EditorController::rememberedSize(), AnnotationSize::medium);
}

void EditorControllerTest::typedLabelLooksLikeTheResult()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_T);
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({61, 53}));
    f.type(u"Side door"_s);
    f.key(Qt::Key_Return);
    f.type(u"gjy"_s);
    QVERIFY(f.child(u"LabelEditor"_s)->hasFocus());
    f.child(u"LabelEditor"_s)->clearFocus(); // without the caret
    const QImage typed = f.canvas()->grab().toImage();
    f.key(Qt::Key_Escape);
    QVERIFY(f.child(u"LabelEditor"_s)->isHidden());
    QCOMPARE(f.canvas()->grab().toImage(), typed);
    QVERIFY(f.window()); // Escape ended the typing, no more
}

void EditorControllerTest::labelTakesWhatIsTyped()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_T);
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({61, 53}));
    auto* label = f.child(u"LabelEditor"_s);
    const auto text = [label] { return label->inputMethodQuery(Qt::ImSurroundingText).toString(); };
    f.type(u"crane"_s); // each of them a tool on the canvas
    f.key(Qt::Key_Return);
    f.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(text(), u"crane\npas\nted"_s);
    f.key(Qt::Key_Up);
    f.key(Qt::Key_Home, Qt::ShiftModifier);
    f.key(Qt::Key_Delete);
    QCOMPARE(text(), u"crane\n\nted"_s);
    f.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(text(), u"crane\npas\nted"_s);
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.key(Qt::Key_Backspace);
    f.key(Qt::Key_Escape); // an empty label goes, and leaves nothing to ask about
    f.key(Qt::Key_Escape);
    QTRY_VERIFY(!f.window());
}

void EditorControllerTest::labelComposesWithAnInputMethod()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_T);
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({61, 53}));
    auto* label = f.child(u"LabelEditor"_s);
    const int empty = label->width();
    QInputMethodEvent composing(u"ni"_s, {});
    QApplication::sendEvent(label, &composing);
    QVERIFY(label->width() > empty); // the label grows with what is not finished yet
    f.key(Qt::Key_Escape);           // the input method's own key
    QVERIFY(label->isVisible());
    QInputMethodEvent committing;
    committing.setCommitString(u"你"_s);
    QApplication::sendEvent(label, &committing);
    QCOMPARE(label->inputMethodQuery(Qt::ImSurroundingText).toString(), u"你"_s);
    QCOMPARE(label->inputMethodQuery(Qt::ImCursorPosition).toInt(), 1);
}

void EditorControllerTest::dragPaintsWhatItChanges()
{
    Fixture f;
    f.open();
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place({100, 100}));
    QTest::mouseMove(f.canvas(), f.place({120, 110}));
    QTest::qWait(100); // the scaled picture and the pixelated copy arrive
    const PaintedArea painted(f.canvas());
    QTest::mouseMove(f.canvas(), f.place({125, 115}));
    QTest::qWait(50);
    const QRect area = painted.region.boundingRect();
    QVERIFY(area.contains(f.place({122, 112})));
    QVERIFY2(area.width() < 60 && area.height() < 60, qPrintable(u"%1 × %2"_s.arg(area.width()).arg(area.height())));
    QTest::mouseRelease(f.canvas(), Qt::LeftButton, {}, f.place({125, 115}));
}

QTEST_MAIN(EditorControllerTest)
#include "EditorControllerTest.moc"
