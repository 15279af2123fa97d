#include "Actions/SmartActions.h"

#include <QTest>

#include <algorithm>

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

QString labels(ClipType type, const QString& content)
{
    QStringList result;
    for (const SmartAction& action : actions(type, content))
        result.append(action.label);
    return result.join(u", ");
}

/// What running the action with this label asks for; nothing when it is not offered.
SmartActionResult result(ClipType type, const QString& content, const QString& label)
{
    const QList<SmartAction> list = actions(type, content);
    const auto action = std::ranges::find(list, label, &SmartAction::label);
    return action == list.end() ? SmartActionResult() : action->run();
}

} // namespace

class SmartActionsTest final : public QObject
{
    Q_OBJECT
private slots:
    void offers();
    void copies();
    void asksFor();
    void indentationIsBounded();
};

void SmartActionsTest::offers()
{
    const QString prose = u"Clean whitespace"_s;
    const QString text = u"Clean whitespace, QR code"_s;
    const QString title = u"Clean whitespace, Slugify, QR code"_s;
    QCOMPARE(labels(ClipType::text, u"Lorem ipsum "_s.repeated(170)), prose);
    QCOMPARE(labels(ClipType::text, QString(512, u'é')), text);
    QCOMPARE(labels(ClipType::text, QString(512, u'é') + u'.'), prose);
    QCOMPARE(labels(ClipType::text, u"{\"a\":1}"_s), u"Pretty-print JSON, Minify JSON, "_s + title);
    QCOMPARE(labels(ClipType::text, u"1700000000"_s), u"Convert to date, "_s + text);
    const QString link = u"Open link, Copy as Markdown, Copy domain, QR code"_s;
    QCOMPARE(labels(ClipType::link, u"https://a.b/"_s + QString(5000, u'x')), link);
    QCOMPARE(labels(ClipType::color, u"#fff"_s), u"Copy RGB, Copy HSL, Copy SwiftUI Color"_s);
    const QString code = u"Copy fenced code, Minify, Escape as string literal"_s;
    QCOMPARE(labels(ClipType::code, u"let a;"_s), code);
    QCOMPARE(labels(ClipType::image, u"/a.png"_s), u"Copy text (OCR), Save to Desktop, Copy filename"_s);
    QCOMPARE(labels(ClipType::file, u"/a"_s), u"Copy path, Copy shell-escaped path, Copy filename, Reveal in Finder"_s);
}

