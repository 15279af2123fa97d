#include "PanelFixture.h"

#include "DrawnButton.h"
#include "HistoryList.h"
#include "HoverTip.h"
#include "InlineMenu.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QWindow>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class FloatingPanelTest final : public QObject
{
    Q_OBJECT
private slots:
    void takesAndReturnsTheKeyboardOnce();
    void marginIsNotPartOfThePanel();
    void insistsOnItsPlaceOnce();
    void composingKeepsItsKeys();
    void fieldPastesWhatIsThereAlready();
    void caretDecidesWhetherArrowsLeaveTheField();
    void menusAreInside();
    void closesUnderATip();
};

void FloatingPanelTest::takesAndReturnsTheKeyboardOnce()
{
    PanelFixture f;
    QSignalSpy willClose(&f.panel, &FloatingPanel::willClose);
    QSignalSpy closed(&f.panel, &FloatingPanel::closed);
    bool visibleBefore = false;
    connect(&f.panel, &FloatingPanel::willClose, &f.panel, [&] {
        visibleBefore = f.panel.isVisible();
        f.panel.dismiss();
    });
    f.panel.dismiss();
    QCOMPARE(willClose.size(), 0);
    QVERIFY(f.open());
    f.panel.dismiss();
    f.panel.close();
    QCOMPARE(willClose.size(), 1);
    QCOMPARE(closed.size(), 1);
    QVERIFY(visibleBefore && !f.panel.isVisible());
    QVERIFY(f.open());
    f.panel.close(); // as a window manager does
    QCOMPARE(f.windows.calls,
             QStringList({u"prepare"_s, u"rememberFrontWindow"_s, u"activate"_s, u"restoreFrontWindow"_s,
                          u"rememberFrontWindow"_s, u"activate"_s, u"restoreFrontWindow"_s}));
}

void FloatingPanelTest::marginIsNotPartOfThePanel()
{
    PanelFixture f;
    QVERIFY(f.open());
    const QRect panel(60, 40, Theme::panelWidth, Theme::panelHeight);
    const auto card = [&] { return QRect(f.view()->mapToGlobal(QPoint(0, 0)), f.view()->size()); };
    QCOMPARE(card(), panel);
    QVERIFY(f.panel.frameGeometry().contains(panel.adjusted(-20, -20, 20, 20)));
    // A compositor that stops takes shadow and margin with it.
    f.windows.setCompositing(false);
    QTRY_COMPARE(f.panel.frameGeometry(), panel);
    QTRY_COMPARE(card(), panel);
    QCOMPARE(f.colorAt({0, 0}), QColor(Theme::outline));
    QCOMPARE(f.colorAt({1, 1}), QColor(Theme::panel));
    f.windows.setCompositing(true);
    QTRY_COMPARE(card(), panel);
    QVERIFY(f.colorAt({0, 0}) != QColor(Theme::outline));
}

void FloatingPanelTest::closesUnderATip()
{
    PanelFixture f;
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    const auto buttons = f.panel.findChildren<DrawnButton*>();
    for (DrawnButton* button : buttons) { // the one that is hidden first takes the tip with it
        const QPointF place(button->controlRect().center());
        QHoverEvent arrival(QEvent::HoverEnter, place, place, place);
        if (button->isVisible())
            QCoreApplication::sendEvent(button, &arrival);
    }
    QTRY_VERIFY(f.panel.findChild<HoverTip*>() != nullptr);
    f.panel.dismiss();
    QTRY_VERIFY(f.panel.findChild<HoverTip*>() == nullptr);
}

void FloatingPanelTest::insistsOnItsPlaceOnce()
{
    PanelFixture f;
    QVERIFY(f.open());
    const QPoint place = f.panel.pos();
    const QPoint besideAFrame = place + QPoint(2, 22);
    f.panel.move(besideAFrame); // as a window manager does
    QTRY_COMPARE(f.panel.pos(), place);
    f.panel.move(besideAFrame);
    QTRY_COMPARE(f.panel.windowHandle()->position(), besideAFrame);
    QCOMPARE(f.panel.pos(), besideAFrame);
}

