#include "QtGraphics.h"
#include "Annotation/AnnotationSession.h"
#include "Pictures.h"

#include <QColorSpace>
#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class QtGraphicsTest final : public QObject
{
    Q_OBJECT
private slots:
    void marksCoverWhatTheyShould_data();
    void marksCoverWhatTheyShould();
    void counterShowsItsDigitsInTheMiddle();
    void blocksStandOnOneGrid();
    void blocksAreMeansOfPremultipliedPixels();
    void resultIsTheCropAndNothingElse();
    void colorsFollowTheColorSpaceOfThePicture();
    void textIsMeasuredAsItIsDrawn();
    void caretsStandBetweenCharacters();
};

namespace {

const auto textLayout = [] {
    static const auto layout = std::make_shared<const QtTextLayout>();
    return layout;
};

/// In red and medium: stroke 4, counter 28, font 20 as long as no side passes 1000.
AnnotationSession session(const QImage& image, AnnotationTool tool)
{
    AnnotationSession made(std::make_shared<QtPicture>(image, textLayout()), AnnotationPalette::red,
                           AnnotationSize::medium, textLayout());
    made.chooseTool(tool);
    return made;
}

QImage flattened(const AnnotationSession& session)
{
    return QtPicture::imageOf(*session.flatten());
}

constexpr QRgb highlighted = 0xffffb0ac; // two fifths of red on white, to the painter's precision

using Points = QList<QPoint>;

} // namespace

void QtGraphicsTest::marksCoverWhatTheyShould_data()
{
    QTest::addColumn<AnnotationTool>("tool");
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QRgb>("color");
    QTest::addColumn<Points>("inside");
    QTest::addColumn<Points>("outside");

    // The head is 22 long and as wide, the shaft 4.
    QTest::newRow("arrow") << AnnotationTool::arrow << QPointF(20, 50) << QPointF(120, 50) << red
                           << Points{{19, 50}, {60, 48}, {60, 51}, {99, 41}, {99, 58}, {116, 50}}
                           << Points{{16, 50}, {60, 46}, {60, 53}, {96, 41}, {96, 58}, {110, 41}, {121, 50}};
    QTest::newRow("short arrow is a head") << AnnotationTool::arrow << QPointF(20, 50) << QPointF(30, 50) << red
                                           << Points{{21, 47}, {21, 52}} << Points{{21, 43}, {21, 56}, {31, 50}};
    QTest::newRow("rectangle, from its end")
        << AnnotationTool::rectangle << QPointF(80, 60) << QPointF(20, 20) << red
        << Points{{18, 40}, {21, 40}, {50, 61}, {81, 40}} << Points{{17, 40}, {22, 40}, {50, 40}, {17, 17}};
    QTest::newRow("highlighter") << AnnotationTool::highlighter << QPointF(20, 20) << QPointF(80, 60) << highlighted
                                 << Points{{20, 20}, {79, 59}} << Points{{19, 20}, {80, 59}, {79, 60}};
    QTest::newRow("counter") << AnnotationTool::counter << QPointF(50, 50) << QPointF() << red
                             << Points{{37, 50}, {62, 50}, {50, 37}, {50, 62}} << Points{{35, 50}, {39, 39}, {64, 50}};
    // A label without text: padding 8 and 4 around one empty line, corners of radius 6.
    QTest::newRow("label") << AnnotationTool::text << QPointF(50, 50) << QPointF() << red
                           << Points{{57, 51}, {51, 60}, {64, 60}} << Points{{50, 50}, {65, 50}, {49, 60}, {67, 60}};
}

void QtGraphicsTest::marksCoverWhatTheyShould()
{
    QFETCH(const AnnotationTool, tool);
    QFETCH(const QPointF, from);
    QFETCH(const QPointF, to);
    QFETCH(const QRgb, color);
    QFETCH(const Points, inside);
    QFETCH(const Points, outside);
    AnnotationSession document = session(plain(Qt::white, {200, 100}), tool);
    if (to.isNull())
        document.place(from);
    else
        document.place(from, to);
    const QImage result = flattened(document);
    for (const QPoint point : inside)
        QCOMPARE(QColor(result.pixel(point)), QColor(color));
    for (const QPoint point : outside)
        QCOMPARE(QColor(result.pixel(point)), QColor(white));
}

void QtGraphicsTest::counterShowsItsDigitsInTheMiddle()
{
    AnnotationSession document = session(plain(Qt::white, {200, 100}), AnnotationTool::counter);
    for (int i = 0; i < 111; ++i)
        document.place(QPointF(50, 50)); // the last one, 111, lies on top
    document.place(QPointF(150, 50));    // 112
    const QRect disc(136, 36, 28, 28);
    const QImage result = flattened(document);
    QRect digits = extentOf(result.copy(disc.adjusted(5, 5, -5, -5)), red).translated(5, 5);
    QVERIFY2(digits.width() >= 16 && digits.width() <= 21, qPrintable(QString::number(digits.width()))); // 70 % of 28
    QVERIFY(std::abs(digits.center().x() - 13.5) <= 1 && std::abs(digits.center().y() - 13.5) <= 1);
}

