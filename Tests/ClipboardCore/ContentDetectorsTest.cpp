#include "Actions/ContentDetectors.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

using Detector = std::optional<Utf8Text> (*)(const Utf8Text&);

const QByteArray none = "(no result)";

QByteArray bytes(const std::optional<Utf8Text>& result)
{
    return result ? result->utf8() : none;
}

void addColumns()
{
    QTest::addColumn<Detector>("detector");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
}

struct Row
{
    const char* name;
    QByteArray text;
    QByteArray expected = none;
};

void addRows(Detector detector, const std::initializer_list<Row>& rows)
{
    for (const Row& row : rows)
        QTest::newRow(row.name) << detector << row.text << row.expected;
}

void check()
{
    QFETCH(Detector, detector);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(bytes(detector(Utf8Text::fromUtf8(text))), expected);
}

QByteArray nested(const QByteArray& open, int depth, const QByteArray& close)
{
    return open.repeated(depth) + close.repeated(depth);
}

QByteArray token(const QByteArray& payload)
{
    return "head." + payload.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals) + ".signature";
}

} // namespace

class ContentDetectorsTest final : public QObject
{
    Q_OBJECT
private slots:
    void json_data();
    void json() { check(); }
    void encodings_data();
    void encodings() { check(); }
    void epochDate_data();
    void epochDate();
    void links_data();
    void links() { check(); }
    void slugs_data();
    void slugs() { check(); }
    void xml_data();
    void xml() { check(); }
    void bounds_data();
    void bounds();
    void hostile_data();
    void hostile();
    void truncations_data();
    void truncations();
};

