#include "PanelFixture.h"

#include "CommandRow.h"
#include "CommandSheet.h"

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class CommandSheetTest final : public QObject
{
    Q_OBJECT
private slots:
    void highlightsTheBestMatch();
    void keepsTheHighlightInView();
};

namespace {

QString highlighted(const PanelFixture& f)
{
    const auto rows = f.view()->findChildren<CommandRow*>();
    for (const CommandRow* row : rows) {
        const QPoint inside = row->mapTo(f.view(), QPoint(4, CommandRow::height / 2));
        if (!row->visibleRegion().isEmpty() && f.colorAt(inside) == QColor(Theme::rowSel))
            return row->text();
    }
    return {};
}

CommandRow* commandRow(const PanelFixture& f, const QString& label)
{
    for (auto* row : f.view()->findChildren<CommandRow*>()) {
        if (row->text() == label)
            return row;
    }
    return nullptr;
}

} // namespace

void CommandSheetTest::highlightsTheBestMatch()
{
    PanelFixture f;
    f.catalogue = {f.action(u"Slugify"_s), f.action(u"QR code"_s), f.action(u"Copy RGB"_s), f.action(u"Copy HSL"_s)};
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    f.press(Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(highlighted(f), u"Slugify"_s);
    f.press(Qt::Key_Up);
    QCOMPARE(highlighted(f), u"Copy HSL"_s);
    f.type(u"co"_s);
    QTRY_COMPARE(highlighted(f), u"QR code"_s);
    QTest::mouseMove(commandRow(f, u"Copy RGB"_s), {20, 10});
    QTest::mouseMove(commandRow(f, u"Copy RGB"_s), {22, 12});
    QTRY_COMPARE(highlighted(f), u"Copy RGB"_s);
    f.press(Qt::Key_Return);
    QCOMPARE(f.effects.last().payload.toString(), u"Copy RGB"_s);
    f.press(Qt::Key_K, Qt::ControlModifier);
    f.type(u"zz"_s);
    QTRY_VERIFY(commandRow(f, u"Slugify"_s) == nullptr);
    f.press(Qt::Key_Return);
    QCOMPARE(f.effects.size(), 1);
    QVERIFY(!f.view()->findChild<CommandSheet*>()->isVisible());
}

void CommandSheetTest::keepsTheHighlightInView()
{
    PanelFixture f;
    for (int i = 1; i <= 12; ++i)
        f.catalogue.append(f.action(u"Action %1"_s.arg(i)));
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    f.press(Qt::Key_K, Qt::ControlModifier);
    for (int i = 1; i <= 12; ++i) {
        QCOMPARE(highlighted(f), u"Action %1"_s.arg(i));
        f.press(Qt::Key_Down);
    }
    QCOMPARE(highlighted(f), u"Action 1"_s);
}

QTEST_MAIN(CommandSheetTest)

#include "CommandSheetTest.moc"