void FloatingPanelTest::composingKeepsItsKeys()
{
    PanelFixture f;
    f.fillTexts({u"one"_s, u"two"_s});
    QVERIFY(f.open());
    QInputMethodEvent composing(u"ni"_s, {});
    QCoreApplication::sendEvent(f.view()->activeField(), &composing);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_End, Qt::Key_Escape})
        f.press(key);
    f.press(Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(f.closeRequests, 0);
    QVERIFY(f.panel.isVisible());
    QCOMPARE(f.selected(), u"one"_s);
    QVERIFY(!f.model.focus().has_value() && !f.model.cmdkOpen());
    QInputMethodEvent committed;
    committed.setCommitString(u"t"_s);
    QCoreApplication::sendEvent(f.view()->activeField(), &committed);
    QCOMPARE(f.model.query(), u"t"_s);
    f.press(Qt::Key_Return);
    QCOMPARE(f.closeRequests, 1);
    // What is not finished is given up with the panel.
    QCoreApplication::sendEvent(f.view()->activeField(), &composing);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other, patience));
    QVERIFY(f.open());
    QTRY_VERIFY(f.view()->activeField()->hasFocus());
    f.press(Qt::Key_Return);
    QCOMPARE(f.closeRequests, 2);
}

void FloatingPanelTest::fieldPastesWhatIsThereAlready()
{
    PanelFixture f;
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    QGuiApplication::clipboard()->setText(u"of the toolkit"_s);
    f.pasteboard.setString("deploy");
    f.press(Qt::Key_V, Qt::ControlModifier);
    f.press(Qt::Key_Insert, Qt::ShiftModifier);
    QTest::mouseClick(f.view()->activeField(), Qt::MiddleButton);
    QCOMPARE(f.model.query(), u"deploydeploy"_s);
    f.pasteboard.setString(QByteArray(50'000'000, 'x'));
    f.press(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(f.model.query().size() < 10'000);
}

void FloatingPanelTest::menusAreInside()
{
    QAction first(u"First"_s);
    QAction off(u"Off"_s);
    off.setEnabled(false);
    QAction last(u"Last"_s);
    QSignalSpy chosen(&last, &QAction::triggered);
    PanelFixture f;
    f.programMenu = {&first, &off, &last};
    f.fillTexts({u"one"_s, u"two"_s});
    QVERIFY(f.open());
    const auto current = [&f] {
        const auto* menu = f.view()->findChild<InlineMenu*>();
        return menu && menu->isVisible() ? menu->current() : QString();
    };
    f.press(Qt::Key_F10);
    QCOMPARE(current(), u"First"_s);
    f.press(Qt::Key_Up);
    QCOMPARE(current(), u"Last"_s);
    f.press(Qt::Key_X); // nobody else's key
    f.press(Qt::Key_Return);
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(f.model.query() + current(), QString());

    const auto* list = f.view()->findChild<HistoryList*>();
    QTest::mouseClick(list->viewport(), Qt::RightButton, {}, {40, Theme::rowHeight + 8});
    QCOMPARE(f.selected(), u"two"_s);
    QCOMPARE(current(), u"Paste"_s);
    f.press(Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(f.model.visible().first().content.toString(), u"two"_s);
    f.press(Qt::Key_Menu);
    QCOMPARE(current(), u"Paste"_s);
    QTest::mouseClick(f.view()->findChildren<InlineMenu*>().last(), Qt::LeftButton, {}, {600, 8});
    QCOMPARE(current(), QString());
    f.press(Qt::Key_F10, Qt::ShiftModifier);
    f.press(Qt::Key_Escape);
    QVERIFY(f.panel.isVisible() && current().isEmpty());
}

void FloatingPanelTest::caretDecidesWhetherArrowsLeaveTheField()
{
    PanelFixture f;
    f.fillTexts({u"one two"_s});
    QVERIFY(f.open());
    f.type(u"one"_s);
    f.press(Qt::Key_Left);
    QVERIFY(!f.model.focus().has_value());
    QCOMPARE(f.view()->activeField()->cursorPosition(), 2);
    f.press(Qt::Key_Left, Qt::ShiftModifier);
    f.press(Qt::Key_C, Qt::ControlModifier); // what is marked there, not the entry
    QCOMPARE(f.pasteboard.writes.last().string, QByteArray("n"));
    f.press(Qt::Key_Right); // to the end of what is marked
    f.press(Qt::Key_Right);
    QCOMPARE(f.view()->activeField()->cursorPosition(), 3);
    f.press(Qt::Key_Right);
    QVERIFY(f.model.focus().has_value());
    f.press(Qt::Key_Escape);
    QVERIFY(!f.model.focus().has_value());
    QVERIFY(f.panel.isVisible());
}

QTEST_MAIN(FloatingPanelTest)

#include "FloatingPanelTest.moc"