void ContentDetectorsTest::json_data()
{
    addColumns();
    addRows(ContentDetectors::minifiedJSON,
            {
                {"members sorted", "\n {\"b\":1,\"a\":2}\u3000", R"({"a":2,"b":1})"},
                {"sorted at every level", R"([{"b":{"d":1,"c":2},"a":[3,1]}])", R"([{"a":[3,1],"b":{"c":2,"d":1}}])"},
                {"code points, not code units", R"({"\ud83d\ude00":1,"\uffff":2,"a":3,"":4,"aa":5})",
                 "{\"\":4,\"a\":3,\"aa\":5,\"\uFFFF\":2,\"\U0001F600\":1}"},
                {"long common beginnings", R"({"abcdefghij":1,"abcdefghi":2,"abcdefgh\u0000":3,"abcdefgh":4})",
                 R"({"abcdefgh":4,"abcdefgh\u0000":3,"abcdefghi":2,"abcdefghij":1})"},
                {"equal keys keep their order", R"({"b":1,"a":1,"b":0,"\u0061":0})", R"({"a":1,"a":0,"b":1,"b":0})"},
                {"digit for digit", "[12345678901234567890, 1.10,-0, 1E+400 ,0e-0\t,1.0000000000000000001]",
                 "[12345678901234567890,1.10,-0,1E+400,0e-0,1.0000000000000000001]"},
                {"words", "[true\n,false\r,null]", "[true,false,null]"},
                {"escapes", R"(["\"\\\/\b\f\n\r\t\u0041\u00e9\u001F\u007f"])",
                 R"(["\"\\/\b\f\n\r\tA)"
                 "\u00E9\\u001f\x7F\"]"},
                {"surrogate pair", R"(["\uD83D\uDE00"])", "[\"\U0001F600\"]"},
                {"lone surrogates", R"(["\uD800","\udc00\uD83D","\ud83d\ud83d\ude00","\ud83d\u0041","\ud83dx"])",
                 "[\"\\ud800\",\"\\udc00\\ud83d\",\"\\ud83d\U0001F600\",\"\\ud83dA\",\"\\ud83dx\"]"},
                {"white space in a text", R"([" a  b "])", R"([" a  b "])"},
                {"empty containers", " [ { } , [ ] ] ", "[{},[]]"},
                {"deepest", nested("[", 512, "]"), nested("[", 512, "]")},
                {"too deep", nested("[", 513, "]")},
                {"far too deep", nested("[", 100'000, "]")},
                {"too deep in objects", QByteArray("{\"a\":").repeated(513) + "1" + QByteArray("}").repeated(513)},
                {"nothing", ""},
                {"scalar", "42"},
                {"text", "\"a\""},
                {"byte order mark", "\uFEFF[]"},
                {"text after", "[1]x"},
                {"array after", "[][]"},
                {"bracket after", "[]]"},
                {"zero byte after", QByteArray("[]\0", 3)},
                {"open", "[1"},
                {"wrong bracket", "[1}"},
                {"trailing comma", "[1,]"},
                {"trailing comma in an object", R"({"a":1,})"},
                {"missing comma", "[1 2]"},
                {"colon in an array", R"(["a":1])"},
                {"colon in an object's value", R"({"a":"b":1})"},
                {"missing colon", R"({"a" 1})"},
                {"missing value", R"({"a"})"},
                {"key without quotes", "{a:1}"},
                {"number as key", "{1:1}"},
                {"single quotes", "['a']"},
                {"comment", "[1/**/]"},
                {"leading zero", "[01]"},
                {"leading plus", "[+1]"},
                {"no digit before the point", "[.5]"},
                {"no digit after the point", "[1.]"},
                {"no digit in the exponent", "[1e+]"},
                {"minus alone", "[-]"},
                {"not a number", "[NaN]"},
                {"word cut short", "[tru]"},
                {"word too long", "[nullx]"},
                {"unknown escape", R"(["\x"])"},
                {"short escape", R"(["\u12"])"},
                {"escape without digits", R"(["\u00g0"])"},
                {"control character", "[\"\t\"]"},
            });
    addRows(ContentDetectors::prettyJSON, {
                                              {"pretty", R"({"b":[1,{"d":"x/y:z"}],"a":{},"c":[]})",
                                               "{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"d\": \"x/y:z\"\n"
                                               "    }\n  ],\n  \"c\": []\n}"},
                                              {"pretty scalar", "1"},
                                          });
    addRows(
        ContentDetectors::jwtPayload,
        {
            {"claims", "\n" + token(R"({"sub":"é?>","exp":1.0})") + " ", "{\n  \"exp\": 1.0,\n  \"sub\": \"é?>\"\n}"},
            {"empty pieces do not count", "a..e30.c.", "{}"},
            {"padded claims", "a.eyJhIjoxfQ==.c", "{\n  \"a\": 1\n}"},
            {"both alphabets", "a.eyJhIjoiPz4_Pz4/In0.c", "{\n  \"a\": \"?>\?\?>?\"\n}"},
            {"two pieces", "a.e30"},
            {"four pieces", "a.e30.c.d"},
            {"array as claims", token("[1]")},
            {"claims that are no JSON", token("{a}")},
            {"claims that are no text", token("{\"a\":\"\xFF\"}")},
            {"claims with a foreign sign", "a.e3 0.c"},
            {"claims one sign too long", "a.e30ab.c"},
        });
}

void ContentDetectorsTest::encodings_data()
{
    addColumns();
    addRows(ContentDetectors::base64Decoded, {
                                                 {"eight signs", "aGVsbG8=", "hello"},
                                                 {"two padding signs", "\n aGVsbG8hIQ== ", "hello!!"},
                                                 {"all signs", "4p+/4p++", "\u27FF\u27FE"},
                                                 {"zero bytes", "AAAAAAAA", QByteArray(6, '\0')},
                                                 {"four signs", "aGk="},
                                                 {"seven signs", "aGVsbG8"},
                                                 {"URL alphabet", "4p-_4p--"},
                                                 {"line feed inside", "aGVs\nbG8=aaa"},
                                                 {"padding inside", "aGk=aGk="},
                                                 {"three padding signs", "aGVsb==="},
                                                 {"padding alone", "========"},
                                                 {"no text", "/////////w=="},
                                                 {"a letter that is no sign", "aGVsbG8\u00E9"},
                                             });
    addRows(ContentDetectors::urlDecoded, {
                                              {"escaped blank", "a%20b", "a b"},
                                              {"plus stays", "a+b%2B", "a+b+"},
                                              {"not trimmed", " %C3%a9\u00E9\n", " \u00E9\u00E9\n"},
                                              {"escaped percent sign", "%2541", "%41"},
                                              {"escaped zero", "a%00", QByteArray("a\0", 2)},
                                              {"no escape", "abc"},
                                              {"percent sign alone", "100%"},
                                              {"one bad escape", "%41%zz"},
                                              {"cut escape", "%41%4"},
                                              {"not UTF-8", "%C3%28"},
                                              {"surrogate", "%ED%A0%80"},
                                              {"overlong", "%C0%80"},
                                          });
}

