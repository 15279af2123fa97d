#include "EditorController.h"
#include "CanvasView.h"
#include "EditorWindow.h"
#include "Fakes.h"
#include "PasteService.h"
#include "ResultFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputMethodEvent>
#include <QKeySequence>
#include <QPaintEvent>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QRgb red = 0xffff3b30;

QImage plain(const QColor& color = Qt::white)
{
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Where the picture is not white.
QRect markedArea(const QImage& picture)
{
    QRect area;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != 0xffffffff)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
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
    bool isPanelSlow = false;
    int quits = 0;

    Fixture()
    {
        editor.addResult = [this](const QString& path, const ClipItem& /*from*/) {
            added.append(path);
            return newID;
        };
        editor.writePNG = [this](const QByteArray& png) { written.append(png); };
        editor.onClose = [this](std::optional<QUuid> selecting) {
            closedWith.append(selecting);
            if (isPanelSlow)
                return;
            panel.show();
            panel.activateWindow();
        };
        editor.onQuit = [this] { ++quits; };
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
    static void keys(const QString& sequences)
    {
        for (const QString& sequence : sequences.split(u' ', Qt::SkipEmptyParts)) {
            const QKeyCombination chord = QKeySequence(sequence)[0];
            key(chord.key(), chord.keyboardModifiers());
        }
    }
    static void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(window()->windowHandle(), character.toLatin1());
    }
    static QPoint place(QPointF picture) { return canvas()->viewport().toCanvas(picture).toPoint(); }
    static void wheel(QPointF at, QPoint by, Qt::KeyboardModifiers modifiers = {})
    {
        const QPointF place = canvas()->mapTo(window(), at);
        QWheelEvent event(place, window()->mapToGlobal(place), {}, by, {}, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(window()->windowHandle(), &event);
    }
    /// What is chosen, how large the picture is shown, and what can be undone and redone.
    [[nodiscard]] static QString state()
    {
        QStringList parts;
        for (const auto* button : window()->findChildren<QAbstractButton*>()) {
            if (button->isChecked())
                parts += button->objectName().section(u'.', 1);
        }
        parts += QString::number(canvas()->zoomPercent());
        for (const auto& name : {u"Undo"_s, u"Redo"_s}) {
            if (child(name)->isEnabled())
                parts += name.toLower();
        }
        return parts.join(u' ');
    }
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
    void unchangedPictureIsNotWrittenAgain();
    void failureLosesNothing();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void nextDocumentWaitsForTheAnswer();
    void keys_data();
    void keys();
    void movesTheView();
    void shiftTakesHoldOfARestingDrag();
    void showsTheCrop();
    void cursorTellsWhatAPressDoes_data();
    void cursorTellsWhatAPressDoes();
    void hearsNothingWhileItLeaves();
    void losesNothingWhenTheProgramEnds();
    void savesWhereTheUserWants();
    void toolbarFitsNarrowWindows();
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
    f.key(Qt::Key_Plus, Qt::ControlModifier); // not behind the question
    QCOMPARE(f.canvas()->zoomPercent(), 100);
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
    f.window()->close(); // by its frame
    QTRY_VERIFY(!f.window());
}

void EditorControllerTest::keys_data()
{
    QTest::addColumn<QString>("keys"); // on a selected rectangle
    QTest::addColumn<QString>("state");
    QTest::addColumn<QRect>("area"); // that the result covers
    QTest::addColumn<QRgb>("color");
    const auto row = [](const QString& keys, const QString& state, const QRect& area, QRgb color = red) {
        QTest::newRow(qPrintable(keys)) << keys << state << area << color;
    };
    const QRect as(98, 98, 104, 104); // it was
    const QString drawn = u"rectangle red medium 100 undo"_s;
    row(u"Left"_s, drawn, as.translated(-1, 0));
    row(u"Shift+Down Up Right"_s, drawn, as.translated(1, 9));
    row(u"Tab Left"_s, drawn, as); // on the toolbar
    row(u"Left Left Up Ctrl+Z"_s, u"rectangle red medium 100 undo redo"_s, as);
    row(u"Left Left Up Ctrl+Z Ctrl+Y"_s, drawn, as.translated(-2, -1));
    row(u"Left Left Up Ctrl+Z Ctrl+Shift+Z"_s, drawn, as.translated(-2, -1));
    row(u"Left Right Ctrl+Z"_s, u"rectangle red medium 100 redo"_s, {});
    row(u"Alt+Backspace"_s, drawn, {});
    row(u"Delete Ctrl+Z"_s, u"rectangle red medium 100 undo redo"_s, as);
    row(u"4"_s, u"rectangle blue medium 100 undo"_s, as, 0xff007aff);
    row(u"2 6 5"_s, u"rectangle black medium 100 undo"_s, as, 0xff000000);
    row(u"3 ] ]"_s, u"rectangle green large 100 undo"_s, {96, 96, 108, 108}, 0xff33c759);
    row(u"1 [ ["_s, u"rectangle red small 100 undo"_s, {99, 99, 102, 102});
    row(u"7 Alt+Left Ctrl+4 Alt+N Ctrl+Backspace"_s, drawn, as);
    for (const auto& tool : {u"crop"_s, u"arrow"_s, u"texttool"_s, u"highlighter"_s, u"pixelate"_s})
        row(tool == u"texttool" ? u"t"_s : tool.first(1), tool + u" red medium 100 undo"_s, as);
    row(u"n r"_s, drawn, as);
    row(u"Shift+N"_s, u"counter red medium 100 undo"_s, as);
    row(u"Ctrl++ Ctrl+="_s, u"rectangle red medium 156 undo"_s, as);
    row(u"Ctrl++ Ctrl++ Ctrl+-"_s, u"rectangle red medium 125 undo"_s, as);
    row(u"Ctrl++ Ctrl+0"_s, drawn, as);
    row(u"Ctrl++ Ctrl+1"_s, drawn, as);
}

void EditorControllerTest::keys()
{
    QFETCH(const QString, keys);
    QFETCH(const QRect, area);
    QFETCH(const QRgb, color);
    Fixture f;
    f.open();
    f.key(Qt::Key_R);
    f.drag({100, 100}, {200, 200});
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({100, 150}));
    f.keys(keys);
    QTEST(f.state(), "state");
    f.key(Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(f.added.size(), 1);
    const QImage result(f.added.first());
    QCOMPARE(markedArea(result), area);
    if (!area.isEmpty())
        QCOMPARE(result.pixel(area.left() + 1, area.center().y()), color);
}

void EditorControllerTest::movesTheView()
{
    Fixture f;
    f.open();
    const auto& view = f.canvas()->viewport();
    const QPointF at = view.toCanvas(QPointF(100, 80));
    f.wheel(at, {0, 120 * 7}, Qt::ControlModifier);
    QCOMPARE(f.canvas()->zoomPercent(), 477); // 1.25 to the power of 7
    QVERIFY((view.toPicture(at) - QPointF(100, 80)).manhattanLength() < 1);
    QPointF origin = view.toCanvas(QPointF());
    const auto moved = [&] { return view.toCanvas(QPointF()) - std::exchange(origin, view.toCanvas(QPointF())); };
    f.wheel(at, {0, -120});
    QCOMPARE(moved(), QPointF(0, -60));
    f.wheel(at, {0, -120}, Qt::ShiftModifier);
    QCOMPARE(moved(), QPointF(-60, 0));
    f.key(Qt::Key_R);
    QTest::keyPress(f.window()->windowHandle(), Qt::Key_Space);
    QCOMPARE(f.canvas()->cursor().shape(), Qt::OpenHandCursor);
    const QPoint from = f.place({100, 80});
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, from);
    QTest::mouseMove(f.canvas(), from + QPoint(30, 40));
    QCOMPARE(f.canvas()->cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(f.canvas(), Qt::LeftButton, {}, from + QPoint(30, 40));
    QCOMPARE(moved(), QPointF(30, 40));
    QTest::keyRelease(f.window()->windowHandle(), Qt::Key_Space);
    QVERIFY(!f.child(u"Undo"_s)->isEnabled()); // nothing was drawn meanwhile
    f.drag({100, 80}, {110, 90});
    QVERIFY(f.child(u"Undo"_s)->isEnabled());
}

void EditorControllerTest::shiftTakesHoldOfARestingDrag()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_H);
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place({100, 100}));
    QTest::mouseMove(f.canvas(), f.place({150, 120}));
    const auto shown = [&f] { return f.canvas()->grab().toImage().pixelColor(f.place({140, 140})); };
    QCOMPARE(shown(), QColor(Qt::white));
    QTest::keyPress(f.window()->windowHandle(), Qt::Key_Shift);
    QVERIFY(shown() != QColor(Qt::white));
    QTest::keyRelease(f.window()->windowHandle(), Qt::Key_Shift);
    QCOMPARE(shown(), QColor(Qt::white));
}

