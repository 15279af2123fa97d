#include "PictureTranscoder.h"
#include "EncodedPicture.h"

#include <QColorSpace>
#include <QRandomGenerator>
#include <QTest>

#include <spng.h>

#include <array>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

/// A picture in which every pixel differs from its neighbours.
QImage pattern(QImage::Format format)
{
    QImage image(37, 19, QImage::Format_RGBA64);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y,
                                QColor::fromRgba64(quint16(x * 1771), quint16(y * 3449), quint16(x * y * 97),
                                                   quint16(65535 - x * 900)));
    return image.convertToFormat(format);
}

QImage indexed()
{
    const QList<QRgb> palette{qRgba(255, 0, 0, 255), qRgba(0, 255, 0, 128), qRgba(0, 0, 255, 0)};
    return pattern(QImage::Format_ARGB32).convertToFormat(QImage::Format_Indexed8, palette);
}

/// A 4 × 4 grey picture as another program may write it: interlaced, with a comment and a position.
QByteArray encodedByHand(bool interlaced)
{
    spng_ctx* context = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_set_option(context, SPNG_ENCODE_TO_BUFFER, 1);
    spng_ihdr header{4, 4, 8, SPNG_COLOR_TYPE_GRAYSCALE, 0, 0, 0};
    header.interlace_method = interlaced ? SPNG_INTERLACE_ADAM7 : SPNG_INTERLACE_NONE;
    spng_set_ihdr(context, &header);
    std::array<char, 16> text{"taken at home"};
    spng_text comment{};
    qstrcpy(comment.keyword, "Comment");
    comment.type = SPNG_TEXT;
    comment.text = text.data();
    comment.length = 13;
    spng_set_text(context, &comment, 1);
    std::array<char, 8> exif{'M', 'M', 0, 42, 0, 0, 0, 8};
    spng_exif position{exif.size(), exif.data()};
    spng_set_exif(context, &position);
    spng_set_gama_int(context, 45455);
    std::array<uchar, 16> pixels{};
    for (size_t i = 0; i < pixels.size(); ++i)
        pixels.at(i) = uchar(i * 16);
    spng_encode_image(context, pixels.data(), pixels.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
    size_t length = 0;
    int error = 0;
    void* png = spng_get_png_buffer(context, &length, &error);
    QByteArray bytes(static_cast<char*>(png), qsizetype(length));
    free(png); // NOLINT(cppcoreguidelines-no-malloc): the library's contract
    spng_ctx_free(context);
    return bytes;
}

/// A grey TIFF of that size as another program may write it, with 12 × 9 pixels at most, and the place of the next
/// picture in the file.
QByteArray tiffByHand(quint32 width, quint32 height, quint32 orientation = 1, quint32 next = 0)
{
    QByteArray bytes("II*\0", 4);
    const auto put = [&bytes](auto value) { bytes.append(reinterpret_cast<const char*>(&value), sizeof value); };
    const std::pair<quint16, quint32> tags[] = {{256, width}, {257, height},      {258, 8}, {259, 1},      {262, 1},
                                                {273, 134},   {274, orientation}, {277, 1}, {278, height}, {279, 108}};
    put(quint32{8});
    put(static_cast<quint16>(std::size(tags)));
    for (const auto& [tag, value] : tags) {
        put(tag);
        put(quint16{4}); // LONG
        put(quint32{1});
        put(value);
    }
    put(next);
    return bytes + QByteArray(108, '\x40');
}

} // namespace

class PictureTranscoderTest final : public QObject
{
    Q_OBJECT
private slots:
    void keepsEveryPixel();
    void dropsWhatIsNotThePicture();
    void keepsManyPixelsAsTheyCame();
    void keepsTheColourSpace();
    void turnsAndTakesTheFirst();
    void refuses();
};

void PictureTranscoderTest::keepsEveryPixel()
{
    const std::pair<QImage, const char*> pictures[] = {
        {pattern(QImage::Format_RGB32), "png"},
        {pattern(QImage::Format_ARGB32), "png"},
        {pattern(QImage::Format_RGBA64), "png"},
        {pattern(QImage::Format_Mono), "png"},
        {indexed(), "png"},
        {pattern(QImage::Format_RGB32), "tiff"},
        {pattern(QImage::Format_ARGB32), "tiff"},
        {pattern(QImage::Format_RGBA64), "tiff"},
    };
    for (const auto& [image, format] : pictures) {
        const QByteArray picture = encoded(image, format);
        const QImage expected = QImage::fromData(picture);
        QVERIFY(!expected.isNull());
        const auto comparable = expected.depth() > 32 ? QImage::Format_RGBA64 : QImage::Format_RGBA8888;
        std::stop_source hurry;
        for (int i = 0; i < 2; ++i) {
            const std::optional<QByteArray> png = PictureTranscoder::toPNG(picture, hurry.get_token());
            QVERIFY(png);
            QCOMPARE(QImage::fromData(*png).convertToFormat(comparable), expected.convertToFormat(comparable));
            if (format == "png"_ba)
                QCOMPARE(png->mid(16, 10), picture.mid(16, 10)); // size, bit depth and colour type
            hurry.request_stop();                                // the second time
        }
    }
}