void ContentDetectorsTest::epochDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QString& text, const QByteArray& zone, const QString& expected = {}) {
        QTest::newRow(name) << text << zone << expected;
    };

    row("seconds", u" 1700000000\n"_s, "UTC", u"2023-11-14T22:13:20Z"_s);
    row("milliseconds are cut", u"1700000000999"_s, "UTC", u"2023-11-14T22:13:20Z"_s);
    row("half an hour", u"1700000000"_s, "Asia/Kolkata", u"2023-11-15T03:43:20+05:30"_s);
    row("half an hour behind", u"1700000000"_s, "America/St_Johns", u"2023-11-14T18:43:20-03:30"_s);
    row("zero offset of a zone", u"1700000000"_s, "Europe/London", u"2023-11-14T22:13:20Z"_s);
    row("last second of winter", u"1679792399"_s, "Europe/Berlin", u"2023-03-26T01:59:59+01:00"_s);
    row("first second of summer", u"1679792400"_s, "Europe/Berlin", u"2023-03-26T03:00:00+02:00"_s);
    row("hour that comes twice", u"1698541200"_s, "Europe/Berlin", u"2023-10-29T02:00:00+01:00"_s);
    row("unknown zone", u"1700000000"_s, "Nowhere/Else", u"2023-11-14T22:13:20Z"_s);
    row("first", u"0978307200"_s, "UTC", u"2001-01-01T00:00:00Z"_s);
    row("last", u"4102444799999"_s, "UTC", u"2099-12-31T23:59:59Z"_s);
    row("too early", u"0978307199"_s, "UTC");
    row("too late", u"4102444800"_s, "UTC");
    row("too late in milliseconds", u"4102444800000"_s, "UTC");
    row("nine digits", u"978307200"_s, "UTC");
    row("eleven digits", u"17000000000"_s, "UTC");
    row("sign", u"+170000000"_s, "UTC");
    row("fraction", u"17000000.0"_s, "UTC");
    row("exponent", u"17000000e2"_s, "UTC");
    row("blank inside", u"17000 0000"_s, "UTC");
    row("other digits", u"١٧٠٠٠٠٠٠٠٠"_s, "UTC");
}

void ContentDetectorsTest::epochDate()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, zone);
    QFETCH(QString, expected);
    QCOMPARE(ContentDetectors::epochDate(text, QTimeZone(zone)).value_or(QString()), expected);
}

void ContentDetectorsTest::links_data()
{
    addColumns();
    for (const char* name : {"utm_source", "utm_", "UTM_Any", "fbclid", "gclid", "dclid", "msclkid", "igshid", "mc_eid",
                             "vero_id", "twclid", "ttclid", "yclid", "_hsenc", "_HSMI", "utm%5Fx", "%66bclid"})
        QTest::newRow(name) << Detector(ContentDetectors::strippedTrackers) << "https://a.b/?x&"_ba + name + "=1"
                            << "https://a.b/?x"_ba;
    for (const char* name : {"utm", "xutm_a", "fbclidx", "fbcli", "mc_eidx", "", "clid"})
        QTest::newRow(qPrintable(u"not %1"_s.arg(QLatin1String(name))))
            << Detector(ContentDetectors::strippedTrackers) << "https://a.b/?"_ba + name + "=utm_" << none;
    addRows(ContentDetectors::strippedTrackers,
            {
                {"fragment stays", "https://a.b/c?utm_source=a&id=7#top", "https://a.b/c?id=7#top"},
                {"no query left", "https://a.b/c?utm_source=a&gclid#top", "https://a.b/c#top"},
                {"every other byte stays", "HTTPS://u:p@A.b:080/%7e/../é?a=%2f%2F;+[]&utm_x=1&&b=c=d&A&#?é",
                 "HTTPS://u:p@A.b:080/%7e/../é?a=%2f%2F;+[]&&b=c=d&A&#?é"},
                {"question mark in a parameter", "https://a.b/?a=?utm_x=1&fbclid=?", "https://a.b/?a=?utm_x=1"},
                {"without a scheme", "www.a.b/c://d?gclid=1", "www.a.b/c://d"},
                {"host that DNS would not take", "https://a..b-:99999?gclid", "https://a..b-:99999"},
                {"malformed scheme", "1a://b/?gclid=1"},
                {"nothing to remove", "https://a.b/?id=7"},
                {"empty query", "https://a.b/?"},
                {"no query", "https://a.b/utm_source=a"},
                {"in the fragment", "https://a.b/#?utm_source=a"},
                {"blank around", " https://a.b/?utm_source=a"},
                {"blank inside", "https://a.b/?utm_source=a b"},
                {"sign no URL has", "https://a.b/?utm_source=a&b=<c>"},
                {"malformed escape", "https://a.b/?utm_source=a&b=%zz"},
                {"malformed host", "https://[::1/?utm_source=a"},
                {"two fragments", "https://a.b/?utm_source=a#b#c"},
            });
}

