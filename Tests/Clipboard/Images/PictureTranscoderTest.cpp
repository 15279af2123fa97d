#include "PictureTranscoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QTest>
#include <QtEndian>

#include <spng.h>

#include <array>

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

/// A picture in which every pixel differs from its neighbours.
QImage pattern(QImage::Format format)
{
    QImage image(37, 19, QImage::Format_RGBA64);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y,
                                QColor::fromRgba64(quint16(x * 1771), quint16(y * 3449), quint16(x * y * 97),
                                                   quint16(65535 - x * 900)));
    }
    return image.convertToFormat(format);
}

QImage indexed()
{
    QImage image(9, 5, QImage::Format_Indexed8);
    image.setColorTable({qRgba(255, 0, 0, 255), qRgba(0, 255, 0, 128), qRgba(0, 0, 255, 0)});
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, uint((x + y) % 3));
    }
    return image;
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

/// The header of a picture of that size, and nothing behind it.
QByteArray headerOnly(quint32 width, quint32 height)
{
    QByteArray chunk("IHDR");
    const auto add32 = [](QByteArray& bytes, quint32 value) {
        value = qToBigEndian(value);
        bytes.append(reinterpret_cast<const char*>(&value), 4);
    };
    add32(chunk, width);
    add32(chunk, height);
    chunk.append(QByteArray::fromHex("0806000000"));
    quint32 crc = 0xffffffff;
    for (const char byte : chunk) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0xedb88320 : crc >> 1;
    }
    QByteArray png("\x89PNG\r\n\x1a\n");
    add32(png, 13);
    png += chunk;
    add32(png, ~crc);
    png.append(QByteArray::fromHex("0000000049444154"));
    add32(png, 0x35af061e);
    return png;
}

} // namespace

class PictureTranscoderTest final : public QObject
{
    Q_OBJECT
private slots:
    void keepsEveryPixel_data();
    void keepsEveryPixel();
    void keepsPaletteAndDepth();
    void dropsWhatIsNotThePicture();
    void keepsTheColourSpace();
    void makesTheSameOfTheSame();
    void refuses_data();
    void refuses();
};

void PictureTranscoderTest::keepsEveryPixel_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("png") << pattern(QImage::Format_RGB32) << QByteArray("png");
    QTest::newRow("png with alpha") << pattern(QImage::Format_ARGB32) << QByteArray("png");
    QTest::newRow("png, 16 bits a channel") << pattern(QImage::Format_RGBA64) << QByteArray("png");
    QTest::newRow("png, one bit") << pattern(QImage::Format_Mono) << QByteArray("png");
    QTest::newRow("png, palette with alpha") << indexed() << QByteArray("png");
    QTest::newRow("tiff") << pattern(QImage::Format_RGB32) << QByteArray("tiff");
    QTest::newRow("tiff with alpha") << pattern(QImage::Format_ARGB32) << QByteArray("tiff");
    QTest::newRow("tiff, 16 bits a channel") << pattern(QImage::Format_RGBA64) << QByteArray("tiff");
}

void PictureTranscoderTest::keepsEveryPixel()
{
    QFETCH(QImage, image);
    QFETCH(QByteArray, format);
    const QByteArray picture = encoded(image, format.constData());
    const QImage expected = QImage::fromData(picture);
    const auto comparable = expected.depth() > 32 ? QImage::Format_RGBA64 : QImage::Format_RGBA8888;

    QVERIFY(!expected.isNull());
    std::stop_source hurry;
    for (int i = 0; i < 2; ++i) {
        const std::optional<QByteArray> png = PictureTranscoder::toPNG(picture, hurry.get_token());
        QVERIFY(png);
        QCOMPARE(QImage::fromData(*png).convertToFormat(comparable), expected.convertToFormat(comparable));
        hurry.request_stop(); // the second time
    }
}

void PictureTranscoderTest::keepsPaletteAndDepth()
{
    for (const QImage& image : {indexed(), pattern(QImage::Format_Mono), pattern(QImage::Format_RGBA64)}) {
        const QByteArray picture = encoded(image, "png");
        const QByteArray png = PictureTranscoder::toPNG(picture).value_or(QByteArray());
        QCOMPARE(png.mid(8, 25).mid(8, 10), picture.mid(8, 25).mid(8, 10)); // size, bit depth and colour type
    }
}

void PictureTranscoderTest::dropsWhatIsNotThePicture()
{
    for (const bool interlaced : {false, true}) {
        const QByteArray png = PictureTranscoder::toPNG(encodedByHand(interlaced)).value_or(QByteArray());
        QVERIFY(!png.contains("taken at home") && !png.contains("eXIf") && png.contains("gAMA"));
        QCOMPARE(png.at(28), '\0'); // not interlaced
        QCOMPARE(QImage::fromData(png), QImage::fromData(encodedByHand(false)));
    }
}

void PictureTranscoderTest::keepsTheColourSpace()
{
    QImage image = pattern(QImage::Format_RGB32);
    image.setColorSpace(QColorSpace::DisplayP3);
    const QByteArray png = PictureTranscoder::toPNG(encoded(image, "png")).value_or(QByteArray());
    QCOMPARE(QImage::fromData(png).colorSpace(), QImage::fromData(encoded(image, "png")).colorSpace());
    QVERIFY(QImage::fromData(png).colorSpace() != QColorSpace(QColorSpace::SRgb));

    const QByteArray fromTIFF = PictureTranscoder::toPNG(encoded(image, "tiff")).value_or(QByteArray());
    const QImage converted = image.convertedToColorSpace(QColorSpace::SRgb);
    QCOMPARE(QImage::fromData(fromTIFF).pixelColor(20, 10), converted.pixelColor(20, 10));
}

void PictureTranscoderTest::makesTheSameOfTheSame()
{
    const QImage image = pattern(QImage::Format_RGB32);
    QImageWriter writer;
    QByteArray small;
    QBuffer buffer(&small);
    buffer.open(QIODevice::WriteOnly);
    writer.setDevice(&buffer);
    writer.setFormat("png");
    writer.setQuality(0); // compressed by another program, in another way
    writer.setText(u"Author"_s, u"me"_s);
    writer.write(image);
    QCOMPARE(PictureTranscoder::toPNG(small), PictureTranscoder::toPNG(encoded(image, "png")));
}

void PictureTranscoderTest::refuses_data()
{
    QTest::addColumn<QByteArray>("picture");

    const QByteArray png = encoded(pattern(QImage::Format_RGB32), "png");
    QByteArray flipped = png;
    flipped[flipped.size() / 2] = char(flipped.at(flipped.size() / 2) ^ 0x55);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("another format") << encoded(pattern(QImage::Format_RGB32), "bmp");
    QTest::newRow("truncated pixels") << png.first(png.size() * 2 / 3);
    QTest::newRow("damaged pixels") << flipped;
    QTest::newRow("truncated tiff") << encoded(pattern(QImage::Format_RGB32), "tiff").first(100);
    QTest::newRow("bomb: 16 GiB announced") << headerOnly(65536, 65536);
    QTest::newRow("nothing behind the header") << headerOnly(100, 100);
}

void PictureTranscoderTest::refuses()
{
    QFETCH(QByteArray, picture);
    QCOMPARE(PictureTranscoder::toPNG(picture), std::nullopt);
}

QTEST_GUILESS_MAIN(PictureTranscoderTest)
#include "PictureTranscoderTest.moc"
