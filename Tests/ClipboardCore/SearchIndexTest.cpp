#include "History/SearchIndex.h"
#include "History/SearchPattern.h"
#include "Rows.h"
#include "Support/TextFolding.h"

#include <QTest>

#include <random>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

ClipItem entry(const QString& content, const std::optional<QString>& app = std::nullopt)
{
    return {QUuid::createUuid(), ClipType::text, content, app, std::nullopt, 0, false};
}

QString folded(const QString& text)
{
    return QString::fromUtf8(TextFolding::folded(text.toUtf8()));
}

/// Larger than what is folded at once.
QString large(const QString& start)
{
    return start + QString(200'000, u'\u0416');
}

} // namespace

class SearchIndexTest final : public QObject
{
    Q_OBJECT
private slots:
    void finds();
    void foldsEquivalentTextsAlike();
    void foldsEveryCodePointAlikeInBothForms();
    void foldsEndlessMarks();
    void agreesWithPlainSearch();
    void largeTextsComeLater();
};

void SearchIndexTest::finds()
{
    checkRows(
        +[](const char*, const QString& query, const QString& text, bool expected) {
            SearchIndex index;
            index.setItems({entry(text)});
            QCOMPARE(!index.match(query).isEmpty(), expected);
        },
        {
            {"accent in the query", u"é"_s, u"Cafe"_s, true},
            {"not trimmed", u"a "_s, u"xa y"_s, true},
            {"punctuation keeps its case bit", u"@["_s, u"`{"_s, false},
            {"byte order mark is no diacritic", u"ab"_s, u"A\uFEFFb"_s, false},
            {"dotted capital I", u"istanbul"_s, u"İstanbul"_s, true},
            {"Hebrew points", u"שלום"_s, u"שָׁלוֹם"_s, true},
            {"no part of a syllable", u"가"_s, u"각"_s, false},
            {"vowel sign makes another syllable", u"कि"_s, u"कु"_s, false},
            {"only a mark, in a text with it", u"\u0301"_s, u"ae\u0301"_s, true},
        });
}

/// While a user types and erases, in entries that come and go. Few letters, so that partial matches abound; lengths
/// around the sizes of the blocks that are looked at together.
void SearchIndexTest::agreesWithPlainSearch()
{
    std::minstd_rand random(1);
    const auto make = [&random](auto length) {
        QString text;
        for (; length > 0; --length)
            text += u"aAbB.@"[random() % 6];
        return text;
    };
    SearchIndex index;
    QList<ClipItem> items;
    QString query;
    qsizetype found = 0;
    for (int round = 0; round < 3000; ++round) {
        if (round % 20 == 0) {
            items = items.last(std::min<qsizetype>(items.size(), 20));
            for (int i = 0; i < 20; ++i)
                items.append(entry(make(random() % 70), i % 4 == 0 ? std::optional(make(4)) : std::nullopt));
            index.setItems(items);
            if (round % 40 == 0)
                index.prepare();
        }
        if (query.size() > qsizetype(random() % 6))
            query.chop(1 + int(random() % 2));
        else
            query += make(1);
        QList<qsizetype> expected;
        for (qsizetype i = 0; i < items.size(); ++i)
            if (items[i].content.toString().contains(query, Qt::CaseInsensitive) ||
                items[i].sourceApp.value_or(QString()).contains(query, Qt::CaseInsensitive))
                expected.append(i);
        found += expected.size();
        QCOMPARE(index.match(query), expected);
    }
    QVERIFY(found > 10'000);
}

void SearchIndexTest::foldsEquivalentTextsAlike()
{
    const std::u32string alphabet = U"aAzé\u1EC7\u0301\u0302\u0323\u093C\u0915\u0958\u09C7\u09BE\u1100\u1161\u11A8"
                                    U"\uAC00\u304B\u3099\u304C\u00DF\u03A3\u0130"
                                    U"\u0F71\u0F72\u0F73\u0E38\u102E\u1025\U0001F600\U00010400";
    std::minstd_rand random(1);
    for (int round = 0; round < 100'000; ++round) {
        QString text;
        for (auto length = 1 + random() % 6; length > 0; --length)
            text += QString::fromUcs4(&alphabet[random() % alphabet.size()], 1);
        const QString form = folded(text);
        QCOMPARE(folded(text.normalized(QString::NormalizationForm_C)), form);
        QCOMPARE(folded(text.normalized(QString::NormalizationForm_D)), form);
        QCOMPARE(folded(form), form);
    }
}

void SearchIndexTest::foldsEveryCodePointAlikeInBothForms()
{
    for (char32_t codePoint = 0x80; codePoint <= QChar::LastValidCodePoint; ++codePoint) {
        if (QChar::isSurrogate(codePoint))
            continue;
        const QString text = u'x' + QString::fromUcs4(&codePoint, 1) + u'x';
        const QString decomposed = text.normalized(QString::NormalizationForm_D);
        // The dotless i is another letter than that of its capital, and the iota below a letter is dropped with it.
        const bool hasOwnCapital = codePoint != 0x131 && !decomposed.contains(u'\u0345');
        if (folded(text) != folded(decomposed) || (hasOwnCapital && folded(text) != folded(text.toUpper())))
            QFAIL(qPrintable(u"U+"_s + QString::number(codePoint, 16)));
    }
}

void SearchIndexTest::foldsEndlessMarks()
{
    QVERIFY(SearchPattern(folded(u"\u0301"_s).toUtf8()).isIn("x")); // nothing else is looked for
    // One of each class that is dropped: over a letter, points of two scripts, tones of two others, above.
    QCOMPARE(folded(u"a\u0338\u05B0\u0711\u0E48\u0EC8\u0301"_s), u"a"_s);
    // Alternating classes, which a naive sort takes a quadratic time for; kept ones and dropped ones.
    const QString kept = u"\u0F71\u0F72\u093C\u094D"_s.repeated(100'000);
    QCOMPARE(folded(kept).size(), kept.size());
    QVERIFY(folded(u"\u0301\u0323"_s.repeated(100'000)).isEmpty());
}

void SearchIndexTest::largeTextsComeLater()
{
    SearchIndex index;
    int ready = 0;
    index.onReady([&ready] { ++ready; });
    index.setItems({entry(large(u"abc"_s)), entry(u"abc"_s), entry(large(u"abc"_s), u"abc"_s)});
    QCOMPARE(index.match(u"a"_s), QList<qsizetype>({1, 2}));
    index.prepare();
    QCOMPARE(index.match(u"ab"_s), QList<qsizetype>({1, 2})); // what is small need not wait
    QTRY_COMPARE(ready, 2);
    QCOMPARE(index.match(u"abc"_s), QList<qsizetype>({0, 1, 2})); // narrowing did not lose what was not ready
    QCOMPARE(index.match(u"жж"_s), QList<qsizetype>({0, 2}));

    index.setItems({entry(large(u"abd"_s)), entry(u"abe"_s)});
    QCOMPARE(index.match(u"ab"_s), QList<qsizetype>({1}));
    index.setItems({entry(u"abf"_s), entry(large(u"abg"_s))});
    QCOMPARE(index.match(u"ab"_s), QList<qsizetype>({0}));
    QTRY_COMPARE(index.match(u"ab"_s), QList<qsizetype>({0, 1}));
    QCOMPARE(ready, 3); // nobody waits for what is gone, which would have been ready before
}

QTEST_GUILESS_MAIN(SearchIndexTest)
#include "SearchIndexTest.moc"
