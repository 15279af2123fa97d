#include "HtmlTitle.h"
#include "TitleText.h"

#include <QStringEncoder>
#include <QTest>

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

} // namespace

class HtmlTitleTest final : public QObject
{
    Q_OBJECT
private slots:
    void findsTheTitle_data();
    void findsTheTitle();
    void decodesThePage_data();
    void decodesThePage();
    void knowsWhenItIsSettled_data();
    void knowsWhenItIsSettled();
    void answersAnyCut_data();
    void answersAnyCut();
    void boundsItsWork_data();
    void boundsItsWork();
};

void HtmlTitleTest::findsTheTitle_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("title"); // null: none
    const QString none;
    const QByteArray og = R"(<meta property="og:title" content="Open">)";

    QTest::newRow("plain") << withTitle("Plain") << u"Plain"_s;
    QTest::newRow("og first") << withTitle("Plain", og) << u"Open"_s;
    QTest::newRow("og after") << QByteArray("<head><title>Plain</title>" + og) << u"Open"_s;
    QTest::newRow("og among names") << withTitle("P", R"(<META PROPERTY="dc:title OG:Title" CONTENT="Both">)")
                                    << u"Both"_s;
    QTest::newRow("first of two og") << withTitle("P", og + "<meta property=og:title content=2>") << u"Open"_s;
    QTest::newRow("og as name") << withTitle("P", "<meta name=og:title content=Named>") << u"Named"_s;
    QTest::newRow("og empty") << withTitle("Plain", R"(<meta property="og:title" content=" ">)") << u"Plain"_s;
    QTest::newRow("og without content") << withTitle("Plain", "<meta property=og:title>") << u"Plain"_s;
    QTest::newRow("another og name") << withTitle("Plain", "<meta property=og:site_name content=S>") << u"Plain"_s;
    QTest::newRow("og in a comment") << withTitle("Plain", "<!-- " + og + " -->") << u"Plain"_s;
    QTest::newRow("og in a script") << withTitle("Plain", "<script>'" + og + "'</script>") << u"Plain"_s;

    QTest::newRow("entities") << withTitle("a &amp; b &lt;i&gt; &quot;c&quot; &eacute;&#8212;&#x1F600;")
                              << u"a & b <i> \"c\" é—😀"_s;
    QTest::newRow("og entities") << withTitle("P", R"(<meta property=og:title content="A &amp; B &#39;c&#39;">)")
                                 << u"A & B 'c'"_s;
    QTest::newRow("no numbers") << withTitle(
                                       "P", R"(<meta property=og:title content="Q&#A &#xD800; &#99999999999; &#x2d;">)")
                                << u"Q&#A &#xD800; &#99999999999; -"_s;
    QTest::newRow("ampersands that are none") << withTitle("AT&T & &nonsense; R&D") << u"AT&T & &nonsense; R&D"_s;
    QTest::newRow("old numbers") << withTitle("don&#146;t &#150; wait&#133;") << u"don’t – wait…"_s;
    QTest::newRow("white space") << withTitle("\n\t a\r\n  b &nbsp; c\f ") << u"a b c"_s;
    QTest::newRow("controls") << withTitle("a&#1;\x1b[31mb\x7f") << u"a&#1;[31mb"_s;
    QTest::newRow("control between blanks") << withTitle("a \x01 b") << u"a b"_s;
    QTest::newRow("controls between blanks") << withTitle("\x1b a \x1b b") << u"a b"_s;
    QTest::newRow("tag cut by the end") << withTitle("P") + "<meta property=og:title content=Op" << u"P"_s;
    QTest::newRow("brackets") << withTitle("[a](b) ]]> [") << u"[a](b) ]]> ["_s;
    QTest::newRow("quotes") << withTitle("say \"hi\" & 'bye'") << u"say \"hi\" & 'bye'"_s;
    QTest::newRow("markup is text") << withTitle("List<int> <b>x</b>") << u"List<int> <b>x</b>"_s;

    QTest::newRow("no markup") << QByteArray("plain text") << none;
    QTest::newRow("empty page") << QByteArray() << none;
    QTest::newRow("no title") << QByteArray("<html><head></head><body><h1>Title</h1></body></html>") << none;
    QTest::newRow("empty title") << withTitle(" &#32; ") << none;
    QTest::newRow("of a picture") << QByteArray("<body><svg><title>Icon</title></svg></body>") << none;
    QTest::newRow("after a picture's") << withTitle("Page", "<svg><title>Icon</title></svg>") << u"Page"_s;
    QTest::newRow("of a template") << QByteArray("<template><title>Later</title></template>") << none;
    QTest::newRow("in a comment") << withTitle("Real", "<!-- <title>Old</title> -->") << u"Real"_s;
    QTest::newRow("in a script") << withTitle("Real", "<script>var a = '<title>Old</title>';</script>") << u"Real"_s;
    QTest::newRow("the first of two") << withTitle("First</title><title>Second") << u"First"_s;
    QTest::newRow("like a title") << QByteArray("<titles>No</titles>") << none;
    QTest::newRow("binary") << "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\xff\xfe<\0>"_ba << none;

    QTest::newRow("bare") << QByteArray("<TITLE lang=en >Bare</TITLE\n>") << u"Bare"_s;
    QTest::newRow("in the body") << QByteArray("<p>Hello<div><title>Late</title>") << u"Late"_s;
    QTest::newRow("broken tags") << QByteArray("<html <head =\"><meta <title>Broken</title") << none;
    QTest::newRow("unclosed head") << QByteArray("<head><link><<>><title>Kept</title><p></i></div>") << u"Kept"_s;
    QTest::newRow("end tag in capitals") << QByteArray("<title>A</titles>b</TiTle/>") << u"A</titles>b"_s;
    QTest::newRow("a zero within") << withTitle("a\0b"_ba, "<\0>"_ba) << u"a\uFFFDb"_s;

    const QByteArray longest(maxTitleLength, 'x');
    QTest::newRow("longest") << withTitle(longest) << QString::fromLatin1(longest);
    QTest::newRow("too long") << withTitle(longest + 'x') << none;
    QTest::newRow("og too long") << withTitle("Short", "<meta property=og:title content=" + longest + "x>")
                                 << u"Short"_s;
}

void HtmlTitleTest::findsTheTitle()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, title);
    const std::optional<QString> found = htmlTitle(page, utf8);
    QCOMPARE(found.value_or(QString()), title);
    QCOMPARE(found.has_value(), !title.isNull());
}

