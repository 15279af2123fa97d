#include "Annotation/AnnotationMeasures.h"
#include "AnnotationFakes.h"
#include "Rows.h"

#include <QRegularExpression>
#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using AnnotationFakes::PlainPicture;
using AnnotationFakes::RecordingContext;
using Tool = AnnotationTool;

namespace {

void drag(AnnotationSession& session, Tool tool, QPointF from, QPointF to)
{
    session.chooseTool(tool);
    session.place(from, to);
}

void click(AnnotationSession& session, Tool tool, QPointF at, const QString& text = {})
{
    session.chooseTool(tool);
    session.place(at);
    session.setText(text);
    session.endEditing();
}

int countSteps(AnnotationSession session, bool forth = false)
{
    int steps = 0;
    for (; forth ? session.canRedo() : session.canUndo(); ++steps)
        forth ? session.redo() : session.undo();
    return steps;
}

/// What an operation can get wrong, in short: how many marks, how many steps back and forth, and so on.
QString summary(const AnnotationSession& session)
{
    QString all =
        u"%1 marks %2/%3"_s.arg(session.annotations().size()).arg(countSteps(session)).arg(countSteps(session, true));
    if (session.selection())
        all += u" selected %1"_s.arg(*session.selection());
    if (session.editing())
        all += u" typing %1"_s.arg(*session.editing());
    return session.hasChanges() ? all + u" changed"_s : all;
}

/// One operation. What follows a colon is its tool, its text or its mark.
void perform(AnnotationSession& session, const QString& word)
{
    constexpr QPointF corner(5, 5);
    constexpr QPointF beside(9, 9);
    constexpr QPointF arrowStart(20, 20);
    constexpr QPointF arrowEnd(60, 20);
    const QString argument = word.section(u':', 1);
    for (const Tool tool : allAnnotationTools) {
        if (label(tool).toLower() == argument)
            session.chooseTool(tool);
    }
    const auto drawTwo = [&] {
        drag(session, Tool::arrow, arrowStart, arrowEnd);
        click(session, Tool::text, {100, 50}, u"ab"_s);
    };
    const std::map<QString, std::function<void()>> operations{
        {u"two"_s, drawTwo},
        {u"tool"_s, [] {}},
        {u"click"_s, [&] { session.place(corner); }},
        {u"drag"_s, [&] { session.place(corner, beside); }},
        {u"point"_s, [&] { session.place(corner, corner); }},
        {u"type"_s, [&] { session.setText(argument); }},
        {u"edit"_s, [&] { session.beginEditing(argument.toInt()); }},
        {u"end"_s, [&] { session.endEditing(); }},
        {u"unselect"_s, [&] { session.select(QPointF(5, 90), 0); }},
        {u"first"_s, [&] { session.select(arrowStart, 0); }},
        {u"corner"_s, [&] { session.select(corner, 1); }},
        {u"blue"_s, [&] { session.setColor(AnnotationPalette::blue); }},
        {u"large"_s, [&] { session.setSize(AnnotationSize::large); }},
        {u"move"_s, [&] { session.moveSelection(corner); }},
        {u"nudge"_s, [&] { session.nudgeSelection(QPointF(argument.toDouble(), 0)); }},
        {u"reshape"_s, [&] { session.reshapeSelection(AnnotationHandle::end, arrowEnd); }},
        {u"delete"_s, [&] { session.deleteSelection(); }},
        {u"crop"_s, [&] { session.setCrop(QRectF(10, 10, 50, 50)); }},
        {u"uncrop"_s, [&] { session.setCrop(QRectF(-10, -10, 500, 500)); }},
        {u"undo"_s, [&] { session.undo(); }},
        {u"redo"_s, [&] { session.redo(); }},
    };
    operations.at(word.section(u':', 0, 0))();
}

/// What drawing the marks asks of the context, without the states that it saves and the transform around it all.
QStringList marksDrawn(const AnnotationSession& session, const QRectF& region)
{
    RecordingContext context;
    session.drawAnnotations(context, region, 1, nullptr);
    return context.calls().mid(4).filter(QRegularExpression(u"^(?!save|restore)"_s));
}

} // namespace

