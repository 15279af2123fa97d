#include "Support/CanonicalText.h"
#include "Support/Graphemes.h"
#include "Support/Utf8.h"
#include "Support/Utf8Text.h"
#include "Support/WhiteSpace.h"

#include <QProcess>
#include <QTest>

#include <algorithm>
#include <random>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

QString decomposed(const QString& text)
{
    return text.normalized(QString::NormalizationForm_D);
}

QByteArray composed(const QString& text)
{
    return text.normalized(QString::NormalizationForm_C).toUtf8();
}

} // namespace

class CanonicalTextTest final : public QObject
{
    Q_OBJECT
private slots:
    void everyCodePointEqualsItsForms();
    void agreesWithNormalization();
    void repairsBytes();
    void whiteSpace();
    void charactersAreThoseOfPerl();
    void charactersAreBounded();
};

void CanonicalTextTest::everyCodePointEqualsItsForms()
{
    for (char32_t codePoint = 0; codePoint <= QChar::LastValidCodePoint; ++codePoint) {
        if (QChar::isSurrogate(codePoint))
            continue;
        const QString text = u"\u0327e\u0301"_s + QString::fromUcs4(&codePoint, 1) + u"\u0301\u0F71\u11A8z"_s;
        const QByteArray utf8 = text.toUtf8();
        for (const QByteArray& other : {decomposed(text).toUtf8(), composed(text)})
            if (!CanonicalText::equal(utf8, other) || CanonicalText::key(utf8) != CanonicalText::key(other))
                QFAIL(qPrintable(u"U+"_s + QString::number(codePoint, 16)));
    }
}

/// Short texts of what composes, reorders and decomposes oddly, so that equal ones are frequent, some of them around
/// one that is longer than what is compared or keyed at once.
void CanonicalTextTest::agreesWithNormalization()
{
    const std::u32string alphabet =
        U"aA\u00E9\u1EC7\u0301\u0302\u0323\u0327\u1100\u1161\u11A8\uAC00\u0F71\u0F72\u0F73\u212BK\u212A\uFB01\u030A";
    const QString fillings[] = {QString(5000, u'x'), u"e\u0323\u0301\u0302\uAC01o\u0308"_s.repeated(200),
                                u"\u0301\u0323"_s.repeated(1000)};
    std::minstd_rand random(1);
    const auto make = [&](const QString& text) {
        QString result = text;
        for (auto length = random() % 5; length > 0; --length)
            result.insert(random() % 2 == 0 ? 0 : result.size(),
                          QString::fromUcs4(&alphabet[random() % alphabet.size()], 1));
        return result;
    };
    int equalPairs = 0;
    for (int round = 0; round < 50'000; ++round) {
        const QString filling = round % 500 == 0 ? fillings[random() % 3] : QString();
        const QString a = make(filling);
        const QString b = random() % 4 == 0 ? decomposed(a) : make(filling);
        const bool areEqual = decomposed(a) == decomposed(b);
        equalPairs += int(areEqual);
        for (const QByteArray& form : {b.toUtf8(), composed(b)})
            if (CanonicalText::equal(a.toUtf8(), form) != areEqual ||
                CanonicalText::equal(form, a.toUtf8()) != areEqual ||
                (areEqual && CanonicalText::key(a.toUtf8()) != CanonicalText::key(form)))
                QFAIL((a.toUtf8().toHex() + " " + form.toHex()).constData());
    }
    QVERIFY(equalPairs > 10'000 && equalPairs < 40'000);
}

void CanonicalTextTest::repairsBytes()
{
    const QByteArray replacement = "\xEF\xBF\xBD";
    const QByteArray mark = "\xEF\xBB\xBF"; // of the byte order
    const QByteArray kept = mark + "caf\xC3\xA9 \xF0\x9F\x98\x80" + '\0';
    QCOMPARE(Utf8Text::fromUtf8(kept).toString().toUtf8(), kept);
    QCOMPARE(Utf8Text::fromUtf8(mark + "\xFF").utf8(), mark + replacement);
    QCOMPARE(Utf8Text::fromUtf8("a\xF0\x9F\x98").utf8(), "a" + replacement.repeated(3));
    // The first byte beyond ASCII tells in whatever block of bytes it stands.
    for (const qsizetype before : {0, 255, 256, 300})
        QVERIFY(Utf8::isASCII(QByteArray(before, '\x7F')) && !Utf8::isASCII(QByteArray(before, ' ') + '\x80'));
}

