#include "SmartActionSymbols.h"

#include "Actions/SmartActions.h"
#include "TintedIcon.h"

#include <QSet>
#include <QTest>

using namespace ClipboardCore;
using namespace Clipboard;
using namespace Qt::StringLiterals;

/// Every action that the catalogue can offer has a symbol, and every symbol a drawing.
class SmartActionSymbolsTest final : public QObject
{
    Q_OBJECT

private slots:
    void everyActionHasItsDrawing();
};

void SmartActionSymbolsTest::everyActionHasItsDrawing()
{
    // Together these offer the whole catalogue.
    const QList<std::pair<ClipType, QString>> entries{
        {ClipType::text, u"{}"_s},         {ClipType::text, u"aGVsbG8="_s}, {ClipType::text, u"%41"_s},
        {ClipType::text, u"1700000000"_s}, {ClipType::text, u"a.e30.c"_s},  {ClipType::link, u"https://a.b/?gclid=1"_s},
        {ClipType::color, u"#fff"_s},      {ClipType::code, u"[]"_s},       {ClipType::image, u"/a/b.png"_s},
        {ClipType::file, u"/a/b"_s},
    };
    QSet<QString> labels;
    for (const auto& [type, content] : entries) {
        ClipItem item;
        item.type = type;
        item.content = content;
        for (const SmartAction& action : SmartActions::actions(item))
            labels.insert(action.label);
    }
    QCOMPARE(labels.size(), 26);
    for (const QString& label : std::as_const(labels)) {
        QVERIFY2(SmartActionSymbols::name(label) != u"doc.on.doc"_s, qPrintable(label));
        const QByteArray drawing = SmartActionSymbols::iconName(label).toLatin1();
        QVERIFY2(!tintedPixmap({QLatin1String(drawing)}, 1).isNull(), qPrintable(label));
    }
}

QTEST_MAIN(SmartActionSymbolsTest)

#include "SmartActionSymbolsTest.moc"
