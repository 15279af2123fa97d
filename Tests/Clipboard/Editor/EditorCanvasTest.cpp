#include "EditorFixture.h"

#include "DrawnButton.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QScreen>
#include <QWheelEvent>

#include <random>
#include <utility>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

/// What keys and the mouse do to the picture, and what is seen of it.
class EditorCanvasTest final : public QObject
{
    Q_OBJECT
private slots:
    void keys_data();
    void keys();
    void movesTheView();
    void shiftTakesHoldOfARestingDrag();
    void showsTheCrop();
    void cursorTellsWhatAPressDoes_data();
    void cursorTellsWhatAPressDoes();
    void toolbarFitsNarrowWindows();
    void labelTakesKeys_data();
    void labelTakesKeys();
    void labelTakesClicks();
    void labelComposesWithAnInputMethod();
    void screenShowsEveryChange();
};

namespace {

/// What is chosen, how large the picture is shown, and what can be undone and redone.
QString state(const EditorFixture& f)
{
    QStringList parts;
    for (const auto* button : f.window()->findChildren<QAbstractButton*>()) {
        if (button->isChecked())
            parts += button->objectName().section(u'.', 1);
    }
    parts += QString::number(f.canvas()->zoomPercent());
    for (const auto& name : {u"Undo"_s, u"Redo"_s}) {
        if (f.child(name)->isEnabled())
            parts += name.toLower();
    }
    return parts.join(u' ');
}

void turnWheel(const EditorFixture& f, QPointF at, Qt::KeyboardModifiers modifiers, int by)
{
    const QPointF place = f.canvas()->mapTo(f.window(), at);
    QWheelEvent event(place, f.window()->mapToGlobal(place), {}, {0, by}, {}, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.window()->windowHandle(), &event);
}

} // namespace

void EditorCanvasTest::keys_data()
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
    row(u"Shift+Down Up Right Left Left"_s, drawn, as.translated(-1, 9));
    row(u"Tab Left"_s, drawn, as); // on the toolbar
    row(u"Left Left Up Ctrl+Z"_s, u"rectangle red medium 100 undo redo"_s, as);
    row(u"Left Ctrl+Z Ctrl+Y Ctrl+Z Ctrl+Shift+Z"_s, drawn, as.translated(-1, 0));
    row(u"Left Right Ctrl+Z"_s, u"rectangle red medium 100 redo"_s, {});
    row(u"Alt+Backspace"_s, drawn, {});
    row(u"Delete Ctrl+Z"_s, u"rectangle red medium 100 undo redo"_s, as);
    row(u"2 4"_s, u"rectangle blue medium 100 undo"_s, as, 0xff007aff);
    row(u"3 ] ]"_s, u"rectangle green large 100 undo"_s, {96, 96, 108, 108}, 0xff33c759);
    row(u"[ ["_s, u"rectangle red small 100 undo"_s, {99, 99, 102, 102});
    row(u"7 Alt+Left Ctrl+4 Alt+N Ctrl+Backspace"_s, drawn, as);
    for (const auto& tool : {u"crop"_s, u"arrow"_s, u"texttool"_s, u"highlighter"_s, u"pixelate"_s})
        row(tool == u"texttool" ? u"t"_s : tool.first(1), tool + u" red medium 100 undo"_s, as);
    row(u"Shift+N"_s, u"counter red medium 100 undo"_s, as);
    row(u"Ctrl++ Ctrl+= Ctrl+-"_s, u"rectangle red medium 125 undo"_s, as);
    row(u"Ctrl++ Ctrl+0"_s, drawn, as);
    row(u"Ctrl++ Ctrl+1"_s, drawn, as);
}

void EditorCanvasTest::keys()
{
    QFETCH(const QString, keys);
    QFETCH(const QRect, area);
    QFETCH(const QRgb, color);
    EditorFixture f;
    f.openWithMark();
    f.keys(keys);
    QTEST(state(f), "state");
    f.keys(u"Ctrl+S"_s);
    QTRY_COMPARE(f.added.size(), 1);
    const QImage result(f.added.first());
    QCOMPARE(extentOf(result), area);
    if (!area.isEmpty())
        QCOMPARE(result.pixel(area.left() + 1, area.center().y()), color);
}

