#include "Actions/SmartActions.h"

#include "Actions/ContentDetectors.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimeZone>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Kind = SmartActionEffect::Kind;

namespace {

QList<SmartAction> actions(ClipType type, const QString& content)
{
    ClipItem item;
    item.type = type;
    item.content = content;
    return SmartActions::actions(item);
}

QStringList labels(ClipType type, const QString& content)
{
    QStringList result;
    for (const SmartAction& action : actions(type, content))
        result.append(action.label);
    return result;
}

} // namespace

class SmartActionsTest final : public QObject
{
    Q_OBJECT
private slots:
    void offers_data();
    void offers();
    void results_data();
    void results();
    void dateIsInTheTimeZoneOfThatMoment();
    void indentationIsBounded();
    void largeTextsCostNoMore();

private:
    static void textResults();
    static void otherResults();
};

void SmartActionsTest::offers_data()
{
    QTest::addColumn<ClipType>("type");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, ClipType type, const QString& content, const QStringList& expected) {
        QTest::newRow(name) << type << content << expected;
    };
    const QStringList always{u"Clean whitespace"_s};

    row("empty text", ClipType::text, QString(), {u"Clean whitespace"_s, u"QR code"_s});
    row("long prose", ClipType::text, u"Lorem ipsum "_s.repeated(170), always);
    row("largest code", ClipType::text, QString(512, u'é'), {u"Clean whitespace"_s, u"QR code"_s});
    row("code too large by a byte", ClipType::text, QString(512, u'é') + u'.', always);
    row("JSON", ClipType::text, u"{\"a\":1}"_s,
        {u"Pretty-print JSON"_s, u"Minify JSON"_s, u"Clean whitespace"_s, u"Slugify"_s, u"QR code"_s});
    row("Base64", ClipType::text, u"aGVsbG8="_s,
        {u"Decode Base64"_s, u"Clean whitespace"_s, u"Slugify"_s, u"QR code"_s});
    row("escapes", ClipType::text, u"%41"_s, {u"URL-decode"_s, u"Clean whitespace"_s, u"QR code"_s});
    row("time", ClipType::text, u"1700000000"_s, {u"Convert to date"_s, u"Clean whitespace"_s, u"QR code"_s});
    row("token", ClipType::text, u"a.e30.c"_s,
        {u"Decode JWT payload"_s, u"Clean whitespace"_s, u"Slugify"_s, u"QR code"_s});
    const QStringList link{u"Open link"_s, u"Copy as Markdown"_s, u"Copy domain"_s, u"QR code"_s};
    row("link", ClipType::link, u"https://a.b/"_s, link);
    row("long link", ClipType::link, u"https://a.b/"_s + QString(5000, u'x'), link);
    row("link with trackers", ClipType::link, u"https://a.b/?gclid=1"_s, QStringList{u"Strip trackers"_s} + link);
    row("colour", ClipType::color, u"#fff"_s, {u"Copy RGB"_s, u"Copy HSL"_s, u"Copy SwiftUI Color"_s});
    const QStringList code{u"Copy fenced code"_s, u"Minify"_s, u"Escape as string literal"_s};
    row("code", ClipType::code, u"let a;"_s, code);
    row("code in JSON", ClipType::code, u"[]"_s, QStringList{u"Format"_s} + code);
    row("code in XML", ClipType::code, u"<a/>"_s, QStringList{u"Format"_s} + code);
    row("picture", ClipType::image, u"/a/b.png"_s, {u"Copy text (OCR)"_s, u"Save to Desktop"_s, u"Copy filename"_s});
    row("file", ClipType::file, u"/a/b"_s,
        {u"Copy path"_s, u"Copy shell-escaped path"_s, u"Copy filename"_s, u"Reveal in Finder"_s});
}

void SmartActionsTest::offers()
{
    QFETCH(ClipType, type);
    QFETCH(QString, content);
    QFETCH(QStringList, expected);
    QCOMPARE(labels(type, content), expected);
}

void SmartActionsTest::results_data()
{
    QTest::addColumn<ClipType>("type");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("label");
    QTest::addColumn<SmartActionResult>("expected");
    textResults();
    otherResults();
}

