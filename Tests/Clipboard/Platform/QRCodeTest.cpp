#include "QRCode.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// Codes are read back by another program.
class QRCodeTest final : public QObject
{
    Q_OBJECT

private slots:
    void readsBack_data();
    void readsBack();
    void blackOnWhiteInAQuietZone();
    void noCode_data();
    void noCode();
};

void QRCodeTest::readsBack_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("one byte") << QByteArray("a");
    QTest::newRow("digits") << QByteArray("0123456789");
    QTest::newRow("ASCII") << QByteArray("Dear reader,\n\tthis is \"ASCII\".\n");
    QTest::newRow("UTF-8") << QByteArray("na\xc3\xafve \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x8e\x89");
    QTest::newRow("1024 bytes") << QByteArray("\xc3\xa9").repeated(512);
    QTest::newRow("link of 2,000 characters") << QByteArray("https://example.org/?q=").leftJustified(2000, 'x');
    QTest::newRow("as much as a code holds") << QByteArray(2331, '%');
}

void QRCodeTest::readsBack()
{
    QFETCH(const QByteArray, bytes);

    const std::optional<QImage> code = QRCode::image(bytes);
    QVERIFY(code);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"code.png"_s);
    QVERIFY(code->save(path));

    QProcess reader;
    reader.start(u"zbarimg"_s, {u"--quiet"_s, u"--raw"_s, u"--oneshot"_s, u"-Sbinary"_s, path});
    QVERIFY2(reader.waitForFinished(), qPrintable(reader.errorString()));
    QCOMPARE(reader.readAllStandardOutput(), bytes);
}

void QRCodeTest::blackOnWhiteInAQuietZone()
{
    const std::optional<QImage> code = QRCode::image("a");
    QVERIFY(code);
    // Version 1 has 21 modules a side.
    QCOMPARE(code->size(), QSize(290, 290));
    const QRgb white = qRgb(0xff, 0xff, 0xff);
    const QRgb black = qRgb(0, 0, 0);
    for (int i = 0; i < 290; ++i) {
        QCOMPARE(code->pixel(i, 39), white);
        QCOMPARE(code->pixel(39, i), white);
        QCOMPARE(code->pixel(i, 250), white);
        QCOMPARE(code->pixel(250, i), white);
    }
    // The top edge of the first finder pattern: seven modules, then a separator.
    QCOMPARE(code->pixel(40, 40), black);
    QCOMPARE(code->pixel(109, 49), black);
    QCOMPARE(code->pixel(110, 40), white);
}

void QRCodeTest::noCode_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a byte too many") << QByteArray(2332, 'a');
}

void QRCodeTest::noCode()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(!QRCode::image(bytes));
}

QTEST_GUILESS_MAIN(QRCodeTest)

#include "QRCodeTest.moc"
