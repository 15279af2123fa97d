#include "TextBlock.h"

#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class TextBlockTest final : public QObject
{
    Q_OBJECT
private slots:
    void laysOutEverything_data();
    void laysOutEverything();
    void whatIsVisibleIsReadyAtOnce();
    void selectsWhatTheMouseCovers();
};

namespace {

constexpr int width = 300;

void show(TextBlock& block, const QString& text, int visibleHeight = 100)
{
    block.resize(width, 2000);
    block.setText(text, {}, visibleHeight);
}

/// Waits for what is laid out in the pauses of the event loop.
void showAll(TextBlock& block, const QString& text)
{
    show(block, text);
    QTRY_VERIFY(block.isLaidOut());
}

/// The whole text as dragging from its first to beyond its last character selects it.
QString selectAll(TextBlock& block)
{
    block.resize(width, block.contentHeight() + 20);
    const QPoint last(width - 1, block.contentHeight() + 10);
    QTest::mousePress(&block, Qt::LeftButton, {}, {0, 1});
    QTest::mouseMove(&block, last);
    QTest::mouseRelease(&block, Qt::LeftButton, {}, last);
    return block.selectedText();
}

} // namespace

void TextBlockTest::laysOutEverything_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("leastLines");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("one line") << u"hello"_s << 1;
    QTest::newRow("line feeds") << u"a\nb\nc"_s << 3;
    QTest::newRow("carriage returns") << u"a\r\nb\rc"_s << 3;
    QTest::newRow("one long word") << QString(20000, u'm') << 400;
    QTest::newRow("thousands of lines") << u"x\n"_s.repeated(9999) + u"x"_s << 10000;
    QTest::newRow("right to left") << u"שלום עולם "_s.repeated(400) << 50;
    QTest::newRow("marks without a letter") << QString(3000, QChar(0x0301)) << 1;
}

void TextBlockTest::laysOutEverything()
{
    QFETCH(QString, text);
    QFETCH(int, leastLines);
    TextBlock block(Fonts::body, TextBlock::Lines::wrapped, nullptr);
    showAll(block, text);
    QVERIFY2(block.contentHeight() >= leastLines * Fonts::body.lineHeight,
             qPrintable(QString::number(block.contentHeight())));
    if (leastLines > 1 && !text.isRightToLeft())
        QCOMPARE(selectAll(block), text); // nothing fell between two pieces
}

void TextBlockTest::whatIsVisibleIsReadyAtOnce()
{
    TextBlock block(Fonts::body, TextBlock::Lines::wrapped, nullptr);
    show(block, u"some words "_s.repeated(1800), 400);
    QVERIFY(block.contentHeight() > 0);
    QVERIFY(!block.isLaidOut());
}

void TextBlockTest::selectsWhatTheMouseCovers()
{
    TextBlock block(Fonts::code, TextBlock::Lines::wrapped, nullptr);
    showAll(block, u"first line\nsecond line\nthird line"_s);
    const int line = Fonts::code.lineHeight;
    const int column = qRound(Fonts::width(Fonts::code, u"m"_s));
    QTest::mousePress(&block, Qt::LeftButton, {}, {6 * column, line / 2});
    QTest::mouseMove(&block, {6 * column, line + line / 2});
    QTest::mouseRelease(&block, Qt::LeftButton, {}, {6 * column, line + line / 2});
    QCOMPARE(block.selectedText(), u"line\nsecond"_s);
    QTest::mouseClick(&block, Qt::LeftButton, Qt::ShiftModifier, {5 * column, 2 * line + line / 2});
    QCOMPARE(block.selectedText(), u"line\nsecond line\nthird"_s);
    showAll(block, u"one two_three four"_s);
    QCOMPARE(block.selectedText(), QString());
    QTest::mouseDClick(&block, Qt::LeftButton, {}, {7 * column, 5});
    QCOMPARE(block.selectedText(), u"two_three"_s);
}

QTEST_MAIN(TextBlockTest)

#include "TextBlockTest.moc"
