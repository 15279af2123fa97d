#include "PanelFixture.h"

#include "CommandCard.h"
#include "CommandRow.h"
#include "CommandSheet.h"

#include <QVariantAnimation>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class CommandSheetTest final : public QObject
{
    Q_OBJECT
private slots:
    void highlightsTheBestMatch();
    void fadesOut();
    void fitsASmallPanel();
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

} // namespace

void CommandSheetTest::highlightsTheBestMatch()
{
    PanelFixture f;
    f.catalogue = {f.action(u"Slugify"_s), f.action(u"QR code"_s), f.action(u"Copy RGB"_s), f.action(u"Copy HSL"_s)};
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    f.press(Qt::Key_K, Qt::ControlModifier);
    f.press(Qt::Key_Up);
    QCOMPARE(highlighted(f), u"Copy HSL"_s);
    f.type(u"co"_s);
    QTRY_COMPARE(highlighted(f), u"QR code"_s);
    auto* second = f.view()->findChildren<CommandRow*>().at(1);
    QTest::mouseMove(second, {20, 10});
    QTest::mouseMove(second, {22, 12});
    QTRY_COMPARE(highlighted(f), second->text());
}

void CommandSheetTest::fadesOut()
{
    PanelFixture f;
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    Motion::setReduced(false);
    const auto* sheet = f.view()->findChild<CommandSheet*>();
    for (int i = 0; i < 3; ++i) // opened, closed before it is seen, opened
        f.press(Qt::Key_K, Qt::ControlModifier);
    QTRY_COMPARE(sheet->findChild<QVariantAnimation*>()->state(), QAbstractAnimation::Stopped);
    f.model.setCmdkOpen(false); // a key would let time pass
    f.view()->sync();
    QVERIFY(sheet->isVisible());
    QVERIFY(f.view()->activeField()->hasFocus()); // the search field has the keyboard meanwhile
    QTRY_VERIFY(!sheet->isVisible());
}

void CommandSheetTest::fitsASmallPanel()
{
    PanelFixture f;
    for (int i = 1; i <= 12; ++i)
        f.catalogue.append(f.action(u"Action %1"_s.arg(i)));
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    f.panel.setPanelGeometry({60, 40, Theme::panelWidth, 300});
    f.press(Qt::Key_K, Qt::ControlModifier);
    const auto* card = f.view()->findChild<CommandCard*>();
    const QRect shown(card->mapTo(f.view(), card->cardRect().topLeft()), card->cardRect().size());
    QVERIFY(f.view()->rect().contains(shown));
    for (int i = 1; i <= 12; ++i) {
        QCOMPARE(highlighted(f), u"Action %1"_s.arg(i));
        f.press(Qt::Key_Down);
    }
    QCOMPARE(highlighted(f), u"Action 1"_s);
}

QTEST_MAIN(CommandSheetTest)

#include "CommandSheetTest.moc"