void HtmlTitleTest::decodesThePage_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("contentType");
    QTest::addColumn<QString>("title");
    const QByteArray html = "text/html";
    const QByteArray e1 = "caf\xe9";     // windows-1252
    const QByteArray e8 = "caf\xc3\xa9"; // UTF-8
    const QString cafe = u"café"_s;
    const QByteArray mark = "\xef\xbb\xbf";
    const auto meta = [](const QByteArray& label) { return "<meta charset=\"" + label + "\">"; };
    const QByteArray equiv = R"(<META content="text/html; charset='koi8-r'" http-equiv="Content-Type">)";

    QTest::newRow("header") << withTitle(e1) << QByteArray("text/html; charset=ISO-8859-1") << cafe;
    QTest::newRow("quoted") << withTitle(e1) << QByteArray("text/html; x=charset; Charset = \"latin1\"; y=z") << cafe;
    QTest::newRow("header beats meta") << withTitle(e8, meta("koi8-r")) << utf8 << cafe;
    QTest::newRow("mark beats header") << QByteArray(mark + withTitle(e8)) << QByteArray("text/html; charset=koi8-r")
                                       << cafe;
    QTest::newRow("UTF-16 by mark") << QByteArray("\xff\xfe" + utf16(u"<title>café</title>"_s)) << utf8 << cafe;
    QTest::newRow("UTF-16 by header") << utf16(u"<title>café</title>"_s) << QByteArray("text/html;charset=utf-16")
                                      << cafe;
    QTest::newRow("meta") << withTitle("\xcd\xc9\xd2", meta("KOI8-R")) << html << u"мир"_s;
    QTest::newRow("http-equiv") << withTitle("\xcd\xc9\xd2", equiv) << html << u"мир"_s;
    QTest::newRow("meta after og") << QByteArray("<meta property=og:title content=\xcd\xc9\xd2>" + meta("koi8-r"))
                                   << html << u"мир"_s;
    QTest::newRow("meta far down") << withTitle("\x93\xfa\x96\x7b", QByteArray(5000, ' ') + meta("shift_jis")) << html
                                   << u"日本"_s;
    QTest::newRow("meta in the body") << QByteArray("<title>" + e1 + "</title><body>" + meta("koi8-r")) << html << cafe;
    QTest::newRow("meta says UTF-16") << withTitle(e8, meta("utf-16")) << html << cafe;
    QTest::newRow("unknown header, meta")
        << withTitle("\xcd\xc9\xd2", meta("koi8-r")) << QByteArray("text/html; charset=klingon") << u"мир"_s;
    QTest::newRow("unknown everywhere") << withTitle(e8, meta("klingon")) << html << cafe;
    QTest::newRow("UTF-7 is none") << withTitle("a+AD4-") << QByteArray("text/html; charset=utf-7") << u"a+AD4-"_s;
    QTest::newRow("guessed UTF-8") << withTitle(e8) << html << cafe;
    QTest::newRow("guessed UTF-8, cut off") << QByteArray(withTitle(e8) + "\xf0\x9f\x98") << html << cafe;
    QTest::newRow("guessed windows-1252") << withTitle(e1 + " \x80") << html << u"café €"_s;
    QTest::newRow("no header at all") << withTitle(e8) << QByteArray() << cafe;
    QTest::newRow("wrong: UTF-8") << withTitle(e1 + '!') << utf8 << u"caf\uFFFD!"_s;
    QTest::newRow("wrong: windows-1252") << withTitle(e8) << QByteArray("text/html; charset=latin1") << u"cafÃ©"_s;
    QTest::newRow("GBK") << withTitle("\xd6\xd0\xce\xc4", meta("gb2312")) << html << u"中文"_s;
    QTest::newRow("Big5") << withTitle("\xa4\xa4\xa4\xe5", meta("big5")) << html << u"中文"_s;
    QTest::newRow("EUC-KR") << withTitle("\xc7\xd1\xb1\xdb", meta("euc-kr")) << html << u"한글"_s;
    QTest::newRow("EUC-JP") << withTitle("\xc6\xfc\xcb\xdc", meta("euc-jp")) << html << u"日本"_s;
    QTest::newRow("ISO-2022-JP") << withTitle("\x1b$BF|K\\\x1b(B", meta("iso-2022-jp")) << html << u"日本"_s;
    QTest::newRow("windows-1254") << withTitle("\xfe", meta("iso-8859-9")) << html << u"ş"_s;
}

