#include "EditorFixture.h"

#include "Rows.h"

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

namespace {

/// An input method that has nothing more to say, and says so when the keyboard is about to go.
class LastWord final : public QObject
{
    bool eventFilter(QObject* object, QEvent* event) override
    {
        QInputMethodEvent nothing;
        return event->type() == QEvent::FocusAboutToChange && !QApplication::sendEvent(object, &nothing);
    }
};

} // namespace

/// What keys and the mouse do to the picture, and what is seen of it.
class EditorCanvasTest final : public QObject
{
    Q_OBJECT
private slots:
    void keysChangeTheMark();
    void viewKeepsThePicture();
    void movesTheView();
    void shiftTakesHoldOfARestingDrag();
    void cursorTellsWhatAPressDoes();
    void labelTakesKeys();
    void labelTakesClicks();
    void labelComposesWithAnInputMethod();
    void screenShowsEveryChange();
};

namespace {

/// What is chosen, how large the picture is shown, and what can be undone and redone.
QString stateOf(const EditorFixture& f)
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

/// What keys make of a selected rectangle: the state, and where the result is painted and how.
void checkKeys(const char* keys, const QString& state, const QRect& area, QRgb color)
{
    EditorFixture f;
    f.openWithMark();
    f.keys(QString::fromLatin1(keys));
    QCOMPARE(stateOf(f), state);
    f.keys(u"Ctrl+S"_s);
    QTRY_COMPARE(f.added.size(), 1);
    const QImage result(f.added.first());
    QCOMPARE(extentOf(result), area);
    if (!area.isEmpty())
        QCOMPARE(result.pixel(area.left() + 1, area.center().y()), color);
}

/// What keys make of a label with two lines.
void checkTyping(const char* keys, const QString& text, const QString& copied)
{
    EditorFixture f;
    f.open();
    const auto* label = f.beginLabel();
    f.keys(u"C R A N E Return A"_s); // each of them a tool on the canvas
    QGuiApplication::clipboard()->clear();
    f.keys(QString::fromLatin1(keys));
    QCOMPARE(label->inputMethodQuery(Qt::ImSurroundingText).toString(), text);
    QCOMPARE(QGuiApplication::clipboard()->text(), copied);
    f.keys(u"Ctrl+A Backspace Escape Escape"_s); // an empty label goes, and leaves nothing to ask about
    QTRY_VERIFY(!f.window());
}

} // namespace

void EditorCanvasTest::keysChangeTheMark()
{
    const QRect as(98, 98, 104, 104); // it was
    const QString drawn = u"rectangle red medium 100 undo"_s;
    checkRows(checkKeys, {{"Shift+Down Up Right Left Left", drawn, as.translated(-1, 9), red},
                          {"Tab Left", drawn, as, red}, // on the toolbar
                          {"Left Ctrl+Z Ctrl+Y Ctrl+Z Ctrl+Shift+Z", drawn, as.translated(-1, 0), red},
                          {"Alt+Backspace", drawn, {}, red},
                          {"Delete Ctrl+Z", drawn + u" redo"_s, as, red},
                          {"2 4 H", u"highlighter blue medium 100 undo"_s, as, 0xff007aff},
                          {"3 ] ]", u"rectangle green large 100 undo"_s, {96, 96, 108, 108}, 0xff33c759},
                          {"[ [ P", u"pixelate red small 100 undo"_s, {99, 99, 102, 102}, red},
                          {"7 Alt+Left Ctrl+4 Alt+N Ctrl+Backspace", drawn, as, red},
                          {"Ctrl++ Ctrl+= Ctrl+-", u"rectangle red medium 125 undo"_s, as, red},
                          {"Ctrl++ Ctrl+0 Shift+N", u"counter red medium 100 undo"_s, as, red},
                          {"Ctrl++ Ctrl+1 A", u"arrow red medium 100 undo"_s, as, red}});
}