void EditorCanvasTest::movesTheView()
{
    EditorFixture f;
    f.open();
    const auto& view = f.canvas()->viewport();
    const QPointF at = view.toCanvas(QPointF(100, 80));
    turnWheel(f, at, Qt::ControlModifier, 120 * 7);
    QCOMPARE(f.canvas()->zoomPercent(), 477); // 1.25 to the power of 7
    QVERIFY((view.toPicture(at) - QPointF(100, 80)).manhattanLength() < 1);
    QPointF origin = view.toCanvas(QPointF());
    const auto moved = [&] { return view.toCanvas(QPointF()) - std::exchange(origin, view.toCanvas(QPointF())); };
    turnWheel(f, at, {}, -120);
    QCOMPARE(moved(), QPointF(0, -60));
    turnWheel(f, at, Qt::ShiftModifier, -120);
    QCOMPARE(moved(), QPointF(-60, 0));
    const auto pull = [&](Qt::MouseButton button) {
        const QPoint from = f.place({100, 80});
        QTest::mousePress(f.canvas(), button, {}, from);
        QTest::mouseMove(f.canvas(), from + QPoint(30, 40));
        QCOMPARE(f.canvas()->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(f.canvas(), button, {}, from + QPoint(30, 40));
        QCOMPARE(moved(), QPointF(30, 40));
    };
    f.keys(u"R"_s);
    QTest::keyPress(f.window()->windowHandle(), Qt::Key_Space);
    QCOMPARE(f.canvas()->cursor().shape(), Qt::OpenHandCursor);
    pull(Qt::LeftButton);
    QTest::keyRelease(f.window()->windowHandle(), Qt::Key_Space);
    pull(Qt::MiddleButton);
    QVERIFY(!f.child(u"Undo"_s)->isEnabled()); // nothing was drawn meanwhile
    f.drag({100, 80}, {110, 90});
    QVERIFY(f.child(u"Undo"_s)->isEnabled());
}

void EditorCanvasTest::shiftTakesHoldOfARestingDrag()
{
    EditorFixture f;
    f.open();
    f.keys(u"H"_s);
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place({100, 100}));
    QTest::mouseMove(f.canvas(), f.place({150, 120}));
    QCOMPARE(f.colorAt({140, 140}), QColor(Qt::white));
    QTest::keyPress(f.window()->windowHandle(), Qt::Key_Shift);
    QVERIFY(f.colorAt({140, 140}) != QColor(Qt::white));
    QTest::keyRelease(f.window()->windowHandle(), Qt::Key_Shift);
    QCOMPARE(f.colorAt({140, 140}), QColor(Qt::white));
}

void EditorCanvasTest::showsTheCrop()
{
    const QColor ground(0, 120, 0);
    const QColor shaded(5, 52, 7); // 62 % of the shade over it
    EditorFixture f;
    f.open(plain(ground));
    f.keys(u"C"_s);
    f.drag({0, 150}, {100, 150});
    QCOMPARE(f.colorAt({50, 75}), shaded);
    for (const QPointF inside : {QPointF(150, 75), QPointF(102, 75)})
        QCOMPARE(f.colorAt(inside), ground);
    const QList<QPointF> frameAndGrips{{100, 75}, {101, 150}, {101, 10}, {110, 1}, {398, 10}, {390, 298}, {250, 298}};
    for (const QPointF place : frameAndGrips)
        QCOMPARE(f.colorAt(place), QColor(Qt::white));
    QCOMPARE(f.colorAt({250, 300 + 12 + 4}), QColor(0x1C, 0x1F, 0x26)); // the size label
    f.keys(u"A"_s);
    QCOMPARE(f.colorAt({50, 75}), shaded);
    for (const QPointF place : {QPointF(100, 75), QPointF(101, 10), QPointF(101, 150)})
        QCOMPARE(f.colorAt(place), ground);
}