class AnnotationSessionTest final : public QObject
{
    Q_OBJECT
private slots:
    void records();
    void selects();
    void hits();
    void staysInsideThePicture();
    void draws();
    void drawsPixelatedAreasFirst();
    void skipsWhatIsElsewhere();
    void flattensTheCrop();
    void flattensNothingRatherThanWhatWasCovered();
    void measuresByTheLongestSide();
};

void AnnotationSessionTest::records()
{
    // the operations; marks, steps to undo and to redo, …
    checkRows(
        +[](const char* name, const char* expected) {
            auto session = AnnotationFakes::session();
            for (const QString& word : QString::fromUtf8(name).split(u' '))
                perform(session, word);
            QCOMPARE(summary(session), QLatin1StringView(expected));
        },
        {
            {"tool:text click type:a", "1 marks 0/0 selected 0 typing 0 changed"},
            {"click:counter undo", "0 marks 0/1"},
            {"two point:pixelate", "2 marks 2/0 selected 1 changed"},
            {"two drag:counter", "2 marks 2/0 selected 1 changed"},
            {"two click:text type:c tool:arrow", "3 marks 3/0 selected 2 changed"},
            {"two edit:1 type:abc type:ab end", "2 marks 2/0 selected 1 changed"},
            {"two edit:1 type: end", "1 marks 3/0 changed"},
            {"two edit:0 edit:2 edit:-1", "2 marks 2/0 selected 1 changed"},
            {"two click:text edit:1", "3 marks 2/0 selected 2 typing 2 changed"},
            {"two click:text type:c undo", "2 marks 2/1 selected 1 changed"},
            {"two undo click:text type:c redo", "2 marks 2/0 selected 1 changed"},
            {"two undo drag:arrow", "2 marks 2/0 changed"},
            {"two delete tool:crop undo", "2 marks 2/1 changed"},
            {"two unselect delete move reshape blue", "2 marks 2/0 changed"},
            {"two click:text uncrop", "3 marks 2/0 selected 2 typing 2 changed"},
            {"two click:text type:c crop", "3 marks 4/0 selected 2 changed"},
            {"drag:arrow corner blue large blue large", "1 marks 3/0 selected 0 changed"},
            {"drag:highlighter corner blue large", "1 marks 2/0 selected 0 changed"},
            {"drag:pixelate corner blue large", "1 marks 1/0 selected 0 changed"},
            {"two nudge:1 blue nudge:1", "2 marks 5/0 selected 1 changed"},
            {"two nudge:1 edit:1 end nudge:1", "2 marks 4/0 selected 1 changed"},
            {"two first reshape", "2 marks 2/0 selected 0 changed"},
            {"two edit:1 type:abc blue end", "2 marks 3/0 selected 1 changed"},
        });
}

void AnnotationSessionTest::selects()
{
    // with a tolerance of 3
    checkRows(
        +[](const char*, QPointF point, const std::optional<qsizetype>& expected) {
            auto session = AnnotationFakes::session();
            drag(session, Tool::arrow, {20, 20}, {60, 20});
            click(session, Tool::counter, {100, 20});
            click(session, Tool::text, {10, 60}, u"ab"_s); // 36 × 30.5
            drag(session, Tool::highlighter, {140, 60}, {160, 80});
            drag(session, Tool::pixelate, {20, 18}, {60, 98});
            drag(session, Tool::highlighter, {145, 65}, {155, 75});
            session.select(point, 3);
            QCOMPARE(session.selection(), expected);
        },
        {
            {"half the stroke and the tolerance", {40, 15}, 0},
            {"the counter's disc", {117, 20}, 1},
            {"the label's far corner", {49, 93.5}, 2},
            {"a mark over a pixelated area, though older", {40, 20}, 0},
            {"the pixelated area", {40, 30}, 4},
            {"the newer of two", {150, 70}, 5},
        });
}

