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
    const QMap<ClipType, QStringList> entries{
        {ClipType::text, {u"{}"_s, u"aGVsbG8="_s, u"%41"_s, u"1700000000"_s, u"a.e30.c"_s}},
        {ClipType::link, {u"https://a.b/?gclid=1"_s}},
        {ClipType::color, {u"#fff"_s}},
        {ClipType::code, {u"[]"_s}},
        {ClipType::image, {u"/a/b.png"_s}},
        {ClipType::file, {u"/a/b"_s}},
    };
    QSet<QString> labels;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        for (const QString& content : entry.value())
            for (const SmartAction& action : SmartActions::actions({{}, entry.key(), content, {}, {}, 0, false}))
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