void EditorCanvasTest::cursorTellsWhatAPressDoes_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QPointF>("at"); // of a selected rectangle from 100|100 to 200|200
    QTest::addColumn<Qt::CursorShape>("shape");
    const auto row = [](const char* name, const QString& tool, QPointF at, Qt::CursorShape shape) {
        QTest::newRow(name) << tool << at << shape;
    };
    row("draws", u"A"_s, {300, 250}, Qt::CrossCursor);
    row("types", u"T"_s, {300, 250}, Qt::IBeamCursor);
    row("moves a mark", u"T"_s, {150, 100}, Qt::SizeAllCursor);
    row("pulls at a handle", u"T"_s, {200, 200}, Qt::CrossCursor);
    row("outside", u"A"_s, {-20, 250}, Qt::ArrowCursor);
    row("moves the crop", u"C"_s, {300, 250}, Qt::OpenHandCursor);
    row("right", u"C"_s, {392, 150}, Qt::SizeHorCursor);
    row("bottom", u"C"_s, {200, 308}, Qt::SizeVerCursor);
    row("top left", u"C"_s, {0, 0}, Qt::SizeFDiagCursor);
    row("top right", u"C"_s, {400, 0}, Qt::SizeBDiagCursor);
    row("bottom right", u"C"_s, {400, 300}, Qt::SizeFDiagCursor);
}

void EditorCanvasTest::cursorTellsWhatAPressDoes()
{
    QFETCH(const QString, tool);
    QFETCH(const QPointF, at);
    QFETCH(const Qt::CursorShape, shape);
    EditorFixture f;
    f.openWithMark();
    f.keys(tool);
    QTest::mouseMove(f.canvas(), f.place(at));
    QCOMPARE(f.canvas()->cursor().shape(), shape);
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place(at));
    QCOMPARE(f.canvas()->cursor().shape(), shape == Qt::OpenHandCursor ? Qt::ClosedHandCursor : shape);
}

void EditorCanvasTest::toolbarFitsNarrowWindows()
{
    EditorFixture f;
    f.open();
    f.window()->setMinimumSize({}); // this screen is smaller than any
    QList<int> widths;
    for (const int width : {1100, 880, 1100}) {
        f.window()->resize(width, 600);
        const auto* toolbar = f.child(u"EditorToolbar"_s);
        const auto buttons = toolbar->findChildren<DrawnButton*>();
        widths.append(buttons.last()->width());
        int end = 0;
        for (const DrawnButton* button : buttons) {
            const QRect place = button->controlRectIn(toolbar);
            QVERIFY2(place.left() > end && !button->accessibleName().isEmpty(), qPrintable(button->objectName()));
            end = place.right();
        }
        QVERIFY(end < width);
    }
    QVERIFY(widths.at(1) < widths.at(0));
    QCOMPARE(widths.at(2), widths.at(0));
}

void EditorCanvasTest::labelTakesKeys_data()
{
    QTest::addColumn<QString>("keys"); // after the first ones
    QTest::addColumn<QString>("text");
    const auto row = [](const QString& keys, const QString& text) { QTest::newRow(qPrintable(keys)) << keys << text; };
    row(u"N"_s, u"crane\nan"_s); // each of them a tool on the canvas
    row(u"Up N"_s, u"cnrane\na"_s);
    row(u"Up Up N Down N Down N"_s, u"ncrane\nann"_s);
    row(u"Up End Shift+Left Shift+Ctrl+Left N"_s, u"n\na"_s);
    row(u"Home Backspace Ctrl+Delete N"_s, u"cranen"_s);
    row(u"Up Home Shift+Down Delete"_s, u"a"_s);
    row(u"Ctrl+V"_s, u"crane\napas\nted"_s);
    row(u"Shift+Home Ctrl+X Ctrl+Home N"_s, u"ncrane\n"_s);
    row(u"Ctrl+A Ctrl+C N"_s, u"n"_s);
    row(u"Ctrl+A Backspace Ctrl+Z"_s, u"crane\na"_s);
    row(u"Ctrl+A Backspace Ctrl+Z Ctrl+Shift+Z"_s, u""_s);
}