void EditorCanvasTest::viewKeepsThePicture()
{
    CanvasViewport view;
    view.setCanvas({1120, 672}, 1);
    view.setPicture({1, 20000});
    QCOMPARE(view.pictureRect(), QRectF(560, 36, 1, 600));
    view.setPicture({3000, 500});
    QCOMPARE(view.pictureRect().width(), 1120.0 - 72);
    const QPointF pointer(500, 400);
    for (const auto& [factor, scale] : {std::pair(1e9, 16.0), std::pair(1e-9, view.scale())}) {
        view.zoomBy(factor, pointer);
        QCOMPARE(view.scale(), scale);
    }
    QVERIFY(view.isFitted());
    view.showActualSize(pointer);
    view.pan({1e6, 1e6}); // down there is room for all of it: it stays in the middle
    QCOMPARE(view.pictureRect(), QRectF(36, 86, 3000, 500));
    view.pan({-1e6, -1e6});
    view.setCanvas({1200, 800}, 1);
    QCOMPARE(view.pictureRect().right(), 1200.0 - 36);
    view.fit();
    view.setCanvas({600, 800}, 2);
    QCOMPARE(view.pictureRect().width(), 600.0 - 72);
    QCOMPARE(view.devicePixels().width(), 2 * (600 - 72));
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

void EditorCanvasTest::cursorTellsWhatAPressDoes()
{
    EditorFixture f;
    f.openWithMark();
    for (const auto& [tool, at, shape] : {std::tuple(u"T"_s, QPointF(150, 100), Qt::SizeAllCursor), // the mark
                                          std::tuple(u"T"_s, QPointF(200, 200), Qt::CrossCursor),   // its handle
                                          std::tuple(u"T"_s, QPointF(300, 250), Qt::IBeamCursor),
                                          std::tuple(u"A"_s, QPointF(300, 250), Qt::CrossCursor),
                                          std::tuple(u"A"_s, QPointF(-20, 250), Qt::ArrowCursor),
                                          std::tuple(u"C"_s, QPointF(392, 150), Qt::SizeHorCursor),
                                          std::tuple(u"C"_s, QPointF(200, 308), Qt::SizeVerCursor),
                                          std::tuple(u"C"_s, QPointF(400, 0), Qt::SizeBDiagCursor),
                                          std::tuple(u"C"_s, QPointF(400, 300), Qt::SizeFDiagCursor),
                                          std::tuple(u"C"_s, QPointF(300, 250), Qt::OpenHandCursor)}) {
        f.keys(tool);
        QTest::mouseMove(f.canvas(), f.place(at));
        QCOMPARE(f.canvas()->cursor().shape(), shape);
    }
    QTest::mousePress(f.canvas(), Qt::LeftButton, {}, f.place({300, 250}));
    QCOMPARE(f.canvas()->cursor().shape(), Qt::ClosedHandCursor);
}

void EditorCanvasTest::labelTakesKeys()
{
    checkRows(checkTyping, {{"Up N", u"cnrane\na"_s, {}},
                            {"Up Up N Down N Down N", u"ncrane\nann"_s, {}},
                            {"Up End Shift+Left Shift+Ctrl+Left N", u"n\na"_s, {}},
                            {"Home Backspace Ctrl+Delete N", u"cranen"_s, {}},
                            {"Up Home Shift+Down Delete", u"a"_s, {}},
                            {"Ctrl+V", u"crane\napas\nted"_s, {}},
                            {"Shift+Home Ctrl+X Ctrl+Home N", u"ncrane\n"_s, u"a"_s},
                            {"Ctrl+A Ctrl+C N", u"n"_s, u"crane\na"_s},
                            {"Ctrl+A Backspace Ctrl+Z", u"crane\na"_s, {}},
                            {"Ctrl+A Backspace Ctrl+Z Ctrl+Shift+Z", u""_s, {}}});
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
    QCOMPARE(selected(), u"two words"_s);
    QTest::mouseRelease(label, Qt::LeftButton, {}, beyond);
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
    LastWord method;
    label->installEventFilter(&method);
    f.keys(u"Escape"_s);
    QVERIFY(label->isHidden());
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
        const QString& key = keys.at(below(static_cast<unsigned>(keys.size())));
        const QPoint from(below(400), below(300));
        f.keys(key);
        f.drag(from, QPoint(below(400), below(300)));
        QTRY_VERIFY2(isOnScreen(), qPrintable(u"after %1 and drag %2"_s.arg(key).arg(i)));
    }
}

QTEST_MAIN(EditorCanvasTest)
#include "EditorCanvasTest.moc"
