#include "Support/Graphemes.h"

#include <QProcess>
#include <QTest>

#include <algorithm>
#include <random>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class GraphemesTest final : public QObject
{
    Q_OBJECT
private slots:
    void agreesWithPerl();
    void prefixOfAnySize();
    void cutsEndlessCharacters();
};

/// Perl's \X is UAX #29, too. Members of every class, those on which exceptions are made among them, meet at random.
void GraphemesTest::agreesWithPerl()
{
    const std::u32string alphabet = U"ab \r\n\u0085\u00A9\u00AD\u0301\u0308\u200B\u200C\u200D\u2028\u20DD\uFE0F\uFEFF"
                                    U"\u0600\u0628\u0903\u0915\u093F\u094D\u09BE\u0E01\u0E33\u102B\u1100\u1161\u11A8"
                                    U"\u203C\u2764\u4E2D\uAC00\uAC01\uFF9E\U00011A84\U0001D165\U0001F1E9\U0001F1EA"
                                    U"\U0001F3FB\U0001F468\U0001F469\U0001FFFD\U000E0001\U000E0067";
    std::minstd_rand random(1);
    QByteArray texts;
    QByteArray lengths; // of the characters, in code points
    for (int round = 0; round < 10'000; ++round) {
        QString text;
        for (auto length = 1 + random() % 8; length > 0; --length) {
            const char32_t codePoint = alphabet[random() % alphabet.size()];
            text.append(QChar::fromUcs4(codePoint));
            texts += QByteArray::number(uint(codePoint), 16) + ' ';
        }
        qsizetype count = 0;
        for (QStringView rest = text; !rest.isEmpty(); ++count) {
            const QStringView character = Graphemes::prefix(rest, 1);
            lengths += QByteArray::number(character.toUcs4().size()) + ' ';
            rest = rest.sliced(character.size());
            QCOMPARE(Graphemes::prefixOfUtf8(text.toUtf8(), count + 1).text, text.chopped(rest.size()));
        }
        QCOMPARE(Graphemes::countOfUtf8(text.toUtf8()), count);
        texts += '\n';
        lengths += '\n';
    }
    QProcess perl;
    perl.start(u"perl"_s,
               {u"-ne"_s, uR"(print map({ length() . " " } join("", map({ chr hex } split)) =~ /\X/g), "\n")"_s});
    perl.write(texts);
    perl.closeWriteChannel();
    QVERIFY(perl.waitForFinished());
    const auto expected = perl.readAllStandardOutput().split('\n');
    const auto actual = lengths.split('\n');
    QCOMPARE(actual.size(), expected.size());
    const auto different = std::ranges::mismatch(actual, expected).in1;
    QVERIFY2(different == actual.end(), texts.split('\n').value(different - actual.begin()).constData());
}

void GraphemesTest::prefixOfAnySize()
{
    const auto isFirst2 = [](const QString& first2, bool isWhole, const QString& text) {
        const auto prefix = Graphemes::prefix(Utf8Text(text), 2);
        return prefix.text == first2 && prefix.isWhole == isWhole;
    };
    QVERIFY(isFirst2(QString(), true, QString()));
    QVERIFY(isFirst2(u"ab"_s, false, u"abc"_s));
    QVERIFY(isFirst2(u"ab\u0301"_s, true, u"ab\u0301"_s));
    QVERIFY(isFirst2(u"\uFEFF"_s + u"b"_s, false, u"\uFEFF"_s + u"bc"_s)); // the byte order mark is kept
    QVERIFY(isFirst2(u"\u4E2D\u4E2D"_s, false, QString(1'000'000, u'\u4E2D')));
}

void GraphemesTest::cutsEndlessCharacters()
{
    QString pairs = u"a"_s; // each mark is a surrogate pair, which must not be torn
    for (int i = 0; i < 10'000; ++i)
        pairs += u"\U0001E8D0"_s;
    const auto cut = Graphemes::prefix(Utf8Text(pairs), 2);
    QCOMPARE(cut.text.size(), 2 * Graphemes::longestCharacter - 1);
    QVERIFY(cut.text.isValidUtf16() && !cut.isWhole);
}

QTEST_GUILESS_MAIN(GraphemesTest)
#include "GraphemesTest.moc"