void SmartActionsTest::textResults()
{
    const auto row = [](const char* name, ClipType type, const QString& content, const QString& label,
                        const SmartActionEffect& effect, const QString& toast) {
        QTest::newRow(name) << type << content << label << SmartActionResult{effect, toast};
    };
    const auto text = [&row](const char* name, const QString& content, const QString& label, const QString& copied,
                             const QString& toast) {
        row(name, ClipType::text, content, label, {Kind::copy, copied}, toast);
    };
    const auto code = [&row](const char* name, const QString& content, const QString& label, const QString& copied,
                             const QString& toast) {
        row(name, ClipType::code, content, label, {Kind::copy, copied}, toast);
    };

    text("pretty", u"[1]"_s, u"Pretty-print JSON"_s, u"[\n  1\n]"_s, u"Copied pretty JSON"_s);
    text("minified", u"[ \"é👩‍👧\" ]\r\n"_s, u"Minify JSON"_s, u"[\"é👩‍👧\"]"_s,
         u"Minified · 9 → 6 chars"_s);
    text("Base64", u"IGEKYiA="_s, u"Decode Base64"_s, u" a\nb "_s, u"Decoded “a b”"_s);
    text("URL", u"%25%31"_s, u"URL-decode"_s, u"%1"_s, u"Decoded “%1”"_s);
    text("token", u"a.e30.c"_s, u"Decode JWT payload"_s, u"{}"_s, u"Copied JWT payload"_s);
    text("white space", u"\u3000 a\t\r\nb\u00A0\u2028c  "_s, u"Clean whitespace"_s, u"a b c"_s, u"Cleaned “a b c”"_s);
    text("nothing to clean", u"ab"_s, u"Clean whitespace"_s, u"ab"_s, u"Cleaned “ab”"_s);
    text("nothing but white space", u" \n"_s, u"Clean whitespace"_s, QString(), u"Cleaned “”"_s);
    text("thirty characters", QString(30, u'é'), u"Slugify"_s, QString(30, u'e'),
         u"Copied “"_s + QString(30, u'e') + u"”"_s);
    text("thirty-one characters", QString(31, u'é'), u"Clean whitespace"_s, QString(31, u'é'),
         u"Cleaned “"_s + QString(30, u'é') + u"…”"_s);
    row("code picture", ClipType::text, u" a "_s, u"QR code"_s, {Kind::copyQRCode, u" a "_s}, u"Generating QR …"_s);

    code("formatted JSON", u"[1]"_s, u"Format"_s, u"[\n  1\n]"_s, u"Formatted · copied"_s);
    code("formatted XML", u"<a><b/></a>"_s, u"Format"_s, u"<a>\n  <b/>\n</a>"_s, u"Formatted · copied"_s);
    code("fenced", u"a\n"_s, u"Copy fenced code"_s, u"```\na\n\n```"_s, u"Copied fenced code block"_s);
    code("minified code", u"a {\r\n  e\u0301;\r\n}"_s, u"Minify"_s, u"a { e\u0301; }"_s, u"Minified · 10 → 8 chars"_s);
    const auto literal = [&code](const char* name, const QString& content, const QString& copied) {
        code(name, content, u"Escape as string literal"_s, copied, u"Copied as string literal"_s);
    };
    literal("literal", u"a\"b\t\\\n\ré"_s, u"\"a\\\"b\\t\\\\\\n\\ré\""_s);
    literal("line ends stay", u"a\r\nb\n\r"_s, u"\"a\r\nb\\n\\r\""_s);
    literal("signs with a mark stay", u"\"\u0301 \\\u0301 \"é\""_s, u"\"\"\u0301 \\\u0301 \\\"é\\\"\""_s);
}