void EditorControllerTest::showsTheCrop()
{
    const QColor ground(0, 120, 0);
    const QColor shaded(5, 52, 7); // 62 % of the shade over it
    Fixture f;
    f.open(plain(ground));
    f.key(Qt::Key_C);
    f.drag({0, 150}, {100, 150});
    const auto at = [&f](QPoint place) { return f.canvas()->grab().toImage().pixelColor(f.place({100, 0}) + place); };
    QCOMPARE(at({-50, 75}), shaded);
    QCOMPARE(at({50, 75}), ground);
    QCOMPARE(at({0, 75}), QColor(Qt::white)); // the frame
    QVERIFY(at({2, 75}) == ground);
    for (const QPoint grip : {QPoint(1, 150), QPoint(1, 10), QPoint(10, 1), QPoint(298, 10), QPoint(290, 298)})
        QCOMPARE(at(grip), QColor(Qt::white));
    QVERIFY(at({150, 298}) == QColor(Qt::white));                // the lower bar
    QCOMPARE(at({150, 300 + 12 + 4}), QColor(0x1C, 0x1F, 0x26)); // the size label
    f.key(Qt::Key_A);
    QCOMPARE(at({-50, 75}), shaded);
    for (const QPoint place : {QPoint(0, 75), QPoint(1, 10), QPoint(1, 150)})
        QCOMPARE(at(place), ground);
}

