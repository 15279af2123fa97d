#include "EncodedPicture.h"

#include <QFile>
#include <QFontMetrics>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

using namespace Clipboard::Testing;
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
    void reads();
    void refuses();

private:
    const QTemporaryDir m_folder;
    const QString m_picture = m_folder.filePath(u"picture.png"_s);
};

void TextRecognitionTest::reads()
{
    const QString text = u"Meet me at the old harbour\nInvoice 4711 costs 12.50 EUR"_s;
    const std::tuple<int, QColor, QColor> looks[] = {{24, Qt::black, Qt::white},
                                                     {20, 0xb0b0b0, 0x303030},
                                                     {11, 0x202020, 0xf4f4f4}, // a caption
                                                     {60, Qt::darkBlue, Qt::yellow},
                                                     {24, Qt::white, Qt::transparent}};
    for (const auto& [pixelSize, ink, ground] : looks) {
        QVERIFY(rendered(text, pixelSize, ink, ground).save(m_picture));
        const Run run = runWorker({u"recognize"_s, m_picture});
        QCOMPARE(run.output, text + u'\n');
        QCOMPARE(run.exitCode, 0);
    }
    const QString german = u"Schöne Grüße aus Österreich"_s;
    QVERIFY(rendered(german, 24, Qt::black, Qt::white).save(m_picture));
    QCOMPARE(runWorker({u"recognize"_s, m_picture}, u"de_DE.UTF-8"_s).output, german + u'\n');
}

void TextRecognitionTest::refuses()
{
    QImage large(12'000, 12'000, QImage::Format_Mono);
    large.fill(1);
    const QByteArray bomb = encoded(large); // 144 million pixels in a few kilobytes

    QVERIFY(filled({1, 1}, Qt::white).save(m_picture));
    QCOMPARE(runWorker({u"recognize"_s, m_picture}).exitCode, 0); // there is no text in it

    QCOMPARE(runWorker({u"recognize"_s, m_folder.filePath(u"missing"_s)}).exitCode, 1);
    for (const QByteArray& content : {"not a picture\n"_ba, bomb.first(bomb.size() / 2), announcement, bomb}) {
        QFile file(m_picture);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const Run run = runWorker({u"recognize"_s, m_picture});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output, QString());
    }
}

QTEST_MAIN(TextRecognitionTest)
#include "TextRecognitionTest.moc"