void SmartActionsTest::otherResults()
{
    const auto row = [](const char* name, ClipType type, const QString& content, const QString& label, Kind kind,
                        const QString& payload, const QString& toast) {
        QTest::newRow(name) << type << content << label << SmartActionResult{{kind, payload}, toast};
    };

    const QString link = u"https://me@Example.org:8080/a?gclid=1&b"_s;
    row("stripped", ClipType::link, u'\t' + link + u"\r\n"_s, u"Strip trackers"_s, Kind::copy,
        u"https://me@Example.org:8080/a?b"_s, u"Removed tracking params"_s);
    row("open", ClipType::link, link + u'\n', u"Open link"_s, Kind::openURL, link, u"Opening Example.org …"_s);
    row("Markdown", ClipType::link, link, u"Copy as Markdown"_s, Kind::copyMarkdownLink, link, u"Fetching title …"_s);
    row("domain", ClipType::link, link, u"Copy domain"_s, Kind::copy, u"Example.org"_s, u"Copied Example.org"_s);
    row("link code", ClipType::link, link, u"QR code"_s, Kind::copyQRCode, link, u"Generating QR …"_s);
    row("open what is no link", ClipType::link, u"www.a.b"_s, u"Open link"_s, Kind::openURL, u"www.a.b"_s,
        u"Opening www.a.b …"_s);
    row("domain of what is no link", ClipType::link, u"http://:1 "_s, u"Copy domain"_s, Kind::copy, u"http://:1"_s,
        u"Copied http://:1"_s);

    const auto color = [&row](const char* name, const QString& content, const QString& label, const QString& copied,
                              const QString& toast = {}) {
        row(name, ClipType::color, content, label, Kind::copy, copied, toast.isEmpty() ? u"Copied "_s + copied : toast);
    };
    const QString literal = u"Copied Color literal"_s;
    color("RGB", u" #FF8000 "_s, u"Copy RGB"_s, u"rgb(255, 128, 0)"_s);
    color("HSL", u"#FF8000"_s, u"Copy HSL"_s, u"hsl(30, 100%, 50%)"_s);
    color("SwiftUI", u"#FF8000"_s, u"Copy SwiftUI Color"_s, u"Color(red: 1.000, green: 0.502, blue: 0.000)"_s, literal);
    color("no colour in RGB", u"red"_s, u"Copy RGB"_s, u"rgb(0, 0, 0)"_s);
    color("no colour in HSL", u"#ff80000"_s, u"Copy HSL"_s, u"hsl(0, 0%, 0%)"_s);
    color("no colour in SwiftUI", u"#ff8000"_s.repeated(9), u"Copy SwiftUI Color"_s,
          u"Color(red: 0.000, green: 0.000, blue: 0.000)"_s, literal);

    const QString picture = u"/a/%1 b.png"_s;
    row("recognition", ClipType::image, picture, u"Copy text (OCR)"_s, Kind::recognizeText, picture,
        u"Reading text …"_s);
    row("to the desktop", ClipType::image, picture, u"Save to Desktop"_s, Kind::copyFileToDesktop, picture,
        u"Saved “%1 b.png” to Desktop"_s);
    row("picture name", ClipType::image, picture, u"Copy filename"_s, Kind::copy, u"%1 b.png"_s,
        u"Copied “%1 b.png”"_s);

    row("path", ClipType::file, u"/a b"_s, u"Copy path"_s, Kind::copy, u"/a b"_s, u"Copied path"_s);
    row("file name", ClipType::file, u"/a/b  c/"_s, u"Copy filename"_s, Kind::copy, u"b  c"_s, u"Copied “b c”"_s);
    row("root", ClipType::file, u"/"_s, u"Copy filename"_s, Kind::copy, u"/"_s, u"Copied “/”"_s);
    row("reveal", ClipType::file, u"/a"_s, u"Reveal in Finder"_s, Kind::revealInFinder, u"/a"_s,
        u"Revealing in Finder …"_s);
    for (const auto& [path, escaped] : {std::pair(u"/tmp/A-b_c.d+1"_s, u"/tmp/A-b_c.d+1"_s),
                                        {u"/tmp/my file.txt"_s, u"'/tmp/my file.txt'"_s},
                                        {u"/tmp/it's"_s, u"'/tmp/it'\\''s'"_s},
                                        {u"/tmp/é"_s, u"'/tmp/é'"_s},
                                        {u"/tmp/a\n"_s, u"'/tmp/a\n'"_s},
                                        {QString(), u"''"_s}})
        row(qPrintable(u"shell form of %1"_s.arg(path)), ClipType::file, path, u"Copy shell-escaped path"_s, Kind::copy,
            escaped, u"Copied shell-safe path"_s);
}