void EditorControllerTest::cursorTellsWhatAPressDoes_data()
{
    QTest::addColumn<Qt::Key>("tool");
    QTest::addColumn<QPointF>("at"); // of a selected rectangle from 100|100 to 200|200
    QTest::addColumn<Qt::CursorShape>("shape");
    const auto row = [](const char* name, Qt::Key tool, QPointF at, Qt::CursorShape shape) {
        QTest::newRow(name) << tool << at << shape;
    };
    row("draws", Qt::Key_A, {300, 250}, Qt::CrossCursor);
    row("types", Qt::Key_T, {300, 250}, Qt::IBeamCursor);
    row("moves a mark", Qt::Key_T, {150, 100}, Qt::SizeAllCursor);
    row("pulls at a handle", Qt::Key_T, {200, 200}, Qt::CrossCursor);
    row("outside", Qt::Key_A, {-20, 250}, Qt::ArrowCursor);
    row("moves the crop", Qt::Key_C, {300, 250}, Qt::OpenHandCursor);
    row("outside of the crop", Qt::Key_C, {-9, 150}, Qt::ArrowCursor);
    row("right", Qt::Key_C, {392, 150}, Qt::SizeHorCursor);
    row("bottom", Qt::Key_C, {200, 308}, Qt::SizeVerCursor);
    row("top left", Qt::Key_C, {0, 0}, Qt::SizeFDiagCursor);
    row("top right", Qt::Key_C, {400, 0}, Qt::SizeBDiagCursor);
    row("bottom left", Qt::Key_C, {0, 300}, Qt::SizeBDiagCursor);
    row("bottom right", Qt::Key_C, {400, 300}, Qt::SizeFDiagCursor);
}

void EditorControllerTest::cursorTellsWhatAPressDoes()
{
    QFETCH(const Qt::Key, tool);
    QFETCH(const QPointF, at);
    QFETCH(const Qt::CursorShape, shape);
    Fixture f;
    f.open();
    f.key(Qt::Key_R);
    f.drag({100, 100}, {200, 200});
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({100, 150}));
    f.key(tool);
    QTest::mouseMove(f.canvas(), f.place(at));
    QCOMPARE(f.canvas()->cursor().shape(), shape);
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place(at));
    QCOMPARE(f.canvas()->cursor().shape(), shape == Qt::OpenHandCursor ? Qt::ClosedHandCursor : shape);
}

