#include "QRCode.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// A code of the longest text is read back by another program.
class QRCodeTest final : public QObject
{
    Q_OBJECT

private slots:
    void readsBackAsMuchAsACodeHolds();
    void blackOnWhiteInAQuietZone();
};

void QRCodeTest::readsBackAsMuchAsACodeHolds()
{
    const QByteArray bytes(2331, '%');
    const std::optional<QImage> code = QRCode::image(bytes);
    QVERIFY(code);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"code.png"_s);
    QVERIFY(code->save(path));

    QProcess reader;
    reader.start(u"zbarimg"_s, {u"--quiet"_s, u"--raw"_s, u"--oneshot"_s, u"-Sbinary"_s, path});
    QVERIFY2(reader.waitForFinished(), qPrintable(reader.errorString()));
    QCOMPARE(reader.readAllStandardOutput(), bytes);
    QVERIFY(!QRCode::image({}));
    QVERIFY(!QRCode::image(bytes + 'a'));
}

void QRCodeTest::blackOnWhiteInAQuietZone()
{
    const QImage code = QRCode::image("a").value_or(QImage());
    QRect black;
    for (int y = 0; y < code.height(); ++y)
        for (int x = 0; x < code.width(); ++x)
            black |= code.pixel(x, y) == qRgb(0, 0, 0) ? QRect(x, y, 1, 1) : QRect();
    QCOMPARE(code.size(), QSize(290, 290));             // version 1 has 21 modules a side,
    QCOMPARE(black, QRect(40, 40, 210, 210));           // and four around them
    QCOMPARE(code.pixel(110, 40), qRgb(255, 255, 255)); // beside the first finder pattern of seven
}

QTEST_GUILESS_MAIN(QRCodeTest)

#include "QRCodeTest.moc"
