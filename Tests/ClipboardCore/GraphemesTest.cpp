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
    void boundsItsWork();
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
            const auto prefix = Graphemes::prefixOfUtf8(text.toUtf8(), count + 1);
            QCOMPARE(prefix.text, text.chopped(rest.size()));
            QCOMPARE(prefix.isWhole, rest.isEmpty());
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

void GraphemesTest::boundsItsWork()
{
    QVERIFY(Graphemes::prefix(Utf8Text(), 2).isWhole);
    const auto prefix = Graphemes::prefix(Utf8Text(QString(1'000'000, u'\uFEFF')), 2);
    QCOMPARE(prefix.text, QString(2, u'\uFEFF')); // none of them is taken for a byte order mark
    QVERIFY(!prefix.isWhole);

    QString pairs = u"a"_s; // each mark is a surrogate pair, which must not be torn
    for (int i = 0; i < 10'000; ++i)
        pairs += u"\U0001E8D0"_s;
    const auto cut = Graphemes::prefix(Utf8Text(pairs), 2);
    QCOMPARE(cut.text.size(), 2 * Graphemes::longestCharacter - 1);
    QVERIFY(cut.text.isValidUtf16() && !cut.isWhole);
}

QTEST_GUILESS_MAIN(GraphemesTest)
#include "GraphemesTest.moc"
