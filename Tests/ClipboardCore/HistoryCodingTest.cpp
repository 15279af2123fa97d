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
    void reads();
    void refuses();
    void textsOfEveryLengthSurvive();
};

void HistoryCodingTest::writesEveryField()
{
    const QUuid id = QUuid::fromString(u"0f1e2d3c-4b5a-4978-8695-a4b3c2d1e0ff");
    ClipItem full{id, ClipType::text, u"a/\"b\"\\\n\u0001é"_s, u"Kate"_s, u"org.kde.kate"_s, 750000000.25, true};
    const std::pair<ClipType, QByteArray> types[] = {{ClipType::text, "text"},   {ClipType::link, "link"},
                                                     {ClipType::image, "image"}, {ClipType::color, "color"},
                                                     {ClipType::code, "code"},   {ClipType::file, "file"}};
    for (const auto& [type, name] : types) {
        full.type = type;
        const QList<ClipItem> items{full, entry(u"a"_s)};
        QCOMPARE(encoded(items), R"([{"id":"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF","type":")" + name +
                                     R"(","content":"a\/\"b\"\\\n\u0001é","sourceApp":"Kate",)"
                                     R"("bundleID":"org.kde.kate","createdAt":750000000.25,"isPinned":true},)" +
                                     plainEntry + "]");
        QCOMPARE(HistoryCoding::decode(encoded(items)), items);
    }
    full.createdAt = 5e-324;
    QCOMPARE(HistoryCoding::decode(encoded({full})), QList{full});
}

void HistoryCodingTest::reads()
{
    const std::pair<QByteArray, QString> contents[] = {
        {changed("\"a\"", R"("\"\\\/\b\f\n\r\t\u00e9\uD83D\uDE00\u0000")"), u"\"\\/\b\f\n\r\té\U0001F600\0"_s},
        {changed(",", " ,\r\n\t ") + "\n \n", u"a"_s},
        {changed("\"isPinned\"", "\"content\":\"b\",\"isPinned\""), u"b"_s}, // the last of a repeated key
        {changed("\"content\"", R"("cont\u0065nt")"), u"a"_s},
        {changed("}", R"(,"x":{"y":[1,-2.5e3,null,true,false,"z\n",{}]}})"), u"a"_s},
        {changed("}", R"(,"sourceApp":null})"), u"a"_s},
    };
    for (const auto& [json, content] : contents)
        QCOMPARE(HistoryCoding::decode(json), std::optional(QList{entry(content)}));
    QCOMPARE(HistoryCoding::decode(changed("}", R"(,"sourceApp":""})"))->front().sourceApp, u""_s);
}

void HistoryCodingTest::refuses()
{
    const QByteArray deep = ",\"x\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}';
    const std::pair<QByteArray, QByteArrayList> changes[] = {
        {"\"id\"", {"\"x\""}},
        {"\"type\"", {"\"x\""}},
        {"\"content\"", {"\"x\"", "\"content\":1,\"content\""}},
        {"0F1E2D3C-", {"0F1E2D3C0", "0G1E2D3C-", "0F1E2D3C-A", "{0F1E2D3C-"}},
        {"\"text\"", {"\"audio\"", "\"Text\"", "\"\xEF\xBB\xBFtext\"", "null"}},
        {"\"a\"", {"null", "1", R"("\x")", R"("\ud800")", R"("\ud800\u0041")", "\"\xFF\"", "\"\n\""}},
        {":1,", {":\"1\",", ":NaN,", ":1e999,", ":01,"}},
        {"false", {"0", "falsy"}},
        {"}", {R"(,"sourceApp":nudl})", R"(,"sourceApp":1})", R"(,"x":nudl})", R"(,"x":[1,{"y":tru}]})", deep}},
    };
    QByteArrayList wrong{" \n", "{}", "[1]", '[' + plainEntry + ",{}]", '[' + plainEntry + plainEntry + ']'};
    for (const auto& [part, replacements] : changes)
        for (const QByteArray& replacement : replacements)
            wrong += changed(part, replacement);
    const QByteArray right = changed("", "");
    wrong += {right + "x", right + '\0', "\xEF\xBB\xBF" + right};
    for (qsizetype size = 0; size < right.size(); ++size)
        wrong += right.first(size);
    for (const QByteArray& json : wrong)
        QVERIFY2(!HistoryCoding::decode(json).has_value(), json.left(200).constData());
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
