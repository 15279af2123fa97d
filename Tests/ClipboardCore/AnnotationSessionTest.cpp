#include "AnnotationFakes.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
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

int countSteps(const AnnotationSession& from, void (AnnotationSession::*travel)() = &AnnotationSession::undo)
{
    AnnotationSession session = from;
    int steps = 0;
    while (travel == &AnnotationSession::undo ? session.canUndo() : session.canRedo()) {
        (session.*travel)();
        ++steps;
    }
    return steps;
}

/// What an operation can get wrong, in short: how many marks, how many steps back and forth, and so on.
QString summary(const AnnotationSession& session)
{
    QString all = u"%1 marks %2/%3"_s.arg(session.annotations().size())
                      .arg(countSteps(session))
                      .arg(countSteps(session, &AnnotationSession::redo));
    if (session.selection())
        all += u" selected %1"_s.arg(*session.selection());
    if (session.editing())
        all += u" typing %1"_s.arg(*session.editing());
    return session.hasChanges() ? all + u" changed"_s : all;
}

/// One operation. What follows a colon is its tool, its text or its mark.
void perform(AnnotationSession& session, const QString& word)
{
    const QString verb = word.section(u':', 0, 0);
    const QString argument = word.section(u':', 1);
    for (const Tool tool : allAnnotationTools) {
        if (label(tool).toLower() == argument)
            session.chooseTool(tool);
    }
    const std::map<QString, std::function<void()>> operations{
        {u"two"_s,
         [&] {
             drag(session, Tool::arrow, {20, 20}, {60, 20});
             click(session, Tool::text, {100, 50}, u"ab"_s);
         }},
        {u"tool"_s, [] {}},
        {u"click"_s,
         [&] {
             session.place({5, 5});
         }},
        {u"drag"_s,
         [&] {
             session.place({5, 5}, {9, 9});
         }},
        {u"point"_s,
         [&] {
             session.place({5, 5}, {5, 5});
         }},
        {u"type"_s, [&] { session.setText(argument); }},
        {u"edit"_s, [&] { session.beginEditing(argument.toInt()); }},
        {u"end"_s, [&] { session.endEditing(); }},
        {u"unselect"_s,
         [&] {
             session.select({5, 90}, 0);
         }},
        {u"first"_s,
         [&] {
             session.select({20, 20}, 0);
         }},
        {u"blue"_s, [&] { session.setColor(AnnotationPalette::blue); }},
        {u"stay"_s, [&] { session.moveSelection({}); }},
        {u"move"_s,
         [&] {
             session.moveSelection({5, 5});
         }},
        {u"nudge"_s,
         [&] {
             session.nudgeSelection({argument.toDouble(), 0});
         }},
        {u"reshape"_s,
         [&] {
             session.reshapeSelection(AnnotationHandle::end, {60, 20});
         }},
        {u"delete"_s, [&] { session.deleteSelection(); }},
        {u"crop"_s,
         [&] {
             session.setCrop({10, 10, 50, 50});
         }},
        {u"uncrop"_s,
         [&] {
             session.setCrop({-10, -10, 500, 500});
         }},
        {u"undo"_s, [&] { session.undo(); }},
        {u"redo"_s, [&] { session.redo(); }},
    };
    operations.at(verb)();
}

} // namespace

class AnnotationSessionTest final : public QObject
{
    Q_OBJECT
private slots:
    void records_data();
    void records();
    void restylesWhatHasTheProperty();
    void selects_data();
    void selects();
    void grabsHandlesInASquare();
    void staysInsideThePicture_data();
    void staysInsideThePicture();
    void reshapesAnyCorner();
    void crops_data();
    void crops();
};

