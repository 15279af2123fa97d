#include "Annotation/AnnotationMeasures.h"
#include "AnnotationFakes.h"
#include "Rows.h"

#include <QRegularExpression>
#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using AnnotationFakes::PlainPicture;
using AnnotationFakes::RecordingContext;

namespace {

using Change = std::function<void(AnnotationSession&)>;

Change dragged(AnnotationTool tool, QPointF from, QPointF to)
{
    return [=](AnnotationSession& session) {
        session.chooseTool(tool);
        session.place(from, to);
    };
}

Change clicked(AnnotationTool tool, QPointF at, const QString& text = {})
{
    return [=](AnnotationSession& session) {
        session.chooseTool(tool);
        session.place(at);
        session.setText(text);
    };
}

/// What drawing the marks asks of the context, without the states that it saves and the transform around it all.
QStringList marksDrawn(const AnnotationSession& session, const QRectF& region)
{
    RecordingContext context;
    session.drawAnnotations(context, region, 1, nullptr);
    return context.calls().mid(4).filter(QRegularExpression(u"^(?!save|restore)"_s));
}

} // namespace

class AnnotationDrawingTest final : public QObject
{
    Q_OBJECT
private slots:
    void draws();
    void drawsPixelatedAreasFirst();
    void skipsWhatIsElsewhere();
    void flattensTheCrop();
    void flattensNothingRatherThanWhatWasCovered();
    void measuresByTheLongestSide();
};

void AnnotationDrawingTest::draws()
{
    using Tool = AnnotationTool;
    checkRows(
        +[](const char*, const Change& change, const QString& expected) {
            auto session = AnnotationFakes::session();
            change(session);
            session.endEditing();
            QCOMPARE(marksDrawn(session, session.pictureBounds()).join(u", "), expected);
        },
        {
            {"arrow", dragged(Tool::arrow, {10, 50}, {110, 50}),
             u"strokeLine red 4 round 10 50 94.6 50, fillPolygon red 110 50 88 61 88 39"_s},
            {"arrow shorter than its head", dragged(Tool::arrow, {50, 60}, {50, 50}),
             u"strokeLine red 4 round 50 60 50 57, fillPolygon red 50 50 55 60 45 60"_s},
            {"rectangle drawn backwards", dragged(Tool::rectangle, {60, 50}, {20, 10}), u"stroke red 4 20,10+40x40"_s},
            {"highlight", dragged(Tool::highlighter, {20, 10}, {60, 50}), u"alpha 0.4, fill red 20,10+40x40"_s},
            {"pixelate", dragged(Tool::pixelate, {21, 11}, {60, 50}),
             u"clip 21,11+39x39, picture 10 5 0,0+200x100 blocks"_s},
            // Digits 15.4 high: half as wide, three quarters of it above the baseline.
            {"counter", clicked(Tool::counter, {50, 40}),
             u"fillEllipse red 36,26+28x28, translate 50 40, scale 1 1, text 1 15.4 white -3.85 5.775"_s},
            {"text of two lines", clicked(Tool::text, {10, 20}, u"abc\nd"_s),
             u"fillRounded red 10,20+46x53 6, text abc 20 white 18 39, text d 20 white 18 61.5"_s},
        });
}

void AnnotationDrawingTest::drawsPixelatedAreasFirst()
{
    auto session = AnnotationFakes::session();
    dragged(AnnotationTool::rectangle, {10, 10}, {50, 50})(session);
    dragged(AnnotationTool::pixelate, {20, 20}, {60, 60})(session);
    session.setColor(AnnotationPalette::blue);
    dragged(AnnotationTool::rectangle, {30, 30}, {70, 70})(session);
    dragged(AnnotationTool::pixelate, {40, 40}, {80, 80})(session);
    QCOMPARE(session.drawOrder(), QList<qsizetype>({1, 3, 0, 2}));
    QCOMPARE(marksDrawn(session, session.pictureBounds()).filter(QRegularExpression(u"^(clip|stroke)"_s)),
             QStringList({u"clip 20,20+40x40"_s, u"clip 40,40+40x40"_s, u"stroke red 4 10,10+40x40"_s,
                          u"stroke blue 4 30,30+40x40"_s}));
}

