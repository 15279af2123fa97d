#include "Support/Graphemes.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class GraphemesTest final : public QObject
{
    Q_OBJECT
private slots:
    void characters_data();
    void characters();
    void prefixOfAnySize();
    void cutsEndlessCharacters();
};

void GraphemesTest::characters_data()
{
    QTest::addColumn<QString>("character");

    QTest::newRow("letter") << u"a"_s;
    QTest::newRow("accent") << u"e\u0301"_s;
    QTest::newRow("carriage return and line feed") << u"\r\n"_s;
    QTest::newRow("Hangul letters") << u"\u1100\u1161\u11A8"_s;
    QTest::newRow("flag") << u"\U0001F1E9\U0001F1EA"_s;
    QTest::newRow("family") << u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    QTest::newRow("heart with selector") << u"\u2764\uFE0F"_s;
    QTest::newRow("Devanagari vowel sign") << u"\u0928\u093F"_s;
    QTest::newRow("vowel sign without a letter") << u" \u093F"_s;
}

/// The character is one wherever it stands; the windows in which long texts are read make no difference.
void GraphemesTest::characters()
{
    QFETCH(QString, character);
    QCOMPARE(Graphemes::count(character), 1);
    for (const qsizetype count : {1, 2, 100, 1000}) {
        for (const QString& start : {QString(), u"x"_s, u"xy"_s, u"xyz"_s, u"\u0915 "_s}) {
            const QString text = start + character.repeated(count);
            QCOMPARE(Graphemes::count(text), start.size() + count);
            QCOMPARE(Graphemes::countOfUtf8(text.toUtf8()), start.size() + count);
            QCOMPARE(Graphemes::prefix(QStringView(text), start.size() + count - 1).toString(),
                     text.chopped(character.size()));
            const auto prefix = Graphemes::prefix(Utf8Text(text), start.size() + count - 1);
            QCOMPARE(prefix.text, text.chopped(character.size()));
            QVERIFY(!prefix.isWhole);
        }
    }
}

void GraphemesTest::prefixOfAnySize()
{
    const auto isFirst2 = [](const QString& first2, bool isWhole, const QString& text) {
        const auto prefix = Graphemes::prefix(Utf8Text(text), 2);
        return prefix.text == first2 && prefix.isWhole == isWhole;
    };
    QVERIFY(isFirst2(QString(), true, QString()));
    QVERIFY(isFirst2(u"ab"_s, false, u"abc"_s));
    QVERIFY(isFirst2(u"ab\u0301"_s, true, u"ab\u0301"_s));                        // a mark on the last one
    QVERIFY(isFirst2(u"xa\u0301\u200D"_s, false, u"xa\u0301\u200D\U0001F469"_s)); // joins pictures alone
    QVERIFY(isFirst2(u"a\r\n"_s, false, u"a\r\nb"_s));
    QVERIFY(isFirst2(u"\uFEFF"_s + u"b"_s, false, u"\uFEFF"_s + u"bc"_s)); // the byte order mark is kept
    QVERIFY(isFirst2(u"\u4E2D\u4E2D"_s, false, QString(1'000'000, u'\u4E2D')));
}

void GraphemesTest::cutsEndlessCharacters()
{
    const QString endless = u"a"_s + QString(1'000'000, u'\u0301');
    const auto prefix = Graphemes::prefix(Utf8Text(endless), 2);
    QCOMPARE(prefix.text.size(), 2 * Graphemes::longestCharacter);
    QVERIFY(!prefix.isWhole);

    QString pairs = u"a"_s; // each mark is a surrogate pair, which must not be torn
    for (int i = 0; i < 10'000; ++i)
        pairs += u"\U0001E8D0"_s;
    const QString cut = Graphemes::prefix(Utf8Text(pairs), 1).text;
    QVERIFY(cut.size() >= Graphemes::longestCharacter - 1);
    QVERIFY(cut.isValidUtf16());
}

QTEST_GUILESS_MAIN(GraphemesTest)
#include "GraphemesTest.moc"
