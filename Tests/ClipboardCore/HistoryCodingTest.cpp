#include "History/HistoryCoding.h"

#include <QTest>

#include <utility>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

const QByteArray plainEntry =
    R"({"id":"0F1E2D3C-0000-4000-8000-00000000000A","type":"text","content":"a","createdAt":1,"isPinned":false})";

/// The one entry of an array that is `plainEntry` with a part replaced.
QByteArray changed(const QByteArray& part, const QByteArray& replacement)
{
    Q_ASSERT(plainEntry.contains(part));
    return '[' + QByteArray(plainEntry).replace(part, replacement) + ']';
}

QByteArray encoded(const QList<ClipItem>& items)
{
    QByteArray json;
    HistoryCoding::encode(items, [&json](QByteArrayView bytes) { json += bytes; });
    return json;
}

ClipItem entry(const QString& content)
{
    return {QUuid::fromString(u"0f1e2d3c-0000-4000-8000-00000000000a"), ClipType::text, content, {}, {}, 1, false};
}

} // namespace

class HistoryCodingTest final : public QObject
{
    Q_OBJECT
private slots:
    void writesEveryField();
    void readsContent_data();
    void readsContent();
    void timesSurvive();
    void optionalTexts();
    void refuses_data();
    void refuses();
    void refusesEveryTruncation();
    void textsOfEveryLengthSurvive();
};

void HistoryCodingTest::writesEveryField()
{
    const QUuid id = QUuid::fromString(u"0f1e2d3c-4b5a-4978-8695-a4b3c2d1e0ff");
    const ClipItem full{id, ClipType::code, u"a/\"b\"\\\n\u0001é"_s, u"Kate"_s, u"org.kde.kate"_s, 750000000.25, true};
    QCOMPARE(encoded({}), "[]");
    QCOMPARE(encoded({full, entry(u"a"_s)}),
             R"([{"id":"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF","type":"code","content":"a\/\"b\"\\\n\u0001é",)"
             R"("sourceApp":"Kate","bundleID":"org.kde.kate","createdAt":750000000.25,"isPinned":true},)" +
                 plainEntry + "]");
    QCOMPARE(HistoryCoding::decode(encoded({full, entry(u"a"_s)})), (QList{full, entry(u"a"_s)}));
}

void HistoryCodingTest::readsContent_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("content");

    QTest::newRow("plain") << changed("", "") << u"a"_s;
    QTest::newRow("escapes") << changed("\"a\"", R"("\"\\\/\b\f\n\r\t\u00e9\uD83D\uDE00\u0000")")
                             << u"\"\\/\b\f\n\r\té\U0001F600"_s + QChar(0);
    QTest::newRow("white space") << changed(",", " ,\r\n\t ") + "\n \n" << u"a"_s;
    QTest::newRow("another order") << changed("\"isPinned\":false", "\"isPinned\":false,\"content\":\"b\"") << u"b"_s;
    QTest::newRow("escaped key") << changed("\"content\"", R"("cont\u0065nt")") << u"a"_s;
    QTest::newRow("unknown keys") << changed("}", R"(,"x":{"y":[1,-2.5e3,null,true,false,"z\n",{}]}})") << u"a"_s;
    QTest::newRow("lower-case id") << changed("0F1E2D3C", "0f1e2d3c") << u"a"_s;
}

void HistoryCodingTest::readsContent()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, content);
    const auto items = HistoryCoding::decode(json);
    QVERIFY(items.has_value());
    QCOMPARE(items->size(), 1);
    QCOMPARE(items->front(), entry(content));
}

