#include <QBuffer>
#include <QFile>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Run
{
    int exitCode = -1;
    QString output;
};

Run runWorker(const QStringList& arguments, const QString& locale = u"en_US.UTF-8"_s)
{
    QProcess worker;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, locale);
    worker.setProcessEnvironment(environment);
    worker.start(QStringLiteral(TESSALY_WORKER), arguments);
    if (!worker.waitForFinished(120'000) || worker.exitStatus() != QProcess::NormalExit)
        return {};
    return {worker.exitCode(), QString::fromUtf8(worker.readAllStandardOutput())};
}

/// The text as a program shows it.
QImage rendered(const QString& text, int pixelSize, const QColor& ink, const QColor& ground)
{
    QFont font(u"Inter"_s);
    font.setPixelSize(pixelSize);
    const QSize size = QFontMetrics(font).size(0, text);
    QImage image(size + QSize(2, 2) * pixelSize, QImage::Format_ARGB32);
    image.fill(ground);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(QRect(QPoint(pixelSize, pixelSize), size), 0, text);
    return image;
}

} // namespace

/// The built worker, over pictures of text and over files that are none.
class TextRecognitionTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void reads_data();
    void reads();
    void readsTheLanguageOfTheUser();
    void findsNothing_data();
    void findsNothing();
    void refuses_data();
    void refuses();

private:
    QTemporaryDir m_folder;
    QString m_picture;
};

void TextRecognitionTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_picture = m_folder.filePath(u"picture.png"_s);
}

void TextRecognitionTest::reads_data()
{
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<QColor>("ink");
    QTest::addColumn<QColor>("ground");

    QTest::newRow("black on white") << 24 << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("white on black") << 24 << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("grey on grey") << 20 << QColor(0xb0b0b0) << QColor(0x303030);
    QTest::newRow("as small as a caption") << 11 << QColor(0x202020) << QColor(0xf4f4f4);
    QTest::newRow("as large as a heading") << 60 << QColor(Qt::darkBlue) << QColor(Qt::yellow);
    QTest::newRow("black on nothing") << 24 << QColor(Qt::black) << QColor(Qt::transparent);
    QTest::newRow("white on nothing") << 24 << QColor(Qt::white) << QColor(Qt::transparent);
}

void TextRecognitionTest::reads()
{
    QFETCH(int, pixelSize);
    QFETCH(QColor, ink);
    QFETCH(QColor, ground);
    const QString text = u"Meet me at the old harbour\nInvoice 4711 costs 12.50 EUR"_s;
    QVERIFY(rendered(text, pixelSize, ink, ground).save(m_picture));
    const Run run = runWorker({u"recognize"_s, m_picture});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, text + u'\n');
}

void TextRecognitionTest::readsTheLanguageOfTheUser()
{
    if (!QFile::exists(u"/usr/share/tesseract-ocr/5/tessdata/deu.traineddata"_s))
        QSKIP("The German data of Tesseract is not installed.");
    const QString text = u"Schöne Grüße aus Österreich"_s;
    QVERIFY(rendered(text, 24, Qt::black, Qt::white).save(m_picture));
    QCOMPARE(runWorker({u"recognize"_s, m_picture}, u"de_DE.UTF-8"_s).output, text + u'\n');
}

void TextRecognitionTest::findsNothing_data()
{
    QTest::addColumn<QImage>("picture");

    const auto filled = [](int width, int height, const QColor& color) {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(color);
        return image;
    };
    QTest::newRow("white") << filled(400, 300, Qt::white);
    QTest::newRow("black") << filled(400, 300, Qt::black);
    QTest::newRow("nothing at all") << filled(400, 300, Qt::transparent);
    QTest::newRow("one pixel") << filled(1, 1, Qt::red);
    QTest::newRow("one row") << filled(5000, 1, Qt::red);
}

void TextRecognitionTest::findsNothing()
{
    QFETCH(QImage, picture);
    QVERIFY(picture.save(m_picture));
    const Run run = runWorker({u"recognize"_s, m_picture});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, QString());
}

void TextRecognitionTest::refuses_data()
{
    QTest::addColumn<QByteArray>("file");

    // Eight bits a channel with alpha, 100,000 × 100,000: 40 GB of pixels, and none of them there.
    const QByteArray announcement = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452000186a0000186a00806000000"
                                                        "a8520bc8000000004944415435af061e");
    QByteArray bomb;
    QBuffer buffer(&bomb);
    buffer.open(QIODevice::WriteOnly);
    QImage large(12'000, 12'000, QImage::Format_Mono);
    large.fill(1);
    large.save(&buffer, "png");

    QTest::newRow("missing") << QByteArray();
    QTest::newRow("a text") << QByteArray("not a picture\n");
    QTest::newRow("half a picture") << bomb.first(bomb.size() / 2);
    QTest::newRow("a size without pixels") << announcement;
    QTest::newRow("a bomb: 144 million pixels in a few kilobytes") << bomb;
}

void TextRecognitionTest::refuses()
{
    QFETCH(QByteArray, file);
    QFile::remove(m_picture);
    if (!file.isEmpty()) {
        QFile out(m_picture);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(file) == file.size());
    }
    const Run run = runWorker({u"recognize"_s, m_picture});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output, QString());
}

QTEST_MAIN(TextRecognitionTest)
#include "TextRecognitionTest.moc"