void HtmlTitleTest::decodesThePage()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, contentType);
    QFETCH(QString, title);
    QCOMPARE(htmlTitle(page, contentType).value_or(QString()), title);
}

void HtmlTitleTest::knowsWhenItIsSettled_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<bool>("settled");
    QTest::newRow("title alone") << QByteArray("<head><title>T</title>") << false;
    QTest::newRow("head ended") << QByteArray("<head><title>T</title></head>") << true;
    QTest::newRow("body begun") << QByteArray("<title>T</title><p>") << true;
    QTest::newRow("og title") << QByteArray("<head><meta property=og:title content=O>") << false;
    QTest::newRow("og title, head ended") << QByteArray("<head><meta property=og:title content=O></head>") << true;
    QTest::newRow("head without one") << QByteArray("<head></head><body><p>") << false;
    QTest::newRow("end of a head in a script") << QByteArray("<title>T</title><script>'</head><body>'") << false;
}

void HtmlTitleTest::knowsWhenItIsSettled()
{
    QFETCH(QByteArray, page);
    QTEST(isTitleSettled(page, utf8), "settled");
}

void HtmlTitleTest::answersAnyCut_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("end"); // where the title is whole, at the latest
    QTest::newRow("title") << withTitle("A &amp; B", R"(<meta charset="utf-8"><svg><title>x</title></svg>)")
                           << QByteArray("</head");
    QTest::newRow("og") << QByteArray(R"(<meta content="A &amp; B" property=og:title><p>)") << QByteArray("<p>");
    QTest::newRow("og, bracket") << QByteArray(R"(<meta property="og:title" name="a>b" content="A &amp; B"><p>)")
                                 << QByteArray("<p>");
    QTest::newRow("og, bare") << QByteArray("<meta name='>' property=og:title content=A&#32;&amp;&#32;B><p>")
                              << QByteArray("<p>");
}

void HtmlTitleTest::answersAnyCut()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, end);
    const qsizetype whole = page.lastIndexOf(end);
    for (qsizetype size = 0; size <= page.size(); ++size) {
        const QString title = htmlTitle(page.first(size), {}).value_or(QString());
        // All of it or nothing.
        QVERIFY2(title == u"A & B"_s || (title.isNull() && size < whole), page.first(size).constData());
    }
}

void HtmlTitleTest::boundsItsWork_data()
{
    QTest::addColumn<QByteArray>("filling");
    QTest::addColumn<bool>("found");
    QTest::newRow("nested") << QByteArray("<a><i>").repeated(80000) << false;
    QTest::newRow("nested and mismatched")
        << QByteArray(QByteArray("<div>").repeated(60000) + QByteArray("</p>").repeated(60000)) << false;
    QTest::newRow("side by side") << QByteArray("<p>text").repeated(60000) << true;
    QTest::newRow("entities") << QByteArray("&amp;").repeated(100000) << true;
    QTest::newRow("open brackets") << QByteArray(500000, '<') << true;
    QTest::newRow("end tags") << QByteArray("</title>").repeated(60000) << true;
}

void HtmlTitleTest::boundsItsWork()
{
    QFETCH(QByteArray, filling);
    QFETCH(bool, found);
    QCOMPARE(htmlTitle("<body>" + filling + "<title>Deep</title>", {}).has_value(), found);
}

QTEST_APPLESS_MAIN(HtmlTitleTest)
#include "HtmlTitleTest.moc"
