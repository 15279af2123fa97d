#include "History/TypeDetector.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class TypeDetectorTest final : public QObject
{
    Q_OBJECT
private slots:
    void classifies_data();
    void classifies();
};

void TypeDetectorTest::classifies_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ClipType>("expected");
    const auto rows = [](ClipType expected, std::initializer_list<std::pair<const char*, QString>> texts) {
        for (const auto& [name, text] : texts)
            QTest::newRow(name) << text << expected;
    };

    rows(ClipType::color, {
                              {"three digits", u"#abc"_s},
                              {"six digits and white space", u"\u00A0 #A1b2C3\n"_s},
                              {"eight digits", u"#A1b2C3d4"_s},
                          });
    rows(ClipType::link, {
                             {"white space around", u"\n https://example.org/a?b#c \t"_s},
                             {"braces", u"https://example.org/{a};"_s},
                             {"IPv6", u"http://[::ffff:1.2.3.4]:/"_s},
                             {"address of the future", u"http://[v1F.a:b]"_s},
                             {"no host of DNS", u"https://-a-..b~$*,c+%20d"_s + QString(70, u'x') + u"/"_s},
                             {"any port", u"https://me:@example.org:99999"_s},
                             {"international", u"https://m\u00FCller.de/\u4E2D"_s},
                             {"www and two labels", u"www.x.y://"_s},
                             {"long", u"https://example.org/"_s + QString(300'000, u'x')},
                         });
    rows(ClipType::code, {
                             {"keyword and semicolon", u"return x;"_s},
                             {"braces and arrow", u"{ a -> b }"_s},
                             {"keyword between underscores", u"my_let_2 {"_s},
                             {"brace at the end before white space", u"class A {\n\n"_s},
                             {"signs just inside the sample",
                              QString(4094, u' ').replace(0, 9, u"return it"_s) + u"=>"_s + QString(100, u'x')},
                         });
    rows(ClipType::text,
         {
             {"empty", QString()},
             {"four digits", u"#abcd"_s},
             {"upper-case scheme", u"HTTPS://example.org"_s},
             {"port alone", u"https://:80/"_s},
             {"wide space in a link", u"https://example.org/a\u3000b"_s},
             {"space at the end of a long link", u"https://example.org/"_s + QString(300'000, u'x') + u" y"_s},
             {"endless authority", u"https://"_s + QString(100'000, u'x')},
             {"one brace of two", u"{ a -> b"_s},
             {"letters beyond the BMP", u"\U00010400let x;"_s},
             {"port that is no number", u"https://example.org:8o/"_s},
             {"sign that no host has", u"https://a|b/"_s},
             {"half an escape in a host", u"https://a%2/"_s},
             {"two at signs", u"https://a@b@c/"_s},
             {"no address in brackets", u"https://[::1::2]/"_s},
             {"text after brackets", u"https://[::1]a/"_s},
             {"other scheme", u"ftp://example.org"_s},
             {"www and one label", u"www.x"_s},
             {"space after www", u"www.x.y z"_s},
             {"many keywords count once", u"func def class let"_s},
             {"keyword in capitals", u"Return x;"_s},
             {"keyword inside a word", u"returns x;"_s},
             {"accented keyword", u"let\u0301 x;"_s},
             {"braces alone", u"{ }"_s},
             {"both arrows count once", u"a -> b => c"_s},
             {"sentence and semicolon", u"And so it went;"_s},
             {"semicolon before a carriage return", u"return\r\nx;\r\ny"_s},
             {"signs beyond the sample", QString(99'980, u'x') + u" => { return 1; }"_s},
             {"signs over the sample's edge", u"return it"_s + QString(4086, u' ') + u"=>"_s + QString(100, u'x')},
         });
}

void TypeDetectorTest::classifies()
{
    QFETCH(QString, text);
    QFETCH(ClipType, expected);
    QCOMPARE(TypeDetector::classify(text), expected);
    if (expected == ClipType::code)
        QVERIFY(TypeDetector::looksLikeCode(text));
}

QTEST_GUILESS_MAIN(TypeDetectorTest)
#include "TypeDetectorTest.moc"