void QtGraphicsTest::blocksStandOnOneGrid()
{
    // Blocks of 38 in colours of their own: each column of pixels must show the block that covers it.
    constexpr int side = 38;
    QImage stripes = plain(Qt::white, {3840, 40});
    for (int y = 0; y < stripes.height(); ++y) {
        for (int x = 0; x < stripes.width(); ++x)
            stripes.setPixel(x, y, qRgb(x / side, y / side, 7));
    }
    AnnotationSession document = session(stripes, AnnotationTool::pixelate);
    document.place(QPointF(11, 3), QPointF(3829, 40));
    const QImage result = flattened(document);
    for (int x = 0; x < result.width(); ++x)
        QCOMPARE(result.pixel(x, 39), qRgb(x / side, 1, 7));
}

void QtGraphicsTest::blocksAreMeansOfPremultipliedPixels()
{
    QImage image(30, 20, QImage::Format_ARGB32);
    image.fill(0);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; x += 2)
            image.setPixel(x, y, qRgba(255, 0, 101, 255)); // half of the first block
        image.setPixel(20, y, qRgba(0, 200, 0, 255));      // a tenth of the partial one
    }
    AnnotationSession document = session(image, AnnotationTool::pixelate);
    document.place(QPointF(0, 0), QPointF(30, 20));
    const auto blocks = document.makePixelatedPicture();
    const QImage& pixels = QtPicture::imageOf(*blocks);
    QCOMPARE(pixels.size(), QSize(2, 1));
    const auto* bytes = reinterpret_cast<const QRgb*>(pixels.constScanLine(0));
    QCOMPARE(bytes[0], qRgba(127, 0, 50, 127));
    QCOMPARE(bytes[1], qRgba(0, 20, 0, 25));
}

void QtGraphicsTest::resultIsTheCropAndNothingElse()
{
    QImage image = plain(Qt::blue, {60, 40});
    image.setText(u"Comment"_s, u"taken at home"_s);
    image.setDotsPerMeterX(11811);
    image.setPixelColor(10, 5, Qt::green);
    AnnotationSession document = session(image, AnnotationTool::pixelate);
    document.setCrop({10, 5, 30, 20});
    const QImage result = flattened(document);
    QCOMPARE(result.size(), QSize(30, 20));
    QCOMPARE(result.pixelColor(0, 0), QColor(Qt::green));
    QVERIFY(result.textKeys().isEmpty());
    QCOMPARE(result.dotsPerMeterX(), QImage(1, 1, QImage::Format_RGB32).dotsPerMeterX());
}

void QtGraphicsTest::colorsFollowTheColorSpaceOfThePicture()
{
    QImage image = plain(Qt::white, {60, 40});
    image.setColorSpace({QColorSpace::Primaries::SRgb, 1 / 0.45455F}); // as PNG says it
    AnnotationSession usual = session(image, AnnotationTool::counter);
    usual.place(QPointF(30, 20));
    QCOMPARE(QColor(flattened(usual).pixel(18, 20)), QColor(red));
    image.setColorSpace(QColorSpace::DisplayP3);
    AnnotationSession document = session(image, AnnotationTool::highlighter);
    document.place(QPointF(0, 0), QPointF(60, 40));
    QImage result = flattened(document);
    QCOMPARE(result.colorSpace(), QColorSpace(QColorSpace::DisplayP3));
    document = session(image, AnnotationTool::counter);
    document.place(QPointF(30, 20));
    result = flattened(document);
    QVERIFY(qRed(result.pixel(18, 20)) < 240); // the same red is less saturated in the wider space
    result.convertToColorSpace(QColorSpace::SRgb);
    const QColor back(result.pixel(18, 20));
    QVERIFY(std::abs(back.red() - 255) <= 2 && std::abs(back.green() - 59) <= 2 && std::abs(back.blue() - 48) <= 2);
}

void QtGraphicsTest::textIsMeasuredAsItIsDrawn()
{
    const QPointF baseline(50, 150);
    for (const auto& [text, size] : {std::pair(u"Leave at side door"_s, 14.0), std::pair(u"gjy|Å"_s, 15.4),
                                     std::pair(u"Wide"_s, 92.0), std::pair(u"שלום עולם"_s, 40.0)}) {
        const TextFont font{size};
        QImage image = plain(Qt::white, {600, 200});
        {
            QPainter painter(&image);
            PainterContext(painter, textLayout(), {}).drawText({text, font, AnnotationPalette::black}, baseline);
        }
        const QRectF drawn = extentOf(image);
        const QRectF measured = textLayout()->glyphBounds(text, font).translated(baseline);
        QVERIFY2(QRectF(measured.toAlignedRect()).contains(drawn), qPrintable(text));
        QVERIFY2(drawn.adjusted(-1, -1, 1, 1).contains(measured), qPrintable(text));
        QVERIFY(measured.right() <= baseline.x() + textLayout()->width(text, font) + size / 4);
    }
}

void QtGraphicsTest::caretsStandBetweenCharacters()
{
    const TextFont font{20};
    const QString text = u"a👍e\u0301!"_s; // a pair of surrogates and an accent that combines
    QCOMPARE(textLayout()->caretX(text, font, text.size()), textLayout()->width(text, font));
    QList<qsizetype> stops;
    const int halves = static_cast<int>(2 * textLayout()->width(text, font));
    for (int i = -10; i <= halves + 10; ++i) {
        const qsizetype position = textLayout()->positionAt(text, font, i / 2.0);
        if (stops.isEmpty() || stops.last() != position)
            stops.append(position);
    }
    QCOMPARE(stops, (QList<qsizetype>{0, 1, 3, 5, 6}));
}

QTEST_MAIN(QtGraphicsTest)
#include "QtGraphicsTest.moc"