void AnnotationSessionTest::hits()
{
    // the start is (100, 100); within 5
    checkRows(
        +[](const char*, Annotation::Kind kind, QPointF end, QPointF point, bool expected) {
            QCOMPARE((Annotation{kind, {100, 100}, end, {}, {}, {}}.isHit(point, 5)), expected);
        },
        {
            {"beside an arrow", Annotation::Kind::arrow, {200, 100}, {150, 105}, true},
            {"beyond its end", Annotation::Kind::arrow, {200, 100}, {205, 100}, true},
            {"beyond its end, at an angle", Annotation::Kind::arrow, {200, 100}, {204, 104}, false},
            {"on its line but far from its end", Annotation::Kind::arrow, {200, 200}, {210, 210}, false},
            {"an arrow that is a point", Annotation::Kind::arrow, {100, 100}, {103, 104}, true},
            {"inside an outline", Annotation::Kind::rectangle, {200, 200}, {150, 150}, false},
            {"lower side", Annotation::Kind::rectangle, {200, 200}, {150, 196}, true},
            {"right side", Annotation::Kind::rectangle, {200, 200}, {195, 150}, true},
            {"upper side", Annotation::Kind::rectangle, {200, 200}, {150, 95}, true},
            {"a side, drawn backwards", Annotation::Kind::rectangle, {0, 0}, {50, 105}, true},
            {"at an area's grown corner", Annotation::Kind::pixelate, {200, 200}, {205, 205}, true},
            {"the corner of its square", Annotation::Kind::counter, {100, 100}, {105, 105}, false},
            {"a text, even on its corner", Annotation::Kind::text, {100, 100}, {100, 100}, false},
        });
}

void AnnotationSessionTest::staysInsideThePicture()
{
    // of a mark that starts at (50, 40), in 200 × 100; of its start after a move far to the upper left
    checkRows(
        +[](const char*, Tool tool, QPointF end, QPointF topLeft, QPointF bottomRight) {
            auto session = AnnotationFakes::session();
            if (end.isNull())
                click(session, tool, {50, 40}, u"ab"_s);
            else
                drag(session, tool, {50, 40}, end);
            session.select({50, 40}, 1);
            for (const auto& [direction, expected] : {std::pair(-1e6, topLeft), std::pair(1e6, bottomRight)}) {
                session.moveSelection({direction, direction});
                QCOMPARE(session.annotations().first().start, expected);
            }
        },
        {
            {"arrow drawn backwards", Tool::arrow, {20, 60.25}, {30, 0}, {200, 79.75}},
            {"label", Tool::text, {}, {0, 0}, {164, 69.5}},
            {"larger than the picture", Tool::pixelate, {350.1, 60}, {0, 0}, {0, 80}},
        });
}

void AnnotationSessionTest::draws()
{
    checkRows(
        +[](const char*, Tool tool, QPointF from, QPointF to, const QString& expected) {
            auto session = AnnotationFakes::session();
            if (to.isNull())
                click(session, tool, from, u"abc\nd"_s);
            else
                drag(session, tool, from, to);
            QCOMPARE(marksDrawn(session, session.pictureBounds()).join(u", "), expected);
        },
        {
            {"arrow",
             Tool::arrow,
             {10, 50},
             {110, 50},
             u"strokeLine red 4 round 10 50 94.6 50, fillPolygon red 110 50 88 61 88 39"_s},
            {"arrow shorter than its head",
             Tool::arrow,
             {50, 60},
             {50, 50},
             u"strokeLine red 4 round 50 60 50 57, fillPolygon red 50 50 55 60 45 60"_s},
            {"rectangle drawn backwards", Tool::rectangle, {60, 50}, {20, 10}, u"stroke red 4 20,10+40x40"_s},
            {"highlight", Tool::highlighter, {20, 10}, {60, 50}, u"alpha 0.4, fill red 20,10+40x40"_s},
            {"pixelate", Tool::pixelate, {21, 11}, {60, 50}, u"clip 21,11+39x39, picture 10 5 0,0+200x100 blocks"_s},
            // Digits 15.4 high: half as wide, three quarters of it above the baseline.
            {"counter",
             Tool::counter,
             {50, 40},
             {},
             u"fillEllipse red 36,26+28x28, translate 50 40, scale 1 1, text 1 15.4 white -3.85 5.775"_s},
            {"text of two lines",
             Tool::text,
             {10, 20},
             {},
             u"fillRounded red 10,20+46x53 6, text abc 20 white 18 39, text d 20 white 18 61.5"_s},
        });
}