void ContentDetectorsTest::slugs_data()
{
    addColumns();
    addRows(ContentDetectors::slug, {
                                        {"words", " Hello, Wörld! ", "hello-world"},
                                        {"runs of signs", "--a - _b_ & c9--", "a-b-c9"},
                                        {"decomposed", "E\u0301TE\u0301", "ete"},
                                        {"letters that only look marked", "Straße Łódź", "straße-łodz"},
                                        {"other scripts", "ΑΒΣ Привет 中文 한국어 ٣", "αβσ-привет-中文-한국어-٣"},
                                        {"vowel signs", "हिन्दी भाषा", "हिन्दी-भाषा"},
                                        {"pictures", "a👩‍👩‍👧b", "a-b"},
                                        {"carriage return", "a\rb", "a-b"},
                                        {"eighty characters", QByteArray("e\u0301").repeated(80), QByteArray(80, 'e')},
                                        {"eighty-one characters", QByteArray(81, 'e')},
                                        {"no letter", "--- 12 ½"},
                                        {"line feed", "a\nb"},
                                        {"line end", "a\r\nb"},
                                        {"nothing", " "},
                                    });
}

void ContentDetectorsTest::xml_data()
{
    addColumns();
    QByteArray many = "<a";
    for (int i = 0; i < 40; ++i)
        many += " a" + QByteArray::number(i) + "=''";
    many += "/>";
    addRows(
        ContentDetectors::formattedXML,
        {
            {"indented", " <a><b/>\n\n<c><d/></c></a>\n", "<a>\n  <b/>\n  <c>\n    <d/>\n  </c>\n</a>"},
            {"text stays in its line", "<a><b> x </b><c></c><d> </d></a>",
             "<a>\n  <b> x </b>\n  <c></c>\n  <d> </d>\n</a>"},
            {"mixed content as it is", "<a><p>x <i>y</i> <b><u/> <u/></b></p><q/></a>",
             "<a>\n  <p>x <i>y</i> <b><u/> <u/></b></p>\n  <q/>\n</a>"},
            {"CDATA is text", "<a><b><![CDATA[<x> ]]> <c/></b></a>", "<a>\n  <b><![CDATA[<x> ]]> <c/></b>\n</a>"},
            {"tags as they are", "<a  b='1>2'\n c=\"&lt;'\"><d /></a >", "<a  b='1>2'\n c=\"&lt;'\">\n  <d />\n</a >"},
            {"prolog and end", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><!-- <a> --><?p >?><a/><!--z-->",
             "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<!-- <a> -->\n<?p >?>\n<a/>\n<!--z-->"},
            {"document type", "<!DOCTYPE a [ <!-- ]> ' --> <!ELEMENT a ANY> ]><a><b/></a>",
             "<!DOCTYPE a [ <!-- ]> ' --> <!ELEMENT a ANY> ]>\n<a>\n  <b/>\n</a>"},
            {"external type", "<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a>&x;</a>",
             "<!DOCTYPE a SYSTEM \"file:///etc/passwd\">\n<a>&x;</a>"},
            {"entities that multiply", "<!DOCTYPE a [<!ENTITY a '&b;&b;'><!ENTITY b '&a;&a;'>]><a b='&a;'>&b;</a>",
             "<!DOCTYPE a [<!ENTITY a '&b;&b;'><!ENTITY b '&a;&a;'>]>\n<a b='&a;'>&b;</a>"},
            {"namespaces", "<x:a xmlns:x='u'><x:b y:c='1'/></x:a>", "<x:a xmlns:x='u'>\n  <x:b y:c='1'/>\n</x:a>"},
            {"preserved space", "<a><b xml:space='preserve'> <c/> </b></a>",
             "<a>\n  <b xml:space='preserve'> <c/> </b>\n</a>"},
            {"other scripts", "<é><中/></é>", "<é>\n  <中/>\n</é>"},
            {"nothing", ""},
            {"no markup", "a<b/>"},
            {"declaration alone", "<?xml version='1.0'?>"},
            {"not closed", "<a>"},
            {"closed twice", "<a/></a>"},
            {"closed crosswise", "<a><b></a></b>"},
            {"two roots", "<a/><b/>"},
            {"text after the root", "<a/>x"},
            {"value without quotes", "<a b=c/>"},
            {"value that does not end", "<a b='c/>"},
            {"repeated attribute", "<a b='1' b='2'/>"},
            {"unknown entity", "<a>&x;</a>"},
            {"unknown entity in a plain type", "<!DOCTYPE a><a>&x;</a>"},
            {"ampersand", "<a>b & c</a>"},
            {"control character", "<a>\x01</a>"},
            {"comment that does not end", "<a><!-- </a>"},
            {"type after the root", "<a/><!DOCTYPE a>"},
            {"two types", "<!DOCTYPE a><!DOCTYPE a><a/>"},
            {"malformed type", "<!DOCTYPE a [<!ELEMENT>]><a/>"},
            {"name too long for the parser", "<!DOCTYPE a [<!ELEMENT a:" + QByteArray(70'000, 'b') + " ANY>]><a/>"},
            {"signs of names", "<_:a.b-1·><:/></_:a.b-1·>", "<_:a.b-1·>\n  <:/>\n</_:a.b-1·>"},
            {"references", "<a b='&lt;&#x10FFFF;'>&#9;&#x1f600;</a>", "<a b='&lt;&#x10FFFF;'>&#9;&#x1f600;</a>"},
            {"whole declaration", "<?xml version = '1.1' encoding='a-1' standalone=\"yes\" ?><a/>",
             "<?xml version = '1.1' encoding='a-1' standalone=\"yes\" ?>\n<a/>"},
            {"many attributes", many, many},
            {"repeated among many", QByteArray(many).replace("a31=", "a7=")},
            {"name begins with a digit", "<1/>"},
            {"sign no name has", "<a\u00D7/>"},
            {"blank before the name", "< a/>"},
            {"slash in a tag", "<a/ ></a>"},
            {"attributes without a blank", "<a b='1'c='2'/>"},
            {"attribute of a close tag", "<a></a b=''>"},
            {"less-than in a value", "<a b='<'/>"},
            {"no character", "<a>&#0;</a>"},
            {"no digits", "<a>&#x;</a>"},
            {"half a pair", "<a>&#xD800;</a>"},
            {"beyond Unicode", "<a>&#x110000;&#99999999999999999999;</a>"},
            {"noncharacter", "<a>\uFFFE</a>"},
            {"reference without end", "<a>&lt</a>"},
            {"end of CDATA in a text", "<a>]]></a>"},
            {"CDATA outside", "<![CDATA[x]]><a/>"},
            {"hyphens in a comment", "<!-- -- --><a/>"},
            {"three hyphens", "<!-- ---><a/>"},
            {"reserved instruction", "<a/><?XmL?>"},
            {"instruction without a name", "<? a?><a/>"},
            {"empty instruction", "<?\?><a/>"},
            {"second declaration", "<?xml version='1.0'?><?xml version='1.0'?><a/>"},
            {"version of another kind", "<?xml version='2.0'?><a/>"},
            {"declaration out of order", "<?xml encoding='a' version='1.0'?><a/>"},
            {"encoding that is none", "<?xml version='1.0' encoding=''?><a/>"},
            {"too deep", nested("<a>", 513, "</a>")},
        });
}

void ContentDetectorsTest::bounds_data()
{
    QTest::addColumn<Detector>("detector");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("countsWhiteSpace");

    QTest::newRow("pretty") << Detector(ContentDetectors::prettyJSON) << "[]"_ba << true;
    QTest::newRow("minified") << Detector(ContentDetectors::minifiedJSON) << "[]"_ba << true;
    QTest::newRow("Base64") << Detector(ContentDetectors::base64Decoded) << "aGVsbG8="_ba << true;
    QTest::newRow("URL") << Detector(ContentDetectors::urlDecoded) << "%41"_ba << true;
    QTest::newRow("JWT") << Detector(ContentDetectors::jwtPayload) << "a.e30.c"_ba << true;
    QTest::newRow("XML") << Detector(ContentDetectors::formattedXML) << "<a/>"_ba << true;
    QTest::newRow("slug") << Detector(ContentDetectors::slug) << "a"_ba << false;
}

void ContentDetectorsTest::bounds()
{
    QFETCH(Detector, detector);
    QFETCH(QByteArray, text);
    QFETCH(bool, countsWhiteSpace);
    const QByteArray largest = text.leftJustified(ContentDetectors::sizeLimit, ' ');
    QVERIFY(detector(Utf8Text::fromUtf8(largest)).has_value());
    QCOMPARE(detector(Utf8Text::fromUtf8(largest + ' ')).has_value(), !countsWhiteSpace);
}

/// As long as allowed, and nearly what somebody looks for: a detector that tried again from each place would not come
/// back before the test is given up.
void ContentDetectorsTest::hostile_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* name, const QByteArray& piece, const QByteArray& end) {
        QTest::newRow(name) << piece.repeated((ContentDetectors::sizeLimit - end.size()) / piece.size()) + end;
    };
    row("Base64 that ends badly", "AAAA", "AAA!");
    row("padding everywhere", "=", "");
    row("percent signs", "%", "");
    row("escapes that end badly", "%41", "%4");
    row("full stops with marks", ".\u0301", "");
    row("pieces", "a.", "");
    row("parameters without a name", "?&", "#");
    row("brackets", "[", "");
    row("members", "{\"a\":", "");
    row("quotes", "[\"\",", "");
    row("backslashes", "[\"\\", "");
    row("numbers", "[1e", "");
    row("less-than signs", "<", "");
    row("elements", "<a>", "");
    row("attributes", "<a b='", "");
    row("comments", "<!--", "");
    row("document types", "<!DOCTYPE a [", "");
    row("entities", "<a>&", "");
    row("hyphens", "-", "");
    row("marks", "\u0301", "");
    row("blanks", " \u00A0", "");
}

