#include "Annotation/CanvasGesture.h"
#include "Annotation/Constraint.h"
#include "AnnotationFakes.h"
#include "Rows.h"

#include <QLineF>
#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Tool = AnnotationTool;

namespace {

/// A canvas with a session of 200 × 100 pixels under the mouse.
struct Canvas
{
    AnnotationSession session = AnnotationFakes::session();
    CanvasGesture gesture;
    double scale = 1;

    Canvas() = default;
    /// With a mark.
    explicit Canvas(Tool tool)
    {
        session.chooseTool(tool);
        session.place({20, 20}, {60, 60});
    }
    void press(QPointF at, int clickCount = 1) { gesture.mouseDown({at, scale, clickCount}, session); }
    void move(QPointF to, bool isConstrained = false) { gesture.mouseDragged({to, scale, 1, isConstrained}, session); }
    void release(QPointF at) { gesture.mouseUp({at, scale, 1}, session); }
    /// By a detour, of which nothing remains.
    void drag(QPointF from, QPointF to, bool isConstrained = false)
    {
        press(from);
        move({500, 500}, isConstrained);
        move(to, isConstrained);
        release(to);
    }
    void click(QPointF at, int clickCount = 1)
    {
        press(at, clickCount);
        release(at);
    }
    [[nodiscard]] QPointF start() const { return session.annotations().last().start; }
    [[nodiscard]] QPointF end() const { return session.annotations().last().end; }
};

} // namespace

class CanvasGestureTest final : public QObject
{
    Q_OBJECT
private slots:
    void crops();
    void placesMarks();
    void movesFromTheThresholdOn();
    void keepsTheGrabOfAHandle();
    void selectsOrNot();
    void multipleClicksOnTexts();
};

void CanvasGestureTest::crops()
{
    // of (40, 30) to (140, 80)
    checkRows(
        +[](const char*, double scale, QPointF from, QPointF to, const QRectF& expected, bool isConstrained) {
            Canvas canvas;
            canvas.session.chooseTool(Tool::crop);
            canvas.session.setCrop({40, 30, 100, 50});
            canvas.scale = scale;
            canvas.drag(from, to, isConstrained);
            QCOMPARE(canvas.session.crop(), expected);
        },
        {
            {"left edge", 1, {48, 50}, {60, 0}, {60, 30, 80, 50}, false},
            {"just beside it moves", 1, {48.1, 50}, {58.1, 60}, {50, 40, 100, 50}, false},
            {"by half pixels", 1, {90, 50}, {83.5, 55.5}, {34, 36, 100, 50}, false},
            {"left edge past the right one", 1, {40, 50}, {190, 50}, {116, 30, 24, 50}, false},
            {"right edge past the left one", 1, {140, 50}, {0, 50}, {40, 30, 24, 50}, false},
            {"upper right corner", 1, {140, 30}, {150, 10}, {40, 10, 110, 70}, false},
            {"over the picture's edge", 1, {40, 30}, {-50, -50}, {0, 0, 140, 80}, false},
            {"half size: reach", 0.5, {24, 50}, {20, 50}, {20, 30, 120, 50}, false},
            {"magnified: reach", 4, {42.1, 50}, {52.1, 50}, {50, 30, 100, 50}, false},
            {"the same shape", 1, {40, 30}, {60, 36}, {52, 36, 88, 44}, true},
            {"the same shape from an edge", 1, {40, 50}, {60, 0}, {60, 35, 80, 40}, true},
            {"the same shape as far as there is room", 1, {140, 80}, {190, 80}, {40, 30, 140, 70}, true},
        });
}

void CanvasGestureTest::placesMarks()
{
    // from (20, 20)
    checkRows(
        +[](const char*, Tool tool, QPointF to, const std::optional<QLineF>& expected, bool isConstrained) {
            Canvas canvas;
            canvas.session.chooseTool(tool);
            canvas.drag({20, 20}, to, isConstrained);
            QCOMPARE(canvas.session.annotations().size(), expected ? 1 : 0);
            if (expected)
                QCOMPARE(QLineF(canvas.start(), canvas.end()), *expected);
        },
        {
            {"a shape", Tool::arrow, {24, 20}, QLineF(20, 20, 24, 20), false},
            {"a shape too small", Tool::arrow, {23.9, 20}, std::nullopt, false},
            {"a shape over the edge", Tool::pixelate, {-50, 150}, QLineF(20, 20, 0, 100), false},
            {"a counter where it is released", Tool::counter, {22, 20}, QLineF(22, 20, 22, 20), false},
            {"a counter over the edge", Tool::counter, {300, 20}, QLineF(200, 20, 200, 20), false},
            {"a text where it was pressed", Tool::text, {90, 90}, QLineF(20, 20, 20, 20), false},
            {"nearly level", Tool::arrow, {60, 36}, QLineF(20, 20, 60, 20), true},
            {"nearly half way up", Tool::arrow, {60, 38}, QLineF(20, 20, 49, 49), true},
            {"upward over the edge", Tool::arrow, {22, -50}, QLineF(20, 20, 20, 0), true},
            {"a square", Tool::highlighter, {60, 15}, QLineF(20, 20, 40, 0), true},
        });
}

