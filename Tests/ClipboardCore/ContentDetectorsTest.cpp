#include "Actions/ContentDetectors.h"
#include "RandomDocuments.h"
#include "Support/WhiteSpace.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

using Detector = std::optional<Utf8Text> (*)(const Utf8Text&);

const QByteArray none = "(no result)";

QByteArray answer(Detector detector, const QByteArray& text)
{
    const auto result = detector(Utf8Text::fromUtf8(text));
    return result ? result->utf8() : none;
}

/// Goes on after a text that becomes something else, so that one run tells of all.
void expect(Detector detector, QList<std::pair<QByteArray, QByteArray>> answers, const QByteArrayList& refused)
{
    for (const QByteArray& text : refused)
        answers.append({text, none});
    for (const auto& [text, expected] : answers)
        if (const QByteArray actual = answer(detector, text); actual != expected)
            QTest::qFail((text.left(200) + " became " + actual.left(200)).constData(), __FILE__, __LINE__);
}

QByteArray nested(const QByteArray& open, int depth, const QByteArray& close)
{
    return open.repeated(depth) + close.repeated(depth);
}

QByteArray token(const QByteArray& payload)
{
    return "head." + payload.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals) + ".signature";
}

constexpr int documentCount = 300;
constexpr int damagedCount = 1500;

struct Outcome
{
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

Outcome run(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(-1))
        return {-1, {}, process.errorString().toUtf8()};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

/// Reads lines, each a text and what became of it, pretty and minified, as fields in Base64 ("-" is no result), and
/// ends with the first that it does not accept. Numbers are kept as their digits, members as a list.
const auto pythonReader = uR"(
import base64, json, sys

def refuse(word):
    raise ValueError(word)

def read(text, members=list):
    number = lambda digits: ('number', digits)
    return json.loads(text, parse_int=number, parse_float=number, parse_constant=refuse, object_pairs_hook=members)

def value(text):
    try:
        return read(text, lambda members: sorted(members, key=lambda member: member[0])) if text[:1] in '{[' else None
    except ValueError:
        return None

for line in sys.stdin:
    text, *results = [None if field == '-' else base64.b64decode(field[1:]).decode() for field in line.split()]
    expected = value(text)
    if [result and read(result) for result in results] != [expected, expected]:
        sys.exit(ascii([text] + results))
)"_s;

QByteArray field(const std::optional<Utf8Text>& text)
{
    return text ? '=' + text->utf8().toBase64() : "-"_ba;
}

/// Reads the documents from files 0, 1 …
Outcome xmllint(const QStringList& options, const QList<QByteArray>& documents)
{
    const QTemporaryDir folder;
    QStringList arguments = QStringList{u"-C"_s, folder.path(), u"xmllint"_s, u"--nonet"_s} + options;
    for (qsizetype i = 0; i < documents.size(); ++i) {
        arguments.append(QString::number(i));
        QFile file(folder.filePath(arguments.back()));
        if (!file.open(QFile::WriteOnly) || file.write(documents[i]) != documents[i].size())
            return {};
    }
    return run(u"env"_s, arguments);
}

} // namespace

/// Independent programs try at random what is valid and what is not; here stands what they do not tell.
class ContentDetectorsTest final : public QObject
{
    Q_OBJECT
private slots:
    void json();
    void encodings();
    void epochDate();
    void links();
    void slugs();
    void xml();
    void bounds();
    void hostile();
    void jsonByPython();
    void xmlLayout();
    void damagedXML();
};