void AnnotationSessionTest::drawsPixelatedAreasFirst()
{
    auto session = AnnotationFakes::session();
    drag(session, Tool::rectangle, {10, 10}, {50, 50});
    drag(session, Tool::pixelate, {20, 20}, {60, 60});
    session.setColor(AnnotationPalette::blue);
    drag(session, Tool::rectangle, {30, 30}, {70, 70});
    drag(session, Tool::pixelate, {40, 40}, {80, 80});
    QCOMPARE(session.drawOrder(), QList<qsizetype>({1, 3, 0, 2}));
    QCOMPARE(marksDrawn(session, session.pictureBounds()).filter(QRegularExpression(u"^(clip|stroke)"_s)),
             QStringList({u"clip 20,20+40x40"_s, u"clip 40,40+40x40"_s, u"stroke red 4 10,10+40x40"_s,
                          u"stroke blue 4 30,30+40x40"_s}));
}

void AnnotationSessionTest::skipsWhatIsElsewhere()
{
    auto session = AnnotationFakes::session();
    drag(session, Tool::rectangle, {10, 10}, {50, 50});
    QVERIFY(!marksDrawn(session, {52, 0, 10, 10}).isEmpty()); // a stroke of 4 reaches 52, its blur 53
    QVERIFY(marksDrawn(session, {53, 0, 10, 10}).isEmpty());
    click(session, Tool::text, {110, 60}, u"a\nÅ"_s);
    QVERIFY(marksDrawn(session, {110, 20, 20, 20}).isEmpty());
    session.beginEditing(1);
    session.setText(u"Å\na"_s); // 40 above the baseline, at 79
    QVERIFY(!marksDrawn(session, {110, 20, 20, 20}).isEmpty());
}

void AnnotationSessionTest::flattensTheCrop()
{
    auto session = AnnotationFakes::session();
    session.setCrop({30, 20, 60, 50});
    drag(session, Tool::rectangle, {10, 10}, {50, 50});
    drag(session, Tool::rectangle, {150, 10}, {180, 50}); // cut away
    const auto flat = std::dynamic_pointer_cast<const PlainPicture>(session.flatten());
    QCOMPARE(flat->size(), QSize(60, 50));
    QCOMPARE(flat->calls().mid(1, 4), QStringList({u"scale 1 1"_s, u"translate -30 -20"_s, u"clip 30,20+60x50"_s,
                                                   u"picture 200 100 0,0+200x100 smooth"_s}));
    QCOMPARE(flat->calls().filter(u"stroke"_s), QStringList{u"stroke red 4 10,10+40x40"_s});
    QCOMPARE(flat->calls().count(u"save"_s), flat->calls().count(u"restore"_s));
}

void AnnotationSessionTest::flattensNothingRatherThanWhatWasCovered()
{
    for (const int contexts : {0, 1, 2}) {
        auto session = AnnotationFakes::session();
        drag(session, Tool::pixelate, {10, 10}, {50, 50});
        dynamic_cast<const PlainPicture&>(*session.picture()).contextsLeft = contexts;
        QCOMPARE(session.flatten() != nullptr, contexts == 2); // the blocks, and the result
    }
}

void AnnotationSessionTest::measuresByTheLongestSide()
{
    const auto layout = std::make_shared<AnnotationFakes::BlockLayout>();
    const Annotation mark{Annotation::Kind::text, {}, {}, {}, AnnotationSize::small, {}};
    QCOMPARE(AnnotationMeasures({3000, 4000}, layout).strokeWidth(mark), 8.0);
    QCOMPARE(AnnotationMeasures({1250, 10}, layout).strokeWidth(mark), 3.0); // half a pixel counts
    for (const auto& [side, block] : {std::pair(2049, 20), {2050, 21}})
        QCOMPARE(AnnotationMeasures({side, 1}, layout).pixelateBlockSize(), block);
}

QTEST_APPLESS_MAIN(AnnotationSessionTest)
#include "AnnotationSessionTest.moc"