void AnnotationSessionTest::records_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("expected"); // marks, steps to undo and to redo, …
    const auto row = [](const QString& words, const QString& expected) {
        QTest::newRow(qUtf8Printable(words)) << words << expected;
    };
    row(u"tool:text click"_s, u"1 marks 0/0 selected 0 typing 0"_s);
    row(u"tool:text click type:a"_s, u"1 marks 0/0 selected 0 typing 0 changed"_s);
    row(u"click:counter undo"_s, u"0 marks 0/1"_s);
    row(u"crop"_s, u"0 marks 1/0 changed"_s);
    row(u"two point:pixelate"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two drag:counter"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two click:highlighter"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two drag:highlighter"_s, u"3 marks 3/0 selected 1 changed"_s);
    row(u"two click:text type:c tool:arrow"_s, u"3 marks 3/0 selected 2 changed"_s);
    row(u"two edit:1 type:abc type:ab end"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two edit:1 type: end"_s, u"1 marks 3/0 changed"_s);
    row(u"two edit:0 edit:2 edit:-1"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two type:c"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two click:text edit:1"_s, u"3 marks 2/0 selected 2 typing 2 changed"_s);
    row(u"two click:text undo"_s, u"1 marks 1/1 changed"_s);
    row(u"two click:text type:c undo"_s, u"2 marks 2/1 selected 1 changed"_s);
    row(u"two undo click:text type:c redo"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two undo drag:arrow"_s, u"2 marks 2/0 changed"_s);
    row(u"two delete"_s, u"1 marks 3/0 changed"_s);
    row(u"two delete undo"_s, u"2 marks 2/1 selected 1 changed"_s);
    row(u"two delete tool:crop undo"_s, u"2 marks 2/1 changed"_s);
    row(u"two unselect delete move reshape blue"_s, u"2 marks 2/0 changed"_s);
    row(u"two click:text uncrop"_s, u"3 marks 2/0 selected 2 typing 2 changed"_s);
    row(u"two click:text type:c crop"_s, u"3 marks 4/0 selected 2 changed"_s);
    row(u"two nudge:1 nudge:1 nudge:10"_s, u"2 marks 3/0 selected 1 changed"_s);
    row(u"two nudge:1 blue nudge:1"_s, u"2 marks 5/0 selected 1 changed"_s);
    row(u"two nudge:1 nudge:-1 nudge:1"_s, u"2 marks 3/0 selected 1 changed"_s);
    row(u"two nudge:1 edit:1 end nudge:1"_s, u"2 marks 4/0 selected 1 changed"_s);
    row(u"two stay"_s, u"2 marks 2/0 selected 1 changed"_s);
    row(u"two first reshape"_s, u"2 marks 2/0 selected 0 changed"_s);
    row(u"two edit:1 type:abc blue end"_s, u"2 marks 3/0 selected 1 changed"_s);
}

void AnnotationSessionTest::records()
{
    QFETCH(QString, words);
    QFETCH(QString, expected);
    auto session = AnnotationFakes::session();
    const QStringList operations = words.split(u' ');
    for (const QString& word : operations)
        perform(session, word);
    QCOMPARE(summary(session), expected);
}

void AnnotationSessionTest::restylesWhatHasTheProperty()
{
    const std::map<Tool, std::pair<bool, bool>> takes{{Tool::arrow, {true, true}},
                                                      {Tool::rectangle, {true, true}},
                                                      {Tool::highlighter, {true, false}},
                                                      {Tool::pixelate, {false, false}}};
    for (const auto& [tool, expected] : takes) {
        auto session = AnnotationFakes::session();
        drag(session, tool, {20, 20}, {60, 60});
        session.select({20, 20}, 1);
        session.setColor(AnnotationPalette::blue);
        session.setColor(AnnotationPalette::blue); // no change, no step
        session.setSize(AnnotationSize::large);
        const Annotation& mark = session.annotations().first();
        QCOMPARE(mark.color == AnnotationPalette::blue, expected.first);
        QCOMPARE(mark.size == AnnotationSize::large, expected.second);
        QCOMPARE(countSteps(session), 1 + expected.first + expected.second);
        session.undo();
        QCOMPARE(session.selection().has_value(), session.canUndo());
        QCOMPARE(session.color(), AnnotationPalette::blue);
    }
}

void AnnotationSessionTest::selects_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("expected"); // with a tolerance of 3
    const auto row = [](const char* name, QPointF point, int expected) { QTest::newRow(name) << point << expected; };
    row("half the stroke and the tolerance", {40, 15}, 0);
    row("a little more", {40, 14.9}, -1);
    row("the counter's disc", {117, 20}, 1);
    row("beside it", {117.1, 20}, -1);
    row("the label's far corner", {49, 93.5}, 2);
    row("beyond it", {49, 93.6}, 4);
    row("a mark over a pixelated area, though older", {40, 20}, 0);
    row("the pixelated area", {40, 30}, 4);
    row("the newer of two", {150, 70}, 5);
}

void AnnotationSessionTest::selects()
{
    QFETCH(QPointF, point);
    QFETCH(int, expected);
    auto session = AnnotationFakes::session();
    drag(session, Tool::arrow, {20, 20}, {60, 20});
    click(session, Tool::counter, {100, 20});
    click(session, Tool::text, {10, 60}, u"ab"_s); // 36 × 30.5
    drag(session, Tool::highlighter, {140, 60}, {160, 80});
    drag(session, Tool::pixelate, {20, 18}, {60, 98});
    drag(session, Tool::highlighter, {145, 65}, {155, 75});
    session.select(point, 3);
    QCOMPARE(static_cast<int>(session.selection().value_or(-1)), expected);
}

void AnnotationSessionTest::grabsHandlesInASquare()
{
    auto session = AnnotationFakes::session();
    drag(session, Tool::rectangle, {60, 50}, {20, 10});
    QVERIFY(!session.selectedHandle({60, 50}, 8)); // not selected
    session.select({60, 50}, 8);
    QCOMPARE(session.selectedHandle({68, 58}, 8), AnnotationHandle::start);
    QCOMPARE(session.selectedHandle({60, 10}, 8), AnnotationHandle::startXEndY);
    QCOMPARE(session.selectedHandle({20, 58}, 8), AnnotationHandle::endXStartY);
    QVERIFY(!session.selectedHandle({68.1, 58}, 8));
    QCOMPARE(session.selectedHandle({40, 30}, 20), AnnotationHandle::start); // the first of all four
    drag(session, Tool::arrow, {100, 50}, {140, 80});
    session.select({140, 80}, 1);
    QVERIFY(session.selectedHandle({140, 80}, 1) && !session.selectedHandle({140, 50}, 1)); // an arrow has but two
}

void AnnotationSessionTest::staysInsideThePicture_data()
{
    QTest::addColumn<Tool>("tool");
    QTest::addColumn<QPointF>("end");     // of a mark that starts at (50, 40), in 200 × 100
    QTest::addColumn<QPointF>("topLeft"); // of its start after a move far to the upper left
    QTest::addColumn<QPointF>("bottomRight");
    QTest::newRow("arrow drawn backwards")
        << Tool::arrow << QPointF(20, 60.25) << QPointF(30, 0) << QPointF(200, 79.75);
    QTest::newRow("counter") << Tool::counter << QPointF() << QPointF(14, 14) << QPointF(186, 86);
    QTest::newRow("label") << Tool::text << QPointF() << QPointF(0, 0) << QPointF(164, 69.5);
    QTest::newRow("larger than the picture") << Tool::pixelate << QPointF(350.1, 60) << QPointF(0, 0) << QPointF(0, 80);
}

void AnnotationSessionTest::staysInsideThePicture()
{
    QFETCH(Tool, tool);
    QFETCH(QPointF, end);
    QFETCH(QPointF, topLeft);
    QFETCH(QPointF, bottomRight);
    auto session = AnnotationFakes::session();
    if (end.isNull())
        click(session, tool, {50, 40}, u"ab"_s);
    else
        drag(session, tool, {50, 40}, end);
    session.select({50, 40}, 1);
    for (const auto& [direction, expected] : {std::pair(-1e6, topLeft), std::pair(1e6, bottomRight)}) {
        session.moveSelection({direction, direction});
        QCOMPARE(session.annotations().first().start, expected);
        const int steps = countSteps(session);
        for (int i = 0; i < 3; ++i)
            session.moveSelection({direction, direction});
        QCOMPARE(countSteps(session), steps);
    }
}

void AnnotationSessionTest::reshapesAnyCorner()
{
    const std::map<AnnotationHandle, std::pair<QPointF, QPointF>> expected{
        {AnnotationHandle::start, {{7, 8}, {60, 50}}},
        {AnnotationHandle::end, {{20, 10}, {7, 8}}},
        {AnnotationHandle::startXEndY, {{7, 10}, {60, 8}}},
        {AnnotationHandle::endXStartY, {{20, 8}, {7, 50}}}};
    for (const auto& [handle, points] : expected) {
        auto session = AnnotationFakes::session();
        drag(session, Tool::highlighter, {20, 10}, {60, 50});
        session.select({30, 30}, 0);
        session.reshapeSelection(handle, {7, 8}); // past its opposite, or not
        QCOMPARE(session.annotations().first().start, points.first);
        QCOMPARE(session.annotations().first().end, points.second);
    }
}

void AnnotationSessionTest::crops_data()
{
    QTest::addColumn<QRectF>("wanted");
    QTest::addColumn<QRectF>("expected");
    const auto row = [](const char* name, QRectF wanted, QRectF expected) {
        QTest::newRow(name) << wanted << expected;
    };
    row("whole pixels", {10.5, 10.4, 20, 20}, {11, 10, 20, 20});
    row("backwards", {50, 60, -20, -30}, {30, 30, 20, 30});
    row("over the edges", {-5, -5, 300, 50}, {0, 0, 200, 45});
    row("right of the picture", {300, 20, 40, 40}, {199, 20, 1, 40});
    row("left of and above it", {-50, -50, 20, 20}, {0, 0, 1, 1});
    row("empty", {70, 70, 0, 0}, {70, 70, 1, 1});
    row("within the last pixel", {199.6, 99.6, 0.1, 0.1}, {199, 99, 1, 1});
}

void AnnotationSessionTest::crops()
{
    QFETCH(QRectF, wanted);
    QFETCH(QRectF, expected);
    auto session = AnnotationFakes::session();
    session.setCrop(wanted);
    QCOMPARE(session.crop(), expected);
    session.undo();
    QCOMPARE(session.crop(), session.pictureBounds());
}

QTEST_APPLESS_MAIN(AnnotationSessionTest)
#include "AnnotationSessionTest.moc"