void ContentDetectorsTest::json()
{
    expect(ContentDetectors::minifiedJSON,
           {
               // Keys are ordered by code points, not code units.
               {R"({"\ud83d\ude00":1,"\uffff":2,"a":3,"":4,"aa":5})",
                "{\"\":4,\"a\":3,\"aa\":5,\"\uFFFF\":2,\"\U0001F600\":1}"},
               {R"(["\uD800","\udc00\uD83D","\ud83d\ud83d\ude00","\ud83d\u0041","\ud83dx"])",
                "[\"\\ud800\",\"\\udc00\\ud83d\",\"\\ud83d\U0001F600\",\"\\ud83dA\",\"\\ud83dx\"]"},
               {nested("[", 512, "]"), nested("[", 512, "]")},
           },
           {nested("[", 513, "]"), nested("[", 100'000, "]"), nested("{\"a\":", 513, "}").replace(":}", ":1}"), "",
            "42", "\uFEFF[]", QByteArray("[]\0", 3)});
    expect(ContentDetectors::prettyJSON,
           {{R"({"b":[1,{"d":"x/y:z"}],"a":{},"c":[]})",
             "{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"d\": \"x/y:z\"\n    }\n  ],\n  \"c\": []\n}"}},
           {"1"});
    expect(ContentDetectors::jwtPayload,
           {
               {"\n" + token(R"({"sub":"é?>","exp":1.0})") + " ", "{\n  \"exp\": 1.0,\n  \"sub\": \"é?>\"\n}"},
               {"a.eyJhIjoiPz4_Pz4/In0.c", "{\n  \"a\": \"?>\?\?>?\"\n}"},
           },
           {"a.e30", "a.e30.c.d", token("[1]"), token("{\"a\":\"\xFF\"}"), "a.e3 0.c", "a.e30ab.c"});
}

void ContentDetectorsTest::encodings()
{
    expect(ContentDetectors::base64Decoded,
           {{"\n aGVsbG8= ", "hello"}, {"4p+/4p++", "\u27FF\u27FE"}, {"AAAAAAAA", QByteArray(6, '\0')}},
           {"aGk=", "aGVsbG8", "4p-_4p--", "========", "aGk=aGk=", "/////////w==", "aGVsbG8\u00E9"});
    expect(ContentDetectors::urlDecoded,
           {
               {"a+b%2B%20", "a+b+ "},
               {" %C3%a9\u00E9\n", " \u00E9\u00E9\n"},
               {"a%00", QByteArray("a\0", 2)},
           },
           {"abc", "100%", "%41%zz", "%41%4", "%C3%28", "%ED%A0%80"});
}

void ContentDetectorsTest::epochDate()
{
    const auto date = [](const QString& text, const QByteArray& zone = "UTC") {
        return ContentDetectors::epochDate(text, QTimeZone(zone)).value_or(QString());
    };
    QCOMPARE(date(u" 1700000000\n"_s), u"2023-11-14T22:13:20Z"_s);
    QCOMPARE(date(u"1700000000999"_s, "Nowhere/Else"), u"2023-11-14T22:13:20Z"_s);
    QCOMPARE(date(u"1700000000"_s, "America/St_Johns"), u"2023-11-14T18:43:20-03:30"_s);
    QCOMPARE(date(u"1679792400"_s, "Europe/Berlin"), u"2023-03-26T03:00:00+02:00"_s);
    QCOMPARE(date(u"0978307200"_s), u"2001-01-01T00:00:00Z"_s);
    QCOMPARE(date(u"4102444799999"_s), u"2099-12-31T23:59:59Z"_s);
    for (const auto& text : {u"0978307199"_s, u"4102444800"_s, u"4102444800000"_s, u"978307200"_s, u"17000000000"_s,
                             u"+170000000"_s, u"17000000.0"_s, u"17000 0000"_s, u"١٧٠٠٠٠٠٠٠٠"_s})
        QCOMPARE(date(text), QString());
}

void ContentDetectorsTest::links()
{
    for (const char* name : {"utm_source", "utm_", "UTM_Any", "fbclid", "gclid", "dclid", "msclkid", "igshid", "mc_eid",
                             "vero_id", "twclid", "ttclid", "yclid", "_hsenc", "_HSMI", "utm%5Fx", "%66bclid"})
        expect(ContentDetectors::strippedTrackers, {{"https://a.b/?x&"_ba + name + "=1", "https://a.b/?x"}}, {});
    for (const char* name : {"utm", "xutm_a", "fbclidx", "fbcli", "mc_eidx", ""})
        expect(ContentDetectors::strippedTrackers, {}, {"https://a.b/?"_ba + name + "=utm_"});
    expect(ContentDetectors::strippedTrackers,
           {
               {"https://a.b/c?utm_source=a&id=7#top", "https://a.b/c?id=7#top"},
               {"https://a.b/c?utm_source=a&gclid#top", "https://a.b/c#top"},
               {"HTTPS://u:p@A.b:080/%7e/../é?a=%2f%2F;+[]&utm_x=1&&b=c=d&A&#?é",
                "HTTPS://u:p@A.b:080/%7e/../é?a=%2f%2F;+[]&&b=c=d&A&#?é"},
               {"www.a.b/c://d?gclid=1", "www.a.b/c://d"},
           },
           {"1a://b/?gclid=1", "https://a.b/?id=7", "https://a.b/?", "https://a.b/utm_source=a", "https://a.b/#?gclid",
            " https://a.b/?gclid", "https://a.b/?gclid=a b", "https://a.b/?gclid&b=<c>", "https://a.b/?gclid&b=%zz",
            "https://[::1/?gclid", "https://a.b/?gclid#b#c"});
}

void ContentDetectorsTest::slugs()
{
    expect(ContentDetectors::slug,
           {
               {" Hello, Wörld! ", "hello-world"},
               {"--a - _b_ & c9--\r", "a-b-c9"},
               {"E\u0301TE\u0301", "ete"},
               {"Straße Łódź", "straße-łodz"},
               {"ΑΒΣ Привет 中文 한국어 ٣", "αβσ-привет-中文-한국어-٣"},
               {"हिन्दी भाषा", "हिन्दी-भाषा"},
               {QByteArray("e\u0301").repeated(80), QByteArray(80, 'e')},
           },
           {QByteArray(81, 'e'), "--- 12 ½", "a\nb", "a\r\nb", " "});
}

void ContentDetectorsTest::xml()
{
    QByteArray many = "<a";
    for (int i = 0; i < 40; ++i)
        many += " a" + QByteArray::number(i) + "=''";
    many += "/>";
    const QByteArray longName = "<!DOCTYPE a [<!ELEMENT a:" + QByteArray(70'000, 'b') + " ANY>]><a/>";
    QByteArrayList refused = QByteArray(R"(
        <?xml version='1.0'?> | <a/></a> | <a/><b/> | <a b='1' b='2'/> | <!DOCTYPE a><a>&x;</a> | <a/><!DOCTYPE a> |
        <!DOCTYPE a><!DOCTYPE a><a/> | <!DOCTYPE a [<!ELEMENT>]><a/> | <a b='1'c='2'/> | <a></a b=''> | <a b='<'/> |
        <a>&#0;</a> | <a>&#x;</a> | <a>&#xD800;</a> | <a>&#x110000;</a> |
        <a>&#99999999999999999999;</a> | <a>&lt</a> | <a>]]></a> | <![CDATA[x]]><a/> | <!-- -- --><a/> | <!-- ---><a/> |
        <a/><?XmL?> | <? a?><a/> | <??><a/> | <?xml version='1.0'?><?xml version='1.0'?><a/> | <?xml version='2.0'?><a/> |
        <?xml encoding='a' version='1.0'?><a/> | <?xml version='1.0' encoding=''?><a/>)")
                                 .split('|');
    refused += {"",
                "<a>\x01</a>",
                "<a\u00D7/>",
                "<a\u00B8/>",
                "<\u00B7/>",
                "<a>\uFFFE</a>",
                longName,
                QByteArray(many).replace("a31=", "a7="),
                nested("<a>", 513, "</a>")};
    expect(
        ContentDetectors::formattedXML,
        {
            {"<a><b> x </b><c></c><d> </d></a>", "<a>\n  <b> x </b>\n  <c></c>\n  <d> </d>\n</a>"},
            {"<a><b><![CDATA[<x> ]]> <c/></b></a>", "<a>\n  <b><![CDATA[<x> ]]> <c/></b>\n</a>"},
            {"<a  b='1>2'\n c=\"&lt;'\"><d /></a >", "<a  b='1>2'\n c=\"&lt;'\">\n  <d />\n</a >"},
            {"<?xml version = '1.1' encoding='a-1' standalone=\"yes\" ?><!-- <a> --><?p >?><a/><!--z-->",
             "<?xml version = '1.1' encoding='a-1' standalone=\"yes\" ?>\n<!-- <a> -->\n<?p >?>\n<a/>\n<!--z-->"},
            {"<!DOCTYPE a [ <!-- ]> ' --> <?p ]>?> <!ELEMENT a ANY> <!ATTLIST a b CDATA ']>'> ]><a><b/></a>",
             "<!DOCTYPE a [ <!-- ]> ' --> <?p ]>?> <!ELEMENT a ANY> <!ATTLIST a b CDATA ']>'> ]>\n<a>\n  <b/>\n</a>"},
            {"<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a>&x;</a>",
             "<!DOCTYPE a SYSTEM \"file:///etc/passwd\">\n<a>&x;</a>"},
            {"<!DOCTYPE a [<!ENTITY a '&b;&b;'><!ENTITY b '&a;&a;'>]><a b='&a;'>&b;</a>",
             "<!DOCTYPE a [<!ENTITY a '&b;&b;'><!ENTITY b '&a;&a;'>]>\n<a b='&a;'>&b;</a>"},
            {"<x:a><b xml:space='preserve'> <c/> </b></x:a>", "<x:a>\n  <b xml:space='preserve'> <c/> </b>\n</x:a>"},
            {"<a\u00B7/>", "<a\u00B7/>"},
            {"<a b='&lt;&#x10FFFF;'>&#9;&#x1f600;</a>", "<a b='&lt;&#x10FFFF;'>&#9;&#x1f600;</a>"},
            {many, many},
        },
        refused);
}

void ContentDetectorsTest::bounds()
{
    const QList<std::pair<Detector, QByteArray>> samples{
        {ContentDetectors::prettyJSON, "[]"},          {ContentDetectors::minifiedJSON, "[]"},
        {ContentDetectors::base64Decoded, "aGVsbG8="}, {ContentDetectors::urlDecoded, "%41"},
        {ContentDetectors::jwtPayload, "a.e30.c"},     {ContentDetectors::formattedXML, "<a/>"}};
    for (const auto& [detector, text] : samples) {
        const QByteArray largest = text.leftJustified(ContentDetectors::sizeLimit, ' ');
        QVERIFY2(answer(detector, largest) != none, text.constData());
        QCOMPARE(answer(detector, largest + ' '), none);
    }
}

/// As long as allowed, and nearly what somebody looks for: a detector that tried again from each place would not come
/// back before the test is given up.
void ContentDetectorsTest::hostile()
{
    constexpr qsizetype limit = ContentDetectors::sizeLimit;
    QByteArray defaults = "<!DOCTYPE b [";
    QByteArray attributes = "<a";
    for (int i = 0; defaults.size() < limit / 2; ++i) {
        defaults += "<!ATTLIST b a" + QByteArray::number(i) + " CDATA ''>";
        attributes += " a" + QByteArray::number(i) + "=''";
    }
    QByteArrayList texts{attributes + " a0=''/>", defaults + "]><a>" + QByteArray("<b/>").repeated(limit / 9),
                         QByteArray(limit - 4, 'A') + "AAA!", QByteArray("?&").repeated(limit / 2 - 1) + '#'};
    for (const char* piece : {"=", "%", "%41%", ".\u0301", "a.", "[", "{\"a\":", "[\"\",", "[\"\\", "[1e", "<", "<a>",
                              "<a b='", "<!--", "<!DOCTYPE a [", "<a>&", "-", "\u0301", " \u00A0"})
        texts += QByteArray(piece).repeated(limit / std::max(qsizetype(qstrlen(piece)), qsizetype(1)));
    for (const QByteArray& text : texts)
        for (const Detector detector :
             {ContentDetectors::prettyJSON, ContentDetectors::minifiedJSON, ContentDetectors::base64Decoded,
              ContentDetectors::urlDecoded, ContentDetectors::jwtPayload, ContentDetectors::strippedTrackers,
              ContentDetectors::slug, ContentDetectors::formattedXML})
            QVERIFY2(answer(detector, text) == none, text.left(20).constData());
}

/// Also whether something is JSON at all: half of the documents are damaged.
void ContentDetectorsTest::jsonByPython()
{
    RandomDocuments random(1);
    QByteArray lines;
    int refused = 0;
    for (int i = 0; i < documentCount + damagedCount; ++i) {
        QByteArray json = random.json();
        if (i >= documentCount)
            json = random.damaged(json, "{}[],:\"\\0e.-t \x01");
        const auto text = Utf8Text::fromUtf8(WhiteSpace::trimmed(json).toByteArray());
        const auto minified = ContentDetectors::minifiedJSON(text);
        QVERIFY(minified.has_value() || i >= documentCount);
        refused += minified ? 0 : 1;
        lines += field(text) + ' ' + field(ContentDetectors::prettyJSON(text)) + ' ' + field(minified) + '\n';
    }
    QVERIFY(refused > damagedCount / 4 && refused < damagedCount);
    const Outcome outcome = run(u"python3"_s, {u"-c"_s, pythonReader}, lines);
    QVERIFY2(outcome.exitCode == 0, outcome.errors.constData());
}

/// One node a line, indented by two blanks, mixed content as it is: xmllint does the same.
void ContentDetectorsTest::xmlLayout()
{
    RandomDocuments random(5);
    QList<QByteArray> documents;
    QByteArray formatted;
    for (int i = 0; i < documentCount; ++i) {
        documents.append(random.xml());
        const auto result = ContentDetectors::formattedXML(Utf8Text::fromUtf8(documents.back()));
        QVERIFY2(result.has_value(), documents.back().constData());
        formatted += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + result->utf8() + '\n';
    }
    const Outcome outcome = xmllint({u"--encode"_s, u"UTF-8"_s, u"--format"_s}, documents);
    const QList<QByteArray> expected = outcome.output.split('\n');
    const QList<QByteArray> actual = formatted.split('\n');
    QCOMPARE(actual, expected);
}

/// What is well-formed and what is not.
void ContentDetectorsTest::damagedXML()
{
    RandomDocuments random(6);
    QList<QByteArray> documents;
    for (int i = 0; i < damagedCount; ++i)
        documents.append(Utf8Text::fromUtf8(random.damaged(random.xml(), "<>/&;'\"=?!-[] a1:")).utf8());
    const Outcome outcome = xmllint({u"--noout"_s}, documents);
    QSet<QByteArray> refused;
    for (const QByteArray& error : outcome.errors.split('\n'))
        if (error.contains(": parser error :"))
            refused.insert(error.first(error.indexOf(':')));
    QVERIFY(refused.size() > damagedCount / 4 && refused.size() < damagedCount);
    for (int i = 0; i < damagedCount; ++i) {
        const bool isWellFormed = !refused.contains(QByteArray::number(i));
        QVERIFY2(ContentDetectors::formattedXML(Utf8Text::fromUtf8(documents[i])).has_value() == isWellFormed,
                 documents[i].constData());
    }
}

QTEST_GUILESS_MAIN(ContentDetectorsTest)
#include "ContentDetectorsTest.moc"