void HistoryCodingTest::timesSurvive()
{
    const std::pair<double, QByteArray> times[] = {
        {800000000.1000001, "800000000.1000001"}, // seventeen digits
        {-978307200.5, "-978307200.5"},
        {5e-324, "5e-324"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
    };
    for (const auto& [time, digits] : times) {
        ClipItem item = entry(u"a"_s);
        item.createdAt = time;
        QCOMPARE(encoded({item}), changed("\"createdAt\":1", "\"createdAt\":" + digits));
        QCOMPARE(HistoryCoding::decode(encoded({item}))->front().createdAt, time);
    }
}

void HistoryCodingTest::optionalTexts()
{
    const auto sourceApp = [](const QByteArray& addition) {
        return HistoryCoding::decode(changed("}", addition + '}'))->front().sourceApp;
    };
    QCOMPARE(sourceApp(",\"sourceApp\":null"), std::nullopt);
    QCOMPARE(sourceApp(",\"sourceApp\":\"\""), u""_s);
}

void HistoryCodingTest::refuses_data()
{
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const char* name, const QByteArray& json) { QTest::newRow(name) << json; };

    row("white space", " \n");
    row("object", "{}");
    row("no object inside", "[1]");
    row("garbage after", changed("", "") + "x");
    row("zero byte after", changed("", "") + '\0');
    row("trailing comma", '[' + plainEntry + ",]");
    row("missing comma", '[' + plainEntry + plainEntry + ']');
    row("one bad of two", '[' + plainEntry + ",{}]");
    row("byte order mark", "\xEF\xBB\xBF" + changed("", ""));
    for (const char* key : {"id", "type", "content", "createdAt", "isPinned"})
        row(qPrintable(u"missing %1"_s.arg(QLatin1String(key))), changed(QByteArray("\"") + key + '"', "\"other\""));
    row("unknown type", changed("\"text\"", "\"audio\""));
    row("type behind a byte order mark", changed("\"text\"", "\"\xEF\xBB\xBFtext\""));
    row("content null", changed("\"a\"", "null"));
    row("id with braces",
        changed("\"0F1E2D3C-0000-4000-8000-00000000000A\"", "\"{0F1E2D3C-0000-4000-8000-00000000000A}\""));
    row("id without hyphens", changed("0F1E2D3C-0000-4000-8000-", "0F1E2D3C0000400080000000"));
    row("id too long", changed("00000000000A", "00000000000AB"));
    row("id not hexadecimal", changed("0F1E", "0G1E"));
    row("time as text", changed(":1,", ":\"1\","));
    row("time NaN", changed(":1,", ":NaN,"));
    row("time out of range", changed(":1,", ":1e999,"));
    row("time with leading zero", changed(":1,", ":01,"));
    row("time with plus", changed(":1,", ":+1,"));
    row("time without fraction", changed(":1,", ":1.,"));
    row("pinned as number", changed("false", "0"));
    row("misspelt literal", changed("false", "falsy"));
    row("misspelt null", changed("}", ",\"sourceApp\":nudl}"));
    row("misspelt null under an unknown key", changed("}", ",\"x\":nudl}"));
    row("app as number", changed("}", ",\"sourceApp\":1}"));
    row("wrong value before a right one", changed("\"content\"", "\"content\":1,\"content\""));
    row("raw line feed in a text", changed("\"a\"", "\"a\nb\""));
    row("unknown escape", changed("\"a\"", R"("\x")"));
    row("lone high surrogate", changed("\"a\"", R"("\ud800")"));
    row("lone low surrogate", changed("\"a\"", R"("\udc00")"));
    row("high surrogate before a letter", changed("\"a\"", R"("\ud800\u0041")"));
    row("bad UTF-8", changed("\"a\"", "\"\xFF\""));
    row("surrogate in UTF-8", changed("\"a\"", "\"\xED\xA0\x80\""));
    row("bad value under an unknown key", changed("}", ",\"x\":[1,{\"y\":tru}]}"));
    row("endless nesting", changed("}", ",\"x\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}'));
}

void HistoryCodingTest::refuses()
{
    QFETCH(QByteArray, json);
    QVERIFY(!HistoryCoding::decode(json).has_value());
}

void HistoryCodingTest::refusesEveryTruncation()
{
    const QByteArray json = encoded({entry(u"a\"é"_s), entry(u"\U0001F600"_s)});
    for (qsizetype size = 0; size < json.size(); ++size)
        QVERIFY2(!HistoryCoding::decode(json.first(size)).has_value(), qPrintable(QString::number(size)));
    QVERIFY(HistoryCoding::decode(json).has_value());
}

void HistoryCodingTest::textsOfEveryLengthSurvive()
{
    // Every place in a block of the escaper's scan, and texts larger than what is held back.
    for (qsizetype length = 0; length < 40; ++length) {
        for (qsizetype at = 0; at < length; ++at) {
            for (const char16_t special : u"\"\\/\n\u001F\u0080\u007F") {
                QString text(length, u'x');
                text[at] = special;
                QCOMPARE(HistoryCoding::decode(encoded({entry(text)}))->front().content.toString(), text);
            }
        }
    }
    const QList large{entry(QString(700'000, u'é')), entry(u"\n"_s.repeated(300'000)), entry(u"a"_s)};
    QCOMPARE(HistoryCoding::decode(encoded(large)), large);
}

QTEST_GUILESS_MAIN(HistoryCodingTest)
#include "HistoryCodingTest.moc"
