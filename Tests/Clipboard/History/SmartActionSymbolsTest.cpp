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
    // Some of these offer nothing in one type, but together they offer the whole catalogue.
    QSet<QString> labels;
    for (const ClipType type : allClipTypes)
        for (const auto& content :
             {u"{}"_s, u"aGVsbG8="_s, u"%41"_s, u"1700000000"_s, u"a.e30.c"_s, u"https://a.b/?gclid=1"_s})
            for (const SmartAction& action : SmartActions::actions({{}, type, content, {}, {}, 0, false}))
                labels.insert(action.label);
    QCOMPARE(labels.size(), 26);
    for (const QString& label : std::as_const(labels)) {
        QVERIFY2(SmartActionSymbols::name(label) != u"doc.on.doc"_s, qPrintable(label));
        const QByteArray drawing = SmartActionSymbols::iconName(label).toLatin1();
        QVERIFY2(!tintedPixmap({QLatin1String(drawing)}, 1).isNull(), qPrintable(label));
    }
}

QTEST_MAIN(SmartActionSymbolsTest)

#include "SmartActionSymbolsTest.moc"