void PictureTranscoderTest::dropsWhatIsNotThePicture()
{
    for (const bool interlaced : {false, true}) {
        const QByteArray png = PictureTranscoder::toPNG(encodedByHand(interlaced)).value_or(QByteArray());
        QVERIFY(!png.contains("taken at home") && !png.contains("eXIf") && png.contains("gAMA"));
        QCOMPARE(png.at(28), '\0'); // not interlaced
        QCOMPARE(QImage::fromData(png), QImage::fromData(encodedByHand(false)));
        QCOMPARE(png, PictureTranscoder::toPNG(encodedByHand(!interlaced))); // the same of the same
    }
}

void PictureTranscoderTest::keepsManyPixelsAsTheyCame()
{
    QImage image(1500, 1300, QImage::Format_RGB888);
    image.fill(Qt::gray);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32*>(image.bits()), image.bytesPerLine() / 4 * 1200);
    QByteArray picture = encoded(image);
    picture.insert(33, QByteArray::fromHex("00000012744558744e6f74650074616b656e20617420686f6d651f7144f3")); // tEXt
    const auto pixelsOf = [](const QByteArray& png) {
        const qsizetype begin = png.indexOf("IDAT") - 4;
        return png.sliced(begin, png.lastIndexOf("IEND") - 4 - begin);
    };
    const QByteArray png = PictureTranscoder::toPNG(picture + "of last year").value_or(QByteArray());
    QCOMPARE(pixelsOf(png), pixelsOf(picture));
    QVERIFY(!png.contains("taken at home") && png.endsWith(picture.last(12)));
    QCOMPARE(QImage::fromData(png), QImage::fromData(picture));

    // What is behind the end of the compressed pixels, among them, goes.
    QByteArray cropped = picture;
    cropped.insert(cropped.size() - 12,
                   QByteArray::fromHex("0000000c4944415463726f707065642061776179c310c2ba")); // IDAT
    const QByteArray anew = PictureTranscoder::toPNG(cropped).value_or(QByteArray());
    QVERIFY(!anew.contains("cropped away"));
    QCOMPARE(QImage::fromData(anew), QImage::fromData(picture));

    QCOMPARE(PictureTranscoder::toPNG(picture.first(picture.size() - 100)), std::nullopt);
    picture[picture.size() / 2] = char(picture.at(picture.size() / 2) ^ 0x55);
    QCOMPARE(PictureTranscoder::toPNG(picture), std::nullopt);
}

void PictureTranscoderTest::keepsTheColourSpace()
{
    QImage image = pattern(QImage::Format_RGB32);
    image.setColorSpace(QColorSpace::DisplayP3);
    const QByteArray png = PictureTranscoder::toPNG(encoded(image)).value_or(QByteArray());
    QCOMPARE(QImage::fromData(png).colorSpace(), QImage::fromData(encoded(image)).colorSpace());
    QVERIFY(QImage::fromData(png).colorSpace() != QColorSpace(QColorSpace::SRgb));

    const QByteArray fromTIFF = PictureTranscoder::toPNG(encoded(image, "tiff")).value_or(QByteArray());
    const QImage converted = image.convertedToColorSpace(QColorSpace::SRgb);
    QCOMPARE(QImage::fromData(fromTIFF).pixelColor(20, 10), converted.pixelColor(20, 10));
}

void PictureTranscoderTest::turnsAndTakesTheFirst()
{
    const auto sizeOf = [](const QByteArray& tiff) {
        return QImage::fromData(PictureTranscoder::toPNG(tiff).value_or(QByteArray())).size();
    };
    QCOMPARE(sizeOf(tiffByHand(12, 9)), QSize(12, 9));
    QCOMPARE(sizeOf(tiffByHand(12, 9, 6)), QSize(9, 12));
    QCOMPARE(sizeOf(tiffByHand(12, 9, 77)), QSize(12, 9));   // there is no such orientation
    QCOMPARE(sizeOf(tiffByHand(12, 9, 1, 8)), QSize(12, 9)); // which is its own successor
    // An animation is its first picture.
    QByteArray animated = encoded(pattern(QImage::Format_RGB32));
    animated.insert(33, QByteArray::fromHex("000000086163544c000186a00000000097f4a3f7")); // acTL: 100,000 pictures
    QCOMPARE(sizeOf(animated), QSize(37, 19));
}

void PictureTranscoderTest::refuses()
{
    const QByteArray png = encoded(pattern(QImage::Format_RGB32));
    QByteArray flipped = png;
    flipped[flipped.size() / 2] = char(flipped.at(flipped.size() / 2) ^ 0x55);
    const QByteArray pictures[] = {
        {},
        encoded(pattern(QImage::Format_RGB32), "bmp"),
        png.first(png.size() * 2 / 3),
        flipped,
        encoded(pattern(QImage::Format_RGB32), "tiff").first(100),
        announcement,
        tiffByHand(60'000, 60'000),
        tiffByHand(8000, 8000), // nearly all of it is missing
        tiffByHand(0, 9),
        png.first(41), // nothing behind the header
        PictureTranscoder::toPNG(QImage(17'000'000, 1, QImage::Format_Grayscale8)).value_or(png),
    };
    for (const QByteArray& picture : pictures)
        QCOMPARE(PictureTranscoder::toPNG(picture), std::nullopt);
}

QTEST_GUILESS_MAIN(PictureTranscoderTest)
#include "PictureTranscoderTest.moc"