void AnnotationDrawingTest::skipsWhatIsElsewhere()
{
    auto session = AnnotationFakes::session();
    dragged(AnnotationTool::rectangle, {10, 10}, {50, 50})(session);
    QVERIFY(!marksDrawn(session, {52, 0, 10, 10}).isEmpty()); // a stroke of 4 reaches 52, its blur 53
    QVERIFY(marksDrawn(session, {53, 0, 10, 10}).isEmpty());
    clicked(AnnotationTool::text, {110, 60}, u"a\nÅ"_s)(session);
    QVERIFY(marksDrawn(session, {110, 20, 20, 20}).isEmpty());
    session.setText(u"Å\na"_s); // 40 above the baseline, at 79
    QVERIFY(!marksDrawn(session, {110, 20, 20, 20}).isEmpty());
}

void AnnotationDrawingTest::flattensTheCrop()
{
    auto session = AnnotationFakes::session();
    session.setCrop({30, 20, 60, 50});
    dragged(AnnotationTool::rectangle, {10, 10}, {50, 50})(session);
    dragged(AnnotationTool::rectangle, {150, 10}, {180, 50})(session); // cut away
    const auto flat = std::dynamic_pointer_cast<const PlainPicture>(session.flatten());
    QCOMPARE(flat->size(), QSize(60, 50));
    QCOMPARE(flat->calls().mid(1, 4), QStringList({u"scale 1 1"_s, u"translate -30 -20"_s, u"clip 30,20+60x50"_s,
                                                   u"picture 200 100 0,0+200x100 smooth"_s}));
    QCOMPARE(flat->calls().filter(u"stroke"_s), QStringList{u"stroke red 4 10,10+40x40"_s});
    QCOMPARE(flat->calls().count(u"save"_s), flat->calls().count(u"restore"_s));
}

void AnnotationDrawingTest::flattensNothingRatherThanWhatWasCovered()
{
    for (const int contexts : {0, 1, 2}) {
        auto session = AnnotationFakes::session();
        dragged(AnnotationTool::pixelate, {10, 10}, {50, 50})(session);
        dynamic_cast<const PlainPicture&>(*session.picture()).contextsLeft = contexts;
        QCOMPARE(session.flatten() != nullptr, contexts == 2); // the blocks, and the result
    }
}

void AnnotationDrawingTest::measuresByTheLongestSide()
{
    // small stroke, large counter, padding of medium text, block
    checkRows(
        +[](const char*, QSize picture, const QList<double>& expected) {
            const AnnotationMeasures measures(picture, std::make_shared<AnnotationFakes::BlockLayout>());
            const auto text = [](AnnotationSize size) {
                return Annotation{Annotation::Kind::text, {}, {}, {}, size, {}};
            };
            const QSizeF padding = measures.textPadding(text(AnnotationSize::medium));
            QCOMPARE(QList<double>({measures.strokeWidth(text(AnnotationSize::small)),
                                    measures.counterDiameter(text(AnnotationSize::large)), padding.width(),
                                    padding.height(), static_cast<double>(measures.pixelateBlockSize())}),
                     expected);
        },
        {
            {"proportional", {4000, 3000}, {8, 112, 27, 14, 40}},
            {"halves away from zero", {1250, 10}, {3, 36, 8, 4, 20}},
            {"last with the smallest block", {2049, 1}, {4, 57, 14, 7, 20}},
            {"first with a larger one", {2050, 1}, {4, 57, 14, 7, 21}},
        });
}

QTEST_APPLESS_MAIN(AnnotationDrawingTest)
#include "AnnotationDrawingTest.moc"
