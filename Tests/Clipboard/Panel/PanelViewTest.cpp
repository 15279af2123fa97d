#include "PanelFixture.h"

#include "EmptyView.h"
#include "FilterChip.h"
#include "FilterChips.h"
#include "HistoryList.h"
#include "PreviewButton.h"

#include <QAbstractButton>
#include <QAccessible>

#include <algorithm>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;
using ClipboardCore::ItemAction;

class PanelViewTest final : public QObject
{
    Q_OBJECT
private slots:
    void framesHoldOnlyWhatIsOnScreen();
    void rowsStayPutWhileEntriesArrive();
    void chipsFilterAndTell();
    void manyEntriesLeaveRoomForAllChips();
    void focusMovesRingAndCaret();
    void buttonsActOnTheSelection();
    void rowsSpeak();
    void claimsNothingWhileItSearches();
    void hiddenPanelDoesNoWork();
};

namespace {

FilterChip* chip(const PanelFixture& f, std::optional<ClipType> type)
{
    const auto& chips = f.view()->findChild<FilterChips*>()->chips();
    return *std::ranges::find(chips, type, &FilterChip::type);
}

PreviewButton* button(const PanelFixture& f, ItemAction action)
{
    const auto buttons = f.view()->findChildren<PreviewButton*>();
    return *std::ranges::find(buttons, action, &PreviewButton::action);
}

int rowFrames(const PanelFixture& f)
{
    int count = 0;
    for (auto key = f.model.frames.keyBegin(); key != f.model.frames.keyEnd(); ++key)
        count += key->as<FocusKey::Row>() != nullptr ? 1 : 0;
    return count;
}

} // namespace

void PanelViewTest::framesHoldOnlyWhatIsOnScreen()
{
    PanelFixture f;
    f.fillTexts(f.numbered(40));
    QVERIFY(f.open());
    QCOMPARE(rowFrames(f), 9);
    QVERIFY(f.model.frames.contains(FocusKey::row(f.entry(8).id)));
    QVERIFY(!f.model.frames.contains(FocusKey::row(f.entry(9).id)));
    f.press(Qt::Key_End);
    QCOMPARE(rowFrames(f), 9);
    QVERIFY(!f.model.frames.contains(FocusKey::row(f.entry(0).id)));
    QCOMPARE(f.frame(FocusKey::row(f.entry(39).id)), QRect(8, 96 + 8 * 44, 224, 44));
}

void PanelViewTest::rowsStayPutWhileEntriesArrive()
{
    PanelFixture f;
    f.fillTexts(f.numbered(40));
    QVERIFY(f.open());
    const auto arrive = [&](const QString& text) {
        auto item = f.item(ClipType::text, text);
        item.createdAt = 2000;
        (void)f.store.add(item);
        f.model.refresh();
        f.view()->sync();
    };
    // At its top the list shows what is new, and the selection stays with its entry.
    arrive(u"new"_s);
    QCOMPARE(f.selected(), u"entry 0"_s);
    QCOMPARE(f.frame(FocusKey::row(f.entry(0).id)).top(), 96);
    QCOMPARE(f.frame(FocusKey::row(*f.model.selectedID())).top(), 96 + 44);
    // Further down nothing moves under the user's eyes.
    for (int i = 0; i < 20; ++i)
        f.press(Qt::Key_Down);
    const QString selected = f.selected();
    const QRect before = f.frame(FocusKey::row(*f.model.selectedID()));
    arrive(u"newer"_s);
    QCOMPARE(f.selected(), selected);
    QCOMPARE(f.frame(FocusKey::row(*f.model.selectedID())), before);
    QCOMPARE(f.colorAt(before.topLeft() + QPoint(4, 22)), QColor(Theme::rowSel));
}

void PanelViewTest::chipsFilterAndTell()
{
    PanelFixture f;
    f.fill({f.item(ClipType::text, u"text"_s), f.item(ClipType::link, u"https://a.example"_s),
            f.item(ClipType::link, u"https://b.example"_s)});
    QVERIFY(f.open());
    QVERIFY(chip(f, std::nullopt)->isChecked());
    QTest::mouseClick(chip(f, ClipType::link), Qt::LeftButton);
    QCOMPARE(f.model.filter(), std::optional(ClipType::link));
    QCOMPARE(f.visible().size(), 2);
    QVERIFY(chip(f, ClipType::link)->isChecked());
    QVERIFY(!chip(f, std::nullopt)->isChecked());
    QTest::mouseClick(chip(f, ClipType::link), Qt::LeftButton);
    QVERIFY(chip(f, ClipType::link)->isChecked());
    QCOMPARE(chip(f, ClipType::link)->accessibleName(), u"Links"_s);
    QVERIFY(chip(f, ClipType::link)->accessibleDescription().startsWith(u"2 "));
    QVERIFY(chip(f, ClipType::file)->accessibleDescription().startsWith(u"0 "));
}

void PanelViewTest::manyEntriesLeaveRoomForAllChips()
{
    PanelFixture f;
    QList<ClipboardCore::ClipItem> items;
    for (const ClipType type : ClipboardCore::allClipTypes) {
        for (int i = 0; i < 83; ++i)
            items.append(f.item(type, u"/%1/%2"_s.arg(int(type)).arg(i)));
    }
    f.fill(items);
    QVERIFY(f.open());
    const QRect last = f.frame(FocusKey::chip(ClipType::file));
    QVERIFY2(last.right() < Theme::panelWidth, qPrintable(QString::number(last.right())));
}

