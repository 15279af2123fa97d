#include "QRCode.h"

#include <QTest>

using namespace Clipboard;

class QRCodeTest final : public QObject
{
    Q_OBJECT

private slots:
    void isBlackOnWhiteAndHoldsOnlySoMuch();
};

void QRCodeTest::isBlackOnWhiteAndHoldsOnlySoMuch()
{
    const QImage code = QRCode::image("a").value_or(QImage());
    QRect black;
    for (int y = 0; y < code.height(); ++y)
        for (int x = 0; x < code.width(); ++x)
            black |= code.pixel(x, y) == qRgb(0, 0, 0) ? QRect(x, y, 1, 1) : QRect();
    QCOMPARE(code.size(), QSize(290, 290));             // version 1 has 21 modules a side,
    QCOMPARE(black, QRect(40, 40, 210, 210));           // and four around them
    QCOMPARE(code.pixel(110, 40), qRgb(255, 255, 255)); // beside the first finder pattern of seven

    const QByteArray longest(2331, '%');
    QCOMPARE(QRCode::image(longest).value_or(QImage()).width(), 1850); // version 40 has 177 modules a side
    QVERIFY(!QRCode::image(longest + 'a'));
    QVERIFY(!QRCode::image({}));
}

QTEST_GUILESS_MAIN(QRCodeTest)

#include "QRCodeTest.moc"