void CanonicalTextTest::whiteSpace()
{
    const QString all = u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000"_s;
    const QString plain = u" \t\n\v\f\r"_s.repeated(50);
    // Control characters, lead bytes of white space, and what has no width are none.
    const QString none = u"\u0008\u000E\u001F\u00BF\u2020\u3042\u1000\u200B\uFEFF"_s;
    for (const QString& around : {all, plain, QString()}) {
        for (const QString& text : {u"x"_s, QString(), none, QString(1000, u'x') + u"\u3000y"_s}) {
            const QByteArray larger = "\t " + QString(around + text + around).toUtf8() + " \n";
            const QByteArrayView utf8 = QByteArrayView(larger).sliced(2).chopped(2); // what is beside it is not its own
            QCOMPARE(WhiteSpace::trimmed(utf8).toByteArray(), text.toUtf8());
            QCOMPARE(WhiteSpace::isBlank(utf8), text.isEmpty());
            QCOMPARE(WhiteSpace::isIn(utf8), !around.isEmpty() || text.contains(u'\u3000'));
        }
    }
}

/// Perl's \X is UAX #29, too. Members of every class, those on which exceptions are made among them, meet at random,
/// and every code point meets those that it may join: another one like it behind a joiner, a vowel and a tail of
/// Hangul.
void CanonicalTextTest::charactersAreThoseOfPerl()
{
    const std::u32string alphabet = U"ab \r\n\u0085\u00A9\u00AD\u0301\u0308\u200B\u200C\u200D\u2028\u20DD\uFE0F\uFEFF"
                                    U"\u0600\u0628\u0903\u0915\u093F\u094D\u09BE\u0E01\u0E33\u102B\u1100\u1161\u11A8"
                                    U"\u203C\u2764\u4E2D\uAC00\uAC01\uFF9E\U00011A84\U0001D165\U0001F1E9\U0001F1EA"
                                    U"\U0001F3FB\U0001F468\U0001F469\U0001FFFD\U000E0001\U000E0067";
    std::minstd_rand random(1);
    QByteArray texts;
    QByteArray lengths; // of the characters, in code points
    const auto measure = [&](const std::u32string& codePoints) {
        QString text;
        for (const char32_t codePoint : codePoints) {
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
    };
    for (int round = 0; round < 10'000; ++round) {
        std::u32string text(1 + random() % 8, U' ');
        std::ranges::generate(text, [&] { return alphabet[random() % alphabet.size()]; });
        measure(text);
    }
    for (char32_t codePoint = 0x80; codePoint < 0x20000; ++codePoint) {
        if (!QChar::isSurrogate(codePoint))
            measure({codePoint, U'\u200D', codePoint, U'\u1161', U'\u11A8'});
    }
    QProcess perl;
    perl.start(u"perl"_s,
               {u"-ne"_s, uR"(print map({ length() . " " } join("", map({ chr hex } split)) =~ /\X/g), "\n")"_s});
    perl.write(texts);
    perl.closeWriteChannel();
    QVERIFY(perl.waitForFinished(-1));
    const auto expected = perl.readAllStandardOutput().split('\n');
    const auto actual = lengths.split('\n');
    QCOMPARE(actual.size(), expected.size());
    const auto different = std::ranges::mismatch(actual, expected).in1;
    QVERIFY2(different == actual.end(), texts.split('\n').value(different - actual.begin()).constData());
}

void CanonicalTextTest::charactersAreBounded()
{
    const auto prefix = Graphemes::prefix(Utf8Text(QString(1'000'000, u'\uFEFF')), 2);
    QCOMPARE(prefix.text, QString(2, u'\uFEFF')); // none of them is taken for a byte order mark
    QVERIFY(!prefix.isWhole);

    // Each mark is a surrogate pair, which must not be torn.
    const auto cut = Graphemes::prefix(Utf8Text(u'a' + u"\U0001E8D0"_s.repeated(10'000)), 2);
    QCOMPARE(cut.text.size(), 2 * Graphemes::longestCharacter - 1);
    QVERIFY(cut.text.isValidUtf16() && !cut.isWhole);
}

QTEST_GUILESS_MAIN(CanonicalTextTest)
#include "CanonicalTextTest.moc"