void EditorControllerTest::hearsNothingWhileItLeaves()
{
    Fixture f;
    f.isPanelSlow = true;
    f.open();
    const double scale = f.canvas()->viewport().scale();
    f.key(Qt::Key_Escape);
    QVERIFY(f.window()); // until the panel has the keyboard
    f.wheel({200, 200}, {0, 120}, Qt::ControlModifier);
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
    Fixture f;
    f.open();
    f.editor.keepChanges(30s);
    QVERIFY(f.added.isEmpty()); // nothing to keep
    f.key(Qt::Key_T);
    QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, f.place({61, 53}));
    f.type(u"typed"_s);
    f.editor.keepChanges(30s);
    QCOMPARE(f.added.size(), 1);
    QCOMPARE(markedArea(QImage(f.added.first())).topLeft(), QPoint(61, 53));
    f.key(Qt::Key_Escape);
    f.editor.keepChanges(30s);
    QCOMPARE(f.added.last(), f.added.first()); // named by its content, which has the letters
    f.editor.quit();
    QCOMPARE(f.quits, 0);
    QVERIFY(f.child(u"DiscardQuestion"_s)->isVisible());
    f.key(Qt::Key_Return);
    QCOMPARE(f.quits, 1);
    QTRY_VERIFY(!f.window());
    QVERIFY(f.closedWith.isEmpty()); // the panel does not open for an end
}

void EditorControllerTest::savesWhereTheUserWants()
{
    const QString path = QDir(m_settings.path()).filePath(u"mine.png"_s);
    Fixture f;
    f.open();
    const auto saveAs = [&](const QString& to) {
        f.key(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
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
    QCOMPARE(QImage(path).size(), QSize(400, 300));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    f.drag({100, 200}, {200, 200});
    saveAs(path);
    QCOMPARE(markedArea(QImage(path)).bottom(), 210);
    QCOMPARE(QFile::permissions(path) & QFile::ReadOther, QFile::Permissions());
    saveAs(path + u"/not/a/folder.png"_s);
    QCOMPARE(f.toasts, (QStringList{u"Saved image"_s, u"Saved image"_s, u"Couldn't save image"_s}));
    QCOMPARE(QDir(m_settings.path()).entryList({u"*.png"_s, u".tessaly*"_s}, QDir::Files | QDir::Hidden).size(), 1);
    QVERIFY(f.added.isEmpty() && f.window());            // the history and the document are as they were
    QVERIFY(!ResultFile::write("another", path, false)); // made while the dialog was open
    QCOMPARE(QImage(path).size(), QSize(400, 300));
}

void EditorControllerTest::toolbarFitsNarrowWindows()
{
    Fixture f;
    f.open();
    const auto* copy = f.child<QAbstractButton>(u"Exit.copy"_s);
    f.window()->resize(1100, 600);
    const int wide = copy->width();
    f.window()->setMinimumSize({}); // this screen is smaller than any
    f.window()->resize(880, 600);
    QVERIFY(copy->width() < wide);
    QVERIFY(f.child(u"Exit.paste"_s)->x() >= f.child(u"Redo"_s)->geometry().right());
    QCOMPARE(copy->accessibleName(), u"Copy"_s);
}

void EditorControllerTest::remembersColorAndSize()
{
    Fixture f;
    f.open();
    f.key(Qt::Key_4);
    QTest::mouseClick(f.child(u"Size.large"_s), Qt::LeftButton);
    QCOMPARE(QSettings().value("editorColor").toString(), u"blue"_s);
    QCOMPARE(QSettings().value("editorSize").toString(), u"large"_s);
    f.key(Qt::Key_Escape);
    QTRY_VERIFY(!f.window());
    f.open();
    QCOMPARE(f.state(), u"arrow blue large 100"_s);

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
    // Once the pixelated copy is there, which paints everything.
    int step = 0;
    const auto paintedByAMove = [&] {
        const PaintedArea painted(f.canvas());
        QTest::mouseMove(f.canvas(), f.place({125.0 + ++step % 2, 115}));
        return QTest::qWaitFor([&] { return !painted.region.isEmpty(); }) ? painted.region.boundingRect() : QRect();
    };
    const QRect most(f.place({80, 80}), QSize(60, 60));
    const QRect least(f.place({115, 110}), QSize(8, 4));
    QRect painted;
    QTRY_VERIFY((painted = paintedByAMove(), most.contains(painted) && painted.contains(least)));
    QTest::mouseRelease(f.canvas(), Qt::LeftButton, {}, f.place({125, 115}));
}

QTEST_MAIN(EditorControllerTest)
#include "EditorControllerTest.moc"