void CanvasGestureTest::movesFromTheThresholdOn()
{
    Canvas canvas(Tool::rectangle);
    canvas.scale = 2;
    canvas.click({40, 20});
    for (const auto& [to, start] : {std::pair(41.5, 20), {42.0, 22}}) { // by 3 points, and by 4
        canvas.press({40, 20});
        canvas.move({to, 20});
        canvas.release({to, 20});
        QCOMPARE(canvas.start(), QPointF(start, 20));
    }
}

void CanvasGestureTest::keepsTheGrabOfAHandle()
{
    Canvas canvas(Tool::rectangle);
    canvas.click({40, 20});
    canvas.drag({65, 57}, {75, 77}); // the lower right handle, grabbed beside it
    QCOMPARE(canvas.end(), QPointF(70, 80));
    canvas.drag({70, 80}, {500, 500});
    QCOMPARE(canvas.end(), QPointF(200, 100));
    canvas.drag({208.1, 108}, {90, 90}); // just out of its reach
    QCOMPARE(canvas.end(), QPointF(200, 100));
    canvas.click({40, 20});
    canvas.drag({208, 108}, {100, 100}); // handles can be reached from outside of the picture
    QCOMPARE(canvas.end(), QPointF(92, 92));
    canvas.drag({20, 20}, {7, 8});
    QCOMPARE(canvas.start(), QPointF(7, 8));
    canvas.drag({7, 8}, {20, 20});
    // One that is drawn along an axis lies where there is more room.
    const QRectF picture(0, 0, 200, 100);
    QCOMPARE(Constraint::end(Annotation::Kind::rectangle, {20, 80}, {60, 80}, picture), QPointF(60, 40));
    QCOMPARE(Constraint::end(Annotation::Kind::rectangle, {150, 20}, {150, 60}, picture), QPointF(110, 60));
    canvas.drag({92, 20}, {63, 30}, true); // a square with the corner that stays
    QCOMPARE(QRectF(canvas.start(), canvas.end()).normalized(), QRectF(20, 30, 62, 62));
}

void CanvasGestureTest::selectsOrNot()
{
    Canvas canvas(Tool::highlighter);
    canvas.click({30, 30});
    const auto aim = [&canvas](QPointF at) { return CanvasGesture::aim(at, canvas.session, 1); };
    QCOMPARE(aim({300, 30}), CanvasGesture::Aim::nothing);
    QCOMPARE(aim({100, 90}), CanvasGesture::Aim::place);
    QCOMPARE(aim({40, 40}), CanvasGesture::Aim::move);
    QCOMPARE(aim({60, 60}), CanvasGesture::Aim::reshape);
    canvas.press({300, 30}); // outside of the picture
    QVERIFY(!canvas.gesture.isInProgress());
    QCOMPARE(canvas.session.selection(), 0);
    canvas.press({100, 90});
    QVERIFY(!canvas.session.selection());
    canvas.gesture.cancel();
    canvas.release({150, 95});
    QCOMPARE(canvas.session.annotations().size(), 1);
}

void CanvasGestureTest::multipleClicksOnTexts()
{
    Canvas canvas;
    canvas.session.chooseTool(Tool::text);
    canvas.click({20, 20});
    canvas.session.setText(u"ab"_s);
    canvas.session.endEditing();
    canvas.session.chooseTool(Tool::arrow);
    canvas.click({30, 30});
    QVERIFY(!canvas.session.editing());
    canvas.click({30, 30}, 2);
    QCOMPARE(canvas.session.editing(), 0);
    canvas.click({30, 30}, 3); // still the same multiple click
    QCOMPARE(canvas.session.editing(), 0);
    canvas.click({150, 90}); // a press elsewhere only ends the typing
    QVERIFY(!canvas.session.editing());
    QCOMPARE(canvas.session.selection(), 0);

    // A text that one click placed survives the second click, unless its editor was clicked in between.
    canvas.session.chooseTool(Tool::text);
    canvas.click({120, 20});
    canvas.click({150, 90}, 2);
    QCOMPARE(canvas.session.editing(), 1);
    canvas.gesture.textFieldMouseDown(2);
    canvas.click({150, 90}, 2);
    QCOMPARE(canvas.session.editing(), 1);
    canvas.gesture.textFieldMouseDown(1);
    canvas.click({150, 90}, 2);
    QVERIFY(!canvas.session.editing());
}

QTEST_APPLESS_MAIN(CanvasGestureTest)
#include "CanvasGestureTest.moc"