void PanelViewTest::focusMovesRingAndCaret()
{
    PanelFixture f;
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    const SearchField* field = f.view()->activeField();
    const QPoint caret = field->mapTo(f.view(), field->caretRect().topLeft().toPoint() + QPoint(0, 9));
    QCOMPARE(f.colorAt(caret), QColor(Theme::accent));
    f.press(Qt::Key_Up);
    QVERIFY(f.model.focus().has_value());
    const QRect frame = f.frame(*f.model.focus());
    const auto ring = [&] { return f.colorAt({frame.center().x(), frame.top() - 2}); };
    QCOMPARE(ring(), QColor(Theme::accent));
    QCOMPARE(f.colorAt(caret), QColor(Theme::panel)); // nor is the toolkit's own one there
    f.press(Qt::Key_Escape);
    QCOMPARE(ring(), QColor(Theme::panel));
    QCOMPARE(f.colorAt(caret), QColor(Theme::accent));
}

void PanelViewTest::buttonsActOnTheSelection()
{
    PanelFixture f;
    f.model.onAnnotate = [](const ClipboardCore::ClipItem&, const QImage&) {};
    f.fill({f.item(ClipType::text, u"one"_s), f.item(ClipType::text, u"two"_s),
            f.item(ClipType::image, u"/nowhere/picture.png"_s)});
    QVERIFY(f.open());
    QVERIFY(!f.model.frames.contains(FocusKey::button(ItemAction::annotate)));
    f.press(Qt::Key_End);
    QVERIFY(f.model.frames.contains(FocusKey::button(ItemAction::annotate)));
    f.press(Qt::Key_Home);
    QTest::mouseClick(button(f, ItemAction::pin), Qt::LeftButton);
    QVERIFY(f.model.selectedItem()->isPinned);
    QVERIFY(button(f, ItemAction::pin)->isChecked());
    QTest::mouseClick(button(f, ItemAction::pin), Qt::LeftButton);
    QVERIFY(!button(f, ItemAction::pin)->isChecked());
    QTest::mouseClick(button(f, ItemAction::copy), Qt::LeftButton);
    QCOMPARE(f.toasts.size(), 1);
    QTest::mouseClick(button(f, ItemAction::delete_), Qt::LeftButton);
    QCOMPARE(f.stored().size(), 2);
    QTest::mouseClick(button(f, ItemAction::paste), Qt::LeftButton);
    QCOMPARE(f.closeRequests, 1);
}

void PanelViewTest::rowsSpeak()
{
    PanelFixture f;
    auto item = f.item(ClipType::text, u"hello world"_s);
    item.sourceApp = u"Notes"_s;
    f.fill({f.item(ClipType::text, u"another"_s), item});
    QVERIFY(f.open());
    auto* list = QAccessible::queryAccessibleInterface(f.view()->findChild<HistoryList*>());
    QCOMPARE(list->childCount(), 2);
    QAccessibleInterface* row = list->child(1);
    const QString spoken = row->text(QAccessible::Name);
    QVERIFY2(spoken.startsWith(u"Text, hello world, from Notes, copied "), qPrintable(spoken));
    QVERIFY(!row->text(QAccessible::Description).isEmpty());
    QCOMPARE(row->role(), QAccessible::ListItem);
    QCOMPARE(row->parent(), list);
    QCOMPARE(list->indexOfChild(row), 1);
    const QRect place = f.frame(FocusKey::row(f.entry(1).id));
    QCOMPARE(row->rect(), QRect(f.view()->mapToGlobal(place.topLeft()), place.size()));
    QCOMPARE(list->childAt(row->rect().center().x(), row->rect().center().y()), row);
    QVERIFY(!row->state().selected && row->state().selectable && !row->state().offscreen);
    row->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(f.selected(), u"hello world"_s);
    QVERIFY(row->state().selected && row->state().focused);
    QCOMPARE(list->focusChild(), row);
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(f.closeRequests, 1); // it is pasted
    QCOMPARE(f.view()->activeField()->accessibleName(), u"Search clipboard…"_s);
    for (const auto* control : f.view()->findChildren<QAbstractButton*>())
        QVERIFY2(!control->accessibleName().isEmpty(), control->metaObject()->className());
}

void PanelViewTest::claimsNothingWhileItSearches()
{
    PanelFixture f;
    QVERIFY(f.open());
    (void)f.store.add(f.item(ClipType::text, QString(500'000, u'Ж') + u'z'));
    f.model.refresh();
    f.model.setQuery(u"z"_s); // a key would let time pass
    f.view()->sync();
    const auto* empty = f.view()->findChild<EmptyView*>();
    QVERIFY(f.model.isSearching() && f.visible().isEmpty());
    QVERIFY(!empty->isVisible());
    QTRY_COMPARE(f.visible().size(), 1);
    f.type(u"x"_s);
    QVERIFY(empty->isVisible());
}

void PanelViewTest::hiddenPanelDoesNoWork()
{
    PanelFixture f;
    f.fillTexts({u"one"_s});
    QVERIFY(f.open());
    f.panel.dismiss();
    const QAbstractItemModel* rows = f.view()->findChild<HistoryList*>()->model();
    f.fillTexts({u"two"_s});
    QCoreApplication::processEvents();
    QCOMPARE(rows->rowCount(), 1);
    QVERIFY(f.open());
    QCOMPARE(rows->rowCount(), 2);
}

QTEST_MAIN(PanelViewTest)

#include "PanelViewTest.moc"
