#include "SelectionText.h"

#include <QTest>

using namespace Clipboard;

class SelectionTextTest final : public QObject
{
    Q_OBJECT
private slots:
    void decode_data();
    void decode();
};

void SelectionTextTest::decode_data()
{
    using Text = std::optional<QByteArray>;
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Text>("text");

    const auto row = [](const char* name, const QByteArray& type, const QByteArray& bytes, const Text& text) {
        QTest::newRow(name) << type << bytes << text;
    };
    row("UTF-8, blanks kept", "UTF8_STRING", " a \r\n", " a \r\n");
    row("broken UTF-8 is replaced", "UTF8_STRING", "a\xFFz", "a\xEF\xBF\xBDz");
    row("zero bytes at the end", "UTF8_STRING", QByteArray("a\0\0", 3), "a");
    row("zero byte inside", "UTF8_STRING", QByteArray("a\0b", 3), QByteArray("a\0b", 3));
    row("MIME with a charset in capitals", "text/plain;charset=UTF-8", "\xC3\xA9", "\xC3\xA9");
    row("Latin-1", "STRING", "\xE9", "\xC3\xA9");
    row("Latin-1 that looks like UTF-8", "STRING", "\xC3\xA9", "\xC3\x83\xC2\xA9");
    row("MIME without a charset, UTF-8", "text/plain", "\xC3\xA9", "\xC3\xA9");
    row("MIME without a charset, Latin-1", "text/plain", "\xE9", "\xC3\xA9");
    row("compound text, UTF-8 inside", "COMPOUND_TEXT", "a\x1b%G\xE2\x82\xAC\x1b%@b",
        "a\xE2\x82\xAC"
        "b");
    row("compound text, UTF-8 to the end", "COMPOUND_TEXT", "\x1b%G\xE2\x82\xAC", "\xE2\x82\xAC");
    row("compound text in another set", "COMPOUND_TEXT", "\x1b$(B\x24\x22", {});
    row("not a text", "INTEGER", "1234", {});
}

void SelectionTextTest::decode()
{
    QFETCH(const QByteArray, type);
    QFETCH(const QByteArray, bytes);
    QFETCH(const std::optional<QByteArray>, text);
    QCOMPARE(SelectionText::decode(type, bytes), text);
    QCOMPARE(SelectionText::latin1("\xC3\xA9 \xE2\x82\xAC"), QByteArray("\xE9 ?"));
}

QTEST_GUILESS_MAIN(SelectionTextTest)
#include "SelectionTextTest.moc"