void EditorCanvasTest::labelTakesKeys()
{
    QFETCH(const QString, keys);
    QFETCH(const QString, text);
    EditorFixture f;
    f.open();
    const auto* label = f.beginLabel();
    f.keys(u"C R A N E Return A"_s);
    QGuiApplication::clipboard()->clear();
    f.keys(keys);
    QCOMPARE(label->inputMethodQuery(Qt::ImSurroundingText).toString(), text);
    const QString copied = keys.contains(u"Ctrl+C") ? u"crane\na"_s : keys.contains(u"Ctrl+X") ? u"a"_s : QString();
    QCOMPARE(QGuiApplication::clipboard()->text(), copied);
    f.keys(u"Ctrl+A Backspace Escape Escape"_s); // an empty label goes, and leaves nothing to ask about
    QTRY_VERIFY(!f.window());
}

void EditorCanvasTest::labelTakesClicks()
{
    EditorFixture f;
    f.open();
    auto* label = f.beginLabel();
    f.type(u"two words"_s);
    label->clearFocus(); // without the caret
    const QImage typed = f.canvas()->grab().toImage();
    label->setFocus();
    const auto selected = [label] { return label->inputMethodQuery(Qt::ImCurrentSelection).toString(); };
    const QPoint first(1, label->height() / 2);
    const QPoint beyond(label->width() - 2, label->height() / 2);
    QTest::mousePress(label, Qt::LeftButton, {}, first);
    QTest::mouseMove(label, beyond);
    QTest::mouseRelease(label, Qt::LeftButton, {}, beyond);
    QCOMPARE(selected(), u"two words"_s);
    QTest::mouseClick(label, Qt::LeftButton, {}, beyond);
    QCOMPARE(selected(), QString());
    QTest::mouseClick(label, Qt::LeftButton, Qt::ShiftModifier, first);
    QCOMPARE(selected(), u"two words"_s);
    f.keys(u"Escape"_s);
    QVERIFY(label->isHidden());
    QCOMPARE(f.canvas()->grab().toImage(), typed); // it was typed as it is drawn
    QVERIFY(f.window());                           // Escape ended the typing, no more
}

void EditorCanvasTest::labelComposesWithAnInputMethod()
{
    EditorFixture f;
    f.open();
    auto* label = f.beginLabel();
    const int empty = label->width();
    QInputMethodEvent composing(u"ni"_s, {});
    QApplication::sendEvent(label, &composing);
    QVERIFY(label->width() > empty); // the label grows with what is not finished yet
    f.keys(u"Escape"_s);             // the input method's own key
    QVERIFY(label->isVisible());
    QInputMethodEvent committing;
    committing.setCommitString(u"你"_s);
    QApplication::sendEvent(label, &committing);
    QCOMPARE(label->inputMethodQuery(Qt::ImSurroundingText).toString(), u"你"_s);
    QCOMPARE(label->inputMethodQuery(Qt::ImCursorPosition).toInt(), 1);
}

/// The canvas paints only what changed: after every change the screen must be as if it had painted everything.
void EditorCanvasTest::screenShowsEveryChange()
{
    EditorFixture f;
    f.open();
    std::minstd_rand random(1);
    const auto below = [&random](unsigned count) { return static_cast<int>(random() % count); };
    const QStringList keys{u"A"_s, u"R"_s, u"H"_s, u"P"_s, u"N"_s, u"C"_s, u"Ctrl+Z"_s, u"Delete"_s, u"4"_s, u"]"_s};
    const auto isOnScreen = [&f] {
        const QPixmap screen = f.window()->screen()->grabWindow(f.window()->winId());
        return screen.toImage() == f.window()->grab().toImage().convertToFormat(screen.toImage().format());
    };
    for (int i = 0; i < 60; ++i) {
        const QString key = keys.at(below(static_cast<unsigned>(keys.size())));
        const QPoint from(below(400), below(300));
        const QPoint to(below(400), below(300));
        f.keys(key);
        f.drag(from, to);
        QTRY_VERIFY2(
            isOnScreen(),
            qPrintable(
                u"%1, a drag from %2|%3 to %4|%5"_s.arg(key).arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y())));
    }
}

QTEST_MAIN(EditorCanvasTest)
#include "EditorCanvasTest.moc"