void SmartActionsTest::results()
{
    QFETCH(ClipType, type);
    QFETCH(QString, content);
    QFETCH(QString, label);
    QFETCH(SmartActionResult, expected);
    const QList<SmartAction> list = actions(type, content);
    const auto action = std::find_if(list.begin(), list.end(), [&](const auto& each) { return each.label == label; });
    QVERIFY(action != list.end());
    const SmartActionResult result = action->run();
    QCOMPARE(result.effect.payload, expected.effect.payload);
    QCOMPARE(result.toast, expected.toast);
    QCOMPARE(result.effect.kind, expected.effect.kind);
    QVERIFY(action->run() == result);
}

void SmartActionsTest::dateIsInTheTimeZoneOfThatMoment()
{
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", "Asia/Kolkata");
    const QList<SmartAction> list = actions(ClipType::text, u"1700000000123"_s);
    qputenv("TZ", "Europe/Berlin");
    const QList<SmartAction> later = actions(ClipType::text, u"1700000000123"_s);
    const QString first = list.front().run().effect.payload;
    qputenv("TZ", before);
    QCOMPARE(first, u"2023-11-15T03:43:20+05:30"_s);
    QCOMPARE(later.front().run().toast, u"Copied 2023-11-14T23:13:20+01:00"_s);
}

/// A few hundred kilobytes can ask for gigabytes of indentation.
void SmartActionsTest::indentationIsBounded()
{
    const QString ones = u"["_s.repeated(500) + u"1,"_s.repeated(100'000) + u"1"_s + u"]"_s.repeated(500);
    QCOMPARE(labels(ClipType::text, ones), (QStringList{u"Minify JSON"_s, u"Clean whitespace"_s}));
    const QString elements = u"<a>"_s.repeated(500) + u"<b/>"_s.repeated(50'000) + u"</a>"_s.repeated(500);
    QVERIFY(!labels(ClipType::code, elements).contains(u"Format"_s));
}

/// Texts that any repeated search, any comparison of all with all or any look at the whole would hold up for seconds.
void SmartActionsTest::largeTextsCostNoMore()
{
    constexpr qsizetype limit = ContentDetectors::sizeLimit;
    constexpr qsizetype huge = qsizetype(50) * 1024 * 1024;
    QString attributes = u"<a"_s;
    for (int i = 0; attributes.size() < limit - 20; ++i)
        attributes += u" a%1=''"_s.arg(i);
    QString defaults = u"<!DOCTYPE b ["_s;
    for (int i = 0; defaults.size() < limit / 2; ++i)
        defaults += u"<!ATTLIST b a%1 CDATA ''>"_s.arg(i);
    const QList<std::pair<ClipType, QString>> texts{
        {ClipType::text, QString(huge, u'a')},
        {ClipType::text, QString(huge, u' ')},
        {ClipType::code, QString(huge, u'<')},
        {ClipType::link, u"https://a.b/?"_s + QString(huge / 10, u'&')},
        {ClipType::text, QString(limit, u'.')},
        {ClipType::text, QString(limit, u'[')},
        {ClipType::text, u"[\""_s + QString(limit - 10, u'\\')},
        {ClipType::text, u"a"_s + u"\u0301\u0323"_s.repeated(9'000)},
        {ClipType::code, QString(limit, u'<')},
        {ClipType::code, u"<a>"_s + QString(limit - 10, u'&')},
        {ClipType::code, attributes + u"/>"_s},
        {ClipType::code, defaults + u"]><a>"_s + u"<b/>"_s.repeated(limit / 9) + u"</a>"_s},
    };
    QElapsedTimer timer;
    timer.start();
    for (const auto& [type, text] : texts) {
        const Utf8Text content(text);
        ClipItem item;
        item.type = type;
        item.content = content;
        const qint64 start = timer.elapsed();
        QVERIFY(!SmartActions::actions(item).isEmpty());
        QVERIFY2(timer.elapsed() - start < 1000, qPrintable(text.first(20)));
    }
}

QTEST_GUILESS_MAIN(SmartActionsTest)
#include "SmartActionsTest.moc"