void ContentDetectorsTest::hostile()
{
    QFETCH(QByteArray, text);
    for (const Detector detector :
         {ContentDetectors::prettyJSON, ContentDetectors::minifiedJSON, ContentDetectors::base64Decoded,
          ContentDetectors::urlDecoded, ContentDetectors::jwtPayload, ContentDetectors::strippedTrackers,
          ContentDetectors::slug, ContentDetectors::formattedXML})
        QCOMPARE(bytes(detector(Utf8Text::fromUtf8(text))), none);
}

void ContentDetectorsTest::truncations_data()
{
    QTest::addColumn<Detector>("detector");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("JSON") << Detector(ContentDetectors::prettyJSON)
                          << R"({"a":[1.5e3,"\ud83d\ude00\n",{"":null}],"b":{"c":true}})"_ba;
    QTest::newRow("XML") << Detector(ContentDetectors::formattedXML)
                         << "<!DOCTYPE a [<!ENTITY x 'y'>]><a b='&x;'><![CDATA[x]]><!--c--><?p i?>&#65;<b/></a>"_ba;
}

void ContentDetectorsTest::truncations()
{
    QFETCH(Detector, detector);
    QFETCH(QByteArray, text);
    QVERIFY(detector(Utf8Text::fromUtf8(text)).has_value());
    for (qsizetype length = 0; length < text.size(); ++length)
        QCOMPARE(bytes(detector(Utf8Text::fromUtf8(text.first(length)))), none);
}

QTEST_GUILESS_MAIN(ContentDetectorsTest)
#include "ContentDetectorsTest.moc"
