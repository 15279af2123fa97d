#include "HtmlTitle.h"
#include "TitleText.h"

#include <QStringEncoder>
#include <QTest>

#include <tuple>
#include <utility>

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

const QByteArray utf8 = "text/html; charset=utf-8";

QByteArray withTitle(const QByteArray& title, const QByteArray& before = {})
{
    return "<html><head>" + before + "<title>" + title + "</title></head><body>text</body></html>";
}

/// `text` in UTF-16, least significant byte first.
QByteArray utf16(const QString& text)
{
    QStringEncoder encoder(QStringEncoder::Utf16LE);
    return encoder.encode(text);
}

/// Goes on after a page with another title, so that one run tells of all. A null title is none.
void expect(const QList<std::pair<QByteArray, QString>>& titles)
{
    for (const auto& [page, title] : titles) {
        const std::optional<QString> found = htmlTitle(page, utf8);
        if (found.value_or(QString()) != title || found.has_value() == title.isNull())
            QTest::qFail(page.left(200).constData(), __FILE__, __LINE__);
    }
}

} // namespace

class HtmlTitleTest final : public QObject
{
    Q_OBJECT
private slots:
    void findsTheTitle();
    void decodesThePage();
    void knowsWhenItIsSettled();
    void answersAnyCut();
    void boundsItsWork();
};

