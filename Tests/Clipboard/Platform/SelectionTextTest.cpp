#include "SelectionText.h"
#include "Rows.h"

#include <QTest>

using namespace Clipboard;

class SelectionTextTest final : public QObject
{
    Q_OBJECT
private slots:
    void decode();
};

void SelectionTextTest::decode()
{
    using Text = std::optional<QByteArray>;
    const auto check = [](const char* /*name*/, const QByteArray& type, const QByteArray& bytes, const Text& text) {
        QCOMPARE(SelectionText::decode(type, bytes), text);
    };
    checkRows(+check, {{"broken UTF-8 is replaced", "UTF8_STRING", " a\xFFz \r\n", " a\xEF\xBF\xBDz \r\n"},
                       {"zero bytes at the end", "UTF8_STRING", QByteArray("a\0\0", 3), "a"},
                       {"zero byte inside", "UTF8_STRING", QByteArray("a\0b", 3), QByteArray("a\0b", 3)},
                       {"MIME with a charset in capitals", "text/plain;charset=UTF-8", "\xC3\xA9", "\xC3\xA9"},
                       {"Latin-1 that looks like UTF-8", "STRING", "\xC3\xA9", "\xC3\x83\xC2\xA9"},
                       {"MIME without a charset, UTF-8", "text/plain", "\xC3\xA9", "\xC3\xA9"},
                       {"MIME without a charset, Latin-1", "text/plain", "\xE9", "\xC3\xA9"},
                       {"compound text, UTF-8 inside", "COMPOUND_TEXT", "a\x1b%G\xE2\x82\xAC\x1b%@z", "a\xE2\x82\xACz"},
                       {"compound text, UTF-8 to the end", "COMPOUND_TEXT", "\x1b%G\xE2\x82\xAC", "\xE2\x82\xAC"},
                       {"compound text in another set", "COMPOUND_TEXT", "\x1b$(B\x24\x22", {}},
                       {"not a text", "INTEGER", "1234", {}}});
    QCOMPARE(SelectionText::latin1("\xC3\xA9 \xE2\x82\xAC"), QByteArray("\xE9 ?"));
}

QTEST_GUILESS_MAIN(SelectionTextTest)
#include "SelectionTextTest.moc"