void SmartActionsTest::copies()
{
    const auto expect = [](ClipType type, const QString& label, const QString& content, const QString& copied,
                           const QString& toast = {}) {
        const SmartActionResult found = result(type, content, label);
        QCOMPARE(found.effect.payload.toString(), copied);
        QCOMPARE(found.toast, toast.isEmpty() ? u"Copied "_s + copied : toast);
        QCOMPARE(found.effect.kind, Kind::copy);
    };
    const auto text = [&expect](auto... columns) { expect(ClipType::text, columns...); };
    text(u"Minify JSON"_s, u"[ \"é👩‍👧\" ]\r\n"_s, u"[\"é👩‍👧\"]"_s, u"Minified · 9 → 6 chars"_s);
    text(u"Decode Base64"_s, u"IGEKYiA="_s, u" a\nb "_s, u"Decoded “a b”"_s);
    text(u"URL-decode"_s, u"%25%31"_s, u"%1"_s, u"Decoded “%1”"_s);
    text(u"Decode JWT payload"_s, u"a.e30.c"_s, u"{}"_s, u"Copied JWT payload"_s);
    text(u"Clean whitespace"_s, u"\u3000 a\t\r\nb\u00A0\u2028c  "_s, u"a b c"_s, u"Cleaned “a b c”"_s);
    text(u"Clean whitespace"_s, u" \n"_s, QString(), u"Cleaned “”"_s);
    text(u"Clean whitespace"_s, QString(31, u'é'), QString(31, u'é'), u"Cleaned “"_s + QString(30, u'é') + u"…”"_s);

    const auto code = [&expect](auto... columns) { expect(ClipType::code, columns...); };
    code(u"Format"_s, u"[1]"_s, u"[\n  1\n]"_s, u"Formatted · copied"_s);
    code(u"Format"_s, u"<a><b/></a>"_s, u"<a>\n  <b/>\n</a>"_s, u"Formatted · copied"_s);
    code(u"Copy fenced code"_s, u"a\n"_s, u"```\na\n\n```"_s, u"Copied fenced code block"_s);
    code(u"Minify"_s, u"a {\r\n  e\u0301;\r\n}"_s, u"a { e\u0301; }"_s, u"Minified · 10 → 8 chars"_s);
    // Whole characters are escaped: neither a line end of two signs, nor a sign with a mark on it.
    code(u"Escape as string literal"_s, u"a\"b\t\\\n\ré\r\nb\n\r \"\u0301 \\\u0301 \"é\""_s,
         u"\"a\\\"b\\t\\\\\\n\\ré\r\nb\\n\\r \"\u0301 \\\u0301 \\\"é\\\"\""_s, u"Copied as string literal"_s);

    expect(ClipType::link, u"Strip trackers"_s, u"\t https://a.b:80/?gclid=1&b\r\n"_s, u"https://a.b:80/?b"_s,
           u"Removed tracking params"_s);
    expect(ClipType::link, u"Copy domain"_s, u"https://me@A.b:80/?c\n"_s, u"A.b"_s);
    expect(ClipType::link, u"Copy domain"_s, u"http://:1 "_s, u"http://:1"_s);
    expect(ClipType::image, u"Copy filename"_s, u"/a/%1  b.png"_s, u"%1  b.png"_s, u"Copied “%1 b.png”"_s);

    const auto color = [&expect](auto... columns) { expect(ClipType::color, columns...); };
    color(u"Copy RGB"_s, u" #FF8000 "_s, u"rgb(255, 128, 0)"_s);
    color(u"Copy SwiftUI Color"_s, u"#FF8000"_s, u"Color(red: 1.000, green: 0.502, blue: 0.000)"_s,
          u"Copied Color literal"_s);
    color(u"Copy RGB"_s, u"#AbC"_s, u"rgb(170, 187, 204)"_s);
    // What is no colour is black. The last two have signs that look like digits once they are masked or folded.
    for (const auto& no : {u"#ABCD"_s, u"#1234567"_s, u"FF0000"_s, u"#GG0000"_s, u"#\uFF11bc"_s, u"#\u0141bc"_s})
        color(u"Copy RGB"_s, no, u"rgb(0, 0, 0)"_s);
    color(u"Copy HSL"_s, u"#FF0001"_s, u"hsl(360, 100%, 50%)"_s); // rounded, and not wrapped then

    const auto file = [&expect](auto... columns) { expect(ClipType::file, columns...); };
    file(u"Copy filename"_s, u"/a/b  c/"_s, u"b  c"_s, u"Copied “b c”"_s);
    for (const auto& [path, escaped] : {std::pair(u"/tmp/A-b_c.d+1"_s, u"/tmp/A-b_c.d+1"_s),
                                        {u"/tmp/it's"_s, u"'/tmp/it'\\''s'"_s},
                                        {u"/tmp/a\n"_s, u"'/tmp/a\n'"_s},
                                        {u"file:///it%27s%0A1%E90"_s, uR"($'/it\047s\0121\3510')"_s},
                                        {QString(), u"''"_s}})
        file(u"Copy shell-escaped path"_s, path, escaped, u"Copied shell-safe path"_s);
}

void SmartActionsTest::asksFor()
{
    const QString link = u"https://me@Example.org:8080/a?b"_s;
    const QString picture = u"/a/%1 b.png"_s;
    const auto asks = [](ClipType type, const QString& content, const QString& label, Kind kind, const QString& toast) {
        QCOMPARE(
            result(type, content + (type == ClipType::link ? u"\n"_s : QString()), label).effect.payload.toString(),
            content);
        QVERIFY2((result(type, content, label) == SmartActionResult{{kind, content}, toast}), qPrintable(label));
    };
    asks(ClipType::link, link, u"QR code"_s, Kind::copyQRCode, u"Generating QR …"_s);
    asks(ClipType::link, link, u"Open link"_s, Kind::openURL, u"Opening Example.org …"_s);
    asks(ClipType::link, link, u"Copy as Markdown"_s, Kind::copyMarkdownLink, u"Fetching title …"_s);
    asks(ClipType::image, picture, u"Copy text (OCR)"_s, Kind::recognizeText, u"Reading text …"_s);
    asks(ClipType::image, picture, u"Save to Desktop"_s, Kind::copyFileToDesktop, u"Saved “%1 b.png” to Desktop"_s);
    asks(ClipType::file, u"/a"_s, u"Reveal in Finder"_s, Kind::revealInFinder, u"Revealing in Finder …"_s);
}

/// A few hundred kilobytes can ask for gigabytes of indentation.
void SmartActionsTest::indentationIsBounded()
{
    const QString ones = u"["_s.repeated(500) + u"1,"_s.repeated(100'000) + u"1"_s + u"]"_s.repeated(500);
    QCOMPARE(labels(ClipType::text, ones), u"Minify JSON, Clean whitespace"_s);
    const QString elements = u"<a>"_s.repeated(500) + u"<b/>"_s.repeated(50'000) + u"</a>"_s.repeated(500);
    QVERIFY(!labels(ClipType::code, elements).contains(u"Format"_s));
}

QTEST_GUILESS_MAIN(SmartActionsTest)
#include "SmartActionsTest.moc"