void HtmlTitleTest::findsTheTitle()
{
    const QString none;
    const QByteArray og = R"(<meta property="og:title" content="Open">)";
    const QByteArray longest(maxTitleLength, 'x');
    // What stands in a title that does not end is its text.
    expect({{"<title>Plain" + og, none}, {og + "<title>Plain", u"Open"_s}});
    expect({
        {withTitle("Plain", og), u"Open"_s},
        {"<head><title>Plain</title>" + og, u"Open"_s},
        {withTitle("P", R"(<META PROPERTY="dc:title OG:Title" CONTENT="Both">)"), u"Both"_s},
        {withTitle("P", og + "<meta property=og:title content=2>"), u"Open"_s},
        {withTitle("P", "<meta name=og:title content=Named>"), u"Named"_s},
        {withTitle("Plain", R"(<meta property="og:title" content=" ">)"), u"Plain"_s},
        {withTitle("Plain", "<meta property=og:site_name content=S>"), u"Plain"_s},
        {withTitle("Plain", "<!-- " + og + " -->"), u"Plain"_s},
        {withTitle("Plain", "<script>'" + og + "'</script>"), u"Plain"_s},
        {withTitle("a &amp; b &lt;i&gt; &quot;c&quot; &eacute;&#8212;&#x1F600;"), u"a & b <i> \"c\" é—😀"_s},
        {withTitle("P", R"(<meta property=og:title content="A &amp; B &#39;c&#39;">)"), u"A & B 'c'"_s},
        {withTitle("P", R"(<meta property=og:title content="Q&#A &#xD800; &#99999999999; &#x2d;">)"),
         u"Q&#A &#xD800; &#99999999999; -"_s},
        {withTitle("AT&T & &nonsense; R&D"), u"AT&T & &nonsense; R&D"_s},
        {withTitle("don&#146;t &#150; wait&#133;"), u"don’t – wait…"_s},
        {withTitle("\n\t a\r\n  b &nbsp; c\f "), u"a b c"_s},
        {withTitle("a&#1;\x1b[31mb\x7f"), u"a&#1;[31mb"_s},
        {withTitle("P") + "<meta property=og:title content=Op", u"P"_s},
        {withTitle("List<int> <b>x</b>"), u"List<int> <b>x</b>"_s},
        {"<html><head></head><body><h1>Title</h1></body></html>", none},
        {withTitle(" &#32; "), none},
        {"<body><svg><title>Icon</title></svg></body>", none},
        {"<template><title>Later</title></template>", none},
        {withTitle("Real", "<!-- <title>Old</title> -->"), u"Real"_s},
        {withTitle("Real", "<script>var a = '<title>Old</title>';</script>"), u"Real"_s},
        {withTitle("First</title><title>Second"), u"First"_s},
        {"<titles>No</titles>", none},
        {"<TITLE lang=en >Bare</TITLE\n>", u"Bare"_s},
        {"<p>Hello<div><title>Late</title>", u"Late"_s},
        {"<html <head =\"><meta <title>Broken</title", none},
        {"<head><link><<>><title>Kept</title><p></i></div>", u"Kept"_s},
        {"<title>A</titles>b</TiTle/>", u"A</titles>b"_s},
        {withTitle("a\0b"_ba, "<\0>"_ba), u"a\uFFFDb"_s},
        {withTitle(longest), QString::fromLatin1(longest)},
        {withTitle(longest + 'x'), none},
        {withTitle("Short", "<meta property=og:title content=" + longest + "x>"), u"Short"_s},
    });
}

void HtmlTitleTest::decodesThePage()
{
    const QByteArray html = "text/html";
    const QByteArray e1 = "caf\xe9";     // windows-1252
    const QByteArray e8 = "caf\xc3\xa9"; // UTF-8
    const QString cafe = u"café"_s;
    const QByteArray mark = "\xef\xbb\xbf";
    const auto meta = [](const QByteArray& label) { return "<meta charset=\"" + label + "\">"; };
    const QByteArray equiv = R"(<META content="text/html; charset='koi8-r'" http-equiv="Content-Type">)";
    const std::tuple<QByteArray, QByteArray, QString> pages[] = {
        {withTitle(e1), "text/html; charset=ISO-8859-1", cafe},
        {withTitle(e1), "text/html; x=charset; Charset = \"latin1\"; y=z", cafe},
        {withTitle(e8, meta("koi8-r")), utf8, cafe},
        {mark + withTitle(e8), "text/html; charset=koi8-r", cafe},
        {"\xff\xfe" + utf16(u"<title>café</title>"_s), utf8, cafe},
        {utf16(u"<title>café</title>"_s), "text/html;charset=utf-16", cafe},
        {withTitle("\xcd\xc9\xd2", equiv), html, u"мир"_s},
        {"<meta property=og:title content=\xcd\xc9\xd2>" + meta("koi8-r"), html, u"мир"_s},
        {withTitle("\x93\xfa\x96\x7b", QByteArray(5000, ' ') + meta("shift_jis")), html, u"日本"_s},
        {"<title>" + e1 + "</title><body>" + meta("koi8-r"), html, cafe},
        {withTitle(e8, meta("utf-16")), html, cafe},
        {withTitle("\xcd\xc9\xd2", meta("koi8-r")), "text/html; charset=klingon", u"мир"_s},
        {withTitle(e8, meta("klingon")), html, cafe},
        {withTitle("a+AD4-"), "text/html; charset=utf-7", u"a+AD4-"_s},
        {withTitle(e8) + "\xf0\x9f\x98", html, cafe},
        {withTitle(e1 + " \x80"), html, u"café €"_s},
        {withTitle(e1 + '!'), utf8, u"caf\uFFFD!"_s},
        {withTitle(e8), "text/html; charset=latin1", u"cafÃ©"_s},
        {withTitle("\xd6\xd0\xce\xc4", meta("gb2312")), html, u"中文"_s},
        {withTitle("\x1b$BF|K\\\x1b(B", meta("iso-2022-jp")), html, u"日本"_s},
        {withTitle("\xfe", meta("iso-8859-9")), html, u"ş"_s},
    };
    for (const auto& [page, contentType, title] : pages)
        QVERIFY2(htmlTitle(page, contentType) == title, page.left(200).constData());
}

void HtmlTitleTest::knowsWhenItIsSettled()
{
    const std::pair<QByteArray, bool> pages[] = {
        {"<head><title>T</title>", false},
        {"<head><title>T</title></head>", true},
        {"<title>T</title><p>", true},
        {"<head><meta property=og:title content=O>", false},
        {"<head><meta property=og:title content=O></head>", true},
        {"<head></head><body><p>", false},
        {"<title>T</title><script>'</head><body>'", false},
    };
    for (const auto& [page, isSettled] : pages)
        QVERIFY2(isTitleSettled(page, utf8) == isSettled, page.constData());
}

void HtmlTitleTest::answersAnyCut()
{
    // Each with where the title is whole, at the latest.
    const std::pair<QByteArray, QByteArray> pages[] = {
        {withTitle("A &amp; B", R"(<meta charset="utf-8"><svg><title>x</title></svg>)"), "</head"},
        {R"(<meta content="A &amp; B" property=og:title><p>)", "<p>"},
        {R"(<meta property="og:title" name="a>b" content="A &amp; B"><p>)", "<p>"},
        {"<meta name='>' property=og:title content=A&#32;&amp;&#32;B><p>", "<p>"},
    };
    for (const auto& [page, end] : pages) {
        const qsizetype whole = page.lastIndexOf(end);
        for (qsizetype size = 0; size <= page.size(); ++size) {
            const QString title = htmlTitle(page.first(size), {}).value_or(QString());
            // All of it or nothing.
            QVERIFY2(title == u"A & B"_s || (title.isNull() && size < whole), page.first(size).constData());
        }
    }
}

void HtmlTitleTest::boundsItsWork()
{
    const std::pair<QByteArray, bool> fillings[] = {
        {"<a><i>"_ba.repeated(80000), false}, {"<div>"_ba.repeated(60000) + "</p>"_ba.repeated(60000), false},
        {"<p>text"_ba.repeated(60000), true}, {"&amp;"_ba.repeated(100000), true},
        {QByteArray(500000, '<'), true},      {"</title>"_ba.repeated(60000), true},
    };
    for (const auto& [filling, isFound] : fillings)
        QCOMPARE(htmlTitle("<body>" + filling + "<title>Deep</title>", {}).has_value(), isFound);
}

QTEST_APPLESS_MAIN(HtmlTitleTest)
#include "HtmlTitleTest.moc"
