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

} // namespace

void QtGraphicsTest::blocksStandOnOneGrid()
{
    // Blocks of 38 in colours of their own: each must come to lie on itself.
    QImage blocks = plain(Qt::white, {3840, 40});
    for (int y = 0; y < blocks.height(); ++y) {
        for (int x = 0; x < blocks.width(); ++x)
            blocks.setPixel(x, y, qRgb(x / 38, y / 38, 7));
    }
    AnnotationSession document = session(blocks, AnnotationTool::pixelate);
    document.place(QPointF(11, 3), QPointF(3829, 40));
    QCOMPARE(flattened(document).convertToFormat(blocks.format()), blocks);
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
    const auto blocks = session(image, AnnotationTool::pixelate).makePixelatedPicture();
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
    const QColorSpace asPNGSaysIt(QColorSpace::Primaries::SRgb, 1 / 0.45455F);
    for (const QColorSpace& space : {asPNGSaysIt, QColorSpace(QColorSpace::DisplayP3)}) {
        image.setColorSpace(space);
        AnnotationSession document = session(image, AnnotationTool::counter);
        document.place(QPointF(30, 20));
        QImage result = flattened(document);
        QCOMPARE(result.pixel(18, 20) == red, space == asPNGSaysIt); // it is less saturated in the wider space
        result.convertToColorSpace(QColorSpace::SRgb);
        const QColor back(result.pixel(18, 20));
        QVERIFY(std::abs(back.red() - 255) <= 2 && std::abs(back.green() - 59) <= 2 && std::abs(back.blue() - 48) <= 2);
    }
}

void QtGraphicsTest::textIsMeasuredAsItIsDrawn()
{
    const QPointF baseline(50, 150);
    for (const auto& [text, size] : {std::pair(u"gjy|Å side"_s, 15.4), std::pair(u"שלום עולם"_s, 40.0)}) {
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
