#include "Support/CanonicalText.h"
#include "Support/Utf8Text.h"
#include "Support/WhiteSpace.h"

#include <QTest>

#include <optional>
#include <random>
#include <utility>

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
    void equality();
    void everyCodePointEqualsItsForms();
    void agreesWithNormalizationOnMarks();
    void keysOfLongEqualTextsAreEqual();
    void keysSeeBothEnds();
    void repairsBytes();
    void whiteSpace_data();
    void whiteSpace();
};

void CanonicalTextTest::equality()
{
    const auto areEqual = [](const QString& a, const QString& b) {
        const bool result = Utf8Text(a) == Utf8Text(b);
        const bool haveEqualKeys = CanonicalText::key(a.toUtf8()) == CanonicalText::key(b.toUtf8());
        return result == (Utf8Text(b) == Utf8Text(a)) && (!result || haveEqualKeys) ? std::optional(result)
                                                                                    : std::nullopt;
    };
    QCOMPARE(areEqual(u"a"_s, u"A"_s), false);
    QCOMPARE(areEqual(u"\uFB01"_s, u"fi"_s), false); // compatible only
    QCOMPARE(areEqual(u"100 K;"_s, u"100 \u212A\u037E"_s), true);

    const QString filler(5000, u'x');
    QCOMPARE(areEqual(filler + u"e\u0301"_s, filler + u"\u00E9"_s), true); // a mark on what both begin with
    QCOMPARE(areEqual(u"\u00E9"_s + filler + u"!"_s, u"e\u0301"_s + filler + u"!"_s), true);
    QCOMPARE(areEqual(u"\u00E9"_s + filler + u"!"_s, u"e\u0301"_s + filler + u"?"_s), false);
}

void CanonicalTextTest::everyCodePointEqualsItsForms()
{
    for (char32_t codePoint = 0; codePoint <= QChar::LastValidCodePoint; ++codePoint) {
        if (QChar::isSurrogate(codePoint))
            continue;
        const QString text = u"\u0327e\u0301"_s + QString::fromUcs4(&codePoint, 1) + u"\u0301\u0F71\u11A8z"_s;
        const QByteArray utf8 = text.toUtf8();
        const QByteArray others[] = {decomposed(text).toUtf8(), composed(text)};
        for (const QByteArray& other : others) {
            if (!CanonicalText::equal(utf8, other) || CanonicalText::key(utf8) != CanonicalText::key(other))
                QFAIL(qPrintable(u"U+"_s + QString::number(codePoint, 16)));
        }
    }
}

void CanonicalTextTest::agreesWithNormalizationOnMarks()
{
    // Short texts of what composes, reorders and decomposes oddly: equal ones are frequent.
    const std::u32string alphabet =
        U"ae\u00E9\u1EC7\u0301\u0302\u0323\u0327\u1100\u1161\u11A8\uAC00\u0F71\u0F72\u0F73\u212BA\u030A";
    std::minstd_rand random(1);
    int equalPairs = 0;
    for (int round = 0; round < 200'000; ++round) {
        const auto make = [&] {
            QString text;
            for (auto length = random() % 5; length > 0; --length)
                text += QString::fromUcs4(&alphabet[random() % alphabet.size()], 1);
            return text;
        };
        const QString a = make();
        const QString b = make();
        const bool expected = decomposed(a) == decomposed(b);
        equalPairs += int(expected);
        if (CanonicalText::equal(a.toUtf8(), b.toUtf8()) != expected)
            QFAIL((a.toUtf8().toHex() + " " + b.toUtf8().toHex()).constData());
    }
    QVERIFY(equalPairs > 1000);
}

void CanonicalTextTest::keysOfLongEqualTextsAreEqual()
{
    // Marks around the ends of what a key sees, in every position.
    for (qsizetype shift = 0; shift < 6; ++shift) {
        const QString text = QString(shift, u'x') + u"e\u0323\u0301\u0302\uAC01o\u0308"_s.repeated(200);
        const QByteArray forms[] = {text.toUtf8(), decomposed(text).toUtf8(), composed(text)};
        QVERIFY(forms[1] != forms[2]);
        for (const QByteArray& form : forms)
            QCOMPARE(CanonicalText::key(form), CanonicalText::key(forms[0]));
    }
    const QString onlyMarks = u"\u0301\u0323"_s.repeated(1000);
    QCOMPARE(CanonicalText::key(onlyMarks.toUtf8()), CanonicalText::key(decomposed(onlyMarks).toUtf8()));
}

void CanonicalTextTest::keysSeeBothEnds()
{
    const QByteArray middle(10'000, 'x');
    QVERIFY(CanonicalText::key("a" + middle) != CanonicalText::key("b" + middle));
    QVERIFY(CanonicalText::key(middle + "a") != CanonicalText::key(middle + "b"));
    QVERIFY(CanonicalText::key("a", 1) != CanonicalText::key("a", 2));
}

void CanonicalTextTest::repairsBytes()
{
    const QByteArray replacement = "\xEF\xBF\xBD";
    const QByteArray mark = "\xEF\xBB\xBF"; // of the byte order
    const QByteArray kept = mark + "caf\xC3\xA9 \xF0\x9F\x98\x80" + '\0';
    const std::pair<QByteArray, QByteArray> repairs[] = {
        {kept, kept},
        {"caf\xE9", "caf" + replacement}, // Latin-1
        {"a\xF0\x9F\x98", "a" + replacement.repeated(3)},
        {mark + '\xFF', mark + replacement},
    };
    for (const auto& [bytes, text] : repairs) {
        QCOMPARE(Utf8Text::fromUtf8(bytes).utf8(), text);
        QCOMPARE(Utf8Text::fromUtf8(bytes).toString().toUtf8(), text);
    }
}

void CanonicalTextTest::whiteSpace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("trimmed");
    QTest::addColumn<bool>("isIn"); // in the trimmed text

    const QString all = u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000"_s;
    QTest::newRow("every kind, both ends") << all + u"x"_s + all << u"x"_s << false;
    const QString plain = u" \t\n\v\f\r"_s.repeated(50);
    QTest::newRow("long blank") << plain << QString() << false;
    QTest::newRow("control characters are none")
        << plain + u"\u0008\u000E\u001F"_s + plain << u"\u0008\u000E\u001F"_s << false;
    QTest::newRow("blank") << all << QString() << false;
    QTest::newRow("wide one far inside") << QString(1000, u'x') + u"\u3000y"_s << QString(1000, u'x') + u"\u3000y"_s
                                         << true;
    QTest::newRow("lead byte alone is none") << u"\u00BF\u2020\u3042\u1000"_s << u"\u00BF\u2020\u3042\u1000"_s << false;
    QTest::newRow("zero width is none") << u"\u200B\uFEFF"_s << u"\u200B\uFEFF"_s << false;
}

void CanonicalTextTest::whiteSpace()
{
    QFETCH(QString, text);
    QFETCH(QString, trimmed);
    QFETCH(bool, isIn);
    const QByteArray utf8 = text.toUtf8();
    QCOMPARE(WhiteSpace::trimmed(utf8).toByteArray(), trimmed.toUtf8());
    QCOMPARE(WhiteSpace::isBlank(utf8), trimmed.isEmpty());
    QCOMPARE(WhiteSpace::isIn(trimmed.toUtf8()), isIn);
}

QTEST_GUILESS_MAIN(CanonicalTextTest)
#include "CanonicalTextTest.moc"
