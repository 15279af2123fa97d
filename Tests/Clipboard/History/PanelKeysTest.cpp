#include "ViewModelFixture.h"

#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

KeyEvent plain(KeyCode code)
{
    return {code, false, false, false, false, {}};
}

KeyEvent command(KeyCode code, const QString& characters = {})
{
    return {code, true, false, false, false, characters};
}

KeyEvent option(KeyCode code)
{
    return {code, false, true, false, false, {}};
}

/// Two filter chips above three rows, two buttons and an action chip to their right.
void layOut(ViewModelFixture& f)
{
    f.model.frames = {
        {FocusKey::chip(std::nullopt), {0, 0, 40, 20}},
        {FocusKey::chip(ClipType::text), {50, 0, 40, 20}},
        {FocusKey::row(f.entry(0).id), {0, 40, 200, 40}},
        {FocusKey::row(f.entry(1).id), {0, 80, 200, 40}},
        {FocusKey::row(f.entry(2).id), {0, 120, 200, 40}},
        {FocusKey::button(ItemAction::paste), {220, 40, 60, 20}},
        {FocusKey::button(ItemAction::copy), {290, 40, 60, 20}},
    };
}

} // namespace

class PanelKeysTest final : public QObject
{
    Q_OBJECT
private slots:
    void movesTheSelection_data();
    void movesTheSelection();
    void hopsBetweenRegions_data();
    void hopsBetweenRegions();
    void entersTheActionsFirst();
    void asksTheCaret_data();
    void asksTheCaret();
    void escapesStepByStep();
    void runsCommands_data();
    void runsCommands();
    void activatesWhatHasFocus();
    void drivesTheCommandSheet_data();
    void drivesTheCommandSheet();
    void doesNothingWithoutEntries();
};

void PanelKeysTest::movesTheSelection_data()
{
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<int>("from"); // -1 for no selection
    QTest::addColumn<QString>("selected");

    QTest::newRow("down") << plain(KeyCode::down) << 0 << u"b"_s;
    QTest::newRow("down wraps") << plain(KeyCode::down) << 2 << u"a"_s;
    QTest::newRow("up") << plain(KeyCode::up) << 2 << u"b"_s;
    QTest::newRow("up on the first stays") << plain(KeyCode::up) << 0 << u"a"_s;
    QTest::newRow("down without selection: as from the first") << plain(KeyCode::down) << -1 << u"b"_s;
    QTest::newRow("up without selection: as from the first") << plain(KeyCode::up) << -1 << u"c"_s;
    QTest::newRow("command down") << command(KeyCode::down) << 0 << u"c"_s;
    QTest::newRow("option down") << option(KeyCode::down) << 0 << u"c"_s;
    QTest::newRow("command up") << command(KeyCode::up) << 2 << u"a"_s;
    QTest::newRow("option up") << option(KeyCode::up) << 2 << u"a"_s;
    QTest::newRow("home") << plain(KeyCode::home) << 2 << u"a"_s;
    QTest::newRow("page up") << plain(KeyCode::pageUp) << 2 << u"a"_s;
    QTest::newRow("end") << plain(KeyCode::end) << 0 << u"c"_s;
    QTest::newRow("page down") << plain(KeyCode::pageDown) << 0 << u"c"_s;
}

void PanelKeysTest::movesTheSelection()
{
    QFETCH(KeyEvent, key);
    QFETCH(int, from);
    QFETCH(QString, selected);
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    f.model.setSelectedID(from < 0 ? std::nullopt : std::optional(f.entry(from).id));

    QVERIFY(f.model.handleKey(key));
    QCOMPARE(f.selected(), selected);
    QVERIFY(!f.model.focus());
}

void PanelKeysTest::hopsBetweenRegions_data()
{
    QTest::addColumn<PanelFocusTarget>("from"); // nothing: the first row
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<PanelFocusTarget>("to");

    const PanelFocusTarget list;
    const PanelFocusTarget all = FocusKey::chip(std::nullopt);
    const PanelFocusTarget texts = FocusKey::chip(ClipType::text);
    const PanelFocusTarget paste = FocusKey::button(ItemAction::paste);
    const PanelFocusTarget copy = FocusKey::button(ItemAction::copy);
    const PanelFocusTarget gone = FocusKey::action(7);
    QTest::newRow("first row to the chip above") << list << plain(KeyCode::up) << texts;
    QTest::newRow("row to the buttons") << list << plain(KeyCode::right) << paste;
    QTest::newRow("row to nothing") << list << plain(KeyCode::left) << list;
    QTest::newRow("chip to chip") << texts << plain(KeyCode::left) << all;
    QTest::newRow("chip to the list") << all << plain(KeyCode::down) << list;
    QTest::newRow("button to button") << paste << plain(KeyCode::right) << copy;
    QTest::newRow("button to the list") << paste << plain(KeyCode::left) << list;
    QTest::newRow("a control that is not on screen") << gone << plain(KeyCode::up) << gone;
}

void PanelKeysTest::hopsBetweenRegions()
{
    QFETCH(PanelFocusTarget, from);
    QFETCH(KeyEvent, key);
    QFETCH(PanelFocusTarget, to);
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    layOut(f);
    if (from) { // by the hop that leads there: the model has no other way to it
        f.model.frames[*from] = {1000, 50, 10, 10};
        f.model.spatialHop(FocusMove::right, FocusKey::button(ItemAction::copy));
        QCOMPARE(f.model.focus(), from);
        layOut(f);
    }

    QVERIFY(f.model.handleKey(key));
    QCOMPARE(f.model.focus(), to);
    QCOMPARE(f.selected(), u"a"_s);
}

void PanelKeysTest::entersTheActionsFirst()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    layOut(f);
    f.model.frames.insert(FocusKey::action(0), {220, 500, 60, 20}); // far below the buttons
    QVERIFY(f.model.handleKey(plain(KeyCode::right)));
    QCOMPARE(f.model.focus(), PanelFocusTarget(FocusKey::action(0)));
}

void PanelKeysTest::asksTheCaret_data()
{
    using Caret = std::optional<HistoryViewModel::SearchCaret>;
    QTest::addColumn<QString>("query");
    QTest::addColumn<Caret>("caret");
    QTest::addColumn<bool>("leftHops");
    QTest::addColumn<bool>("rightHops");

    QTest::newRow("empty field") << QString() << Caret({0, 0, 0}) << true << true;
    QTest::newRow("no field has the keyboard") << u"abc"_s << Caret() << true << true;
    QTest::newRow("caret at the end") << u"abc"_s << Caret({3, 0, 3}) << false << true;
    QTest::newRow("caret at the beginning") << u"abc"_s << Caret({0, 0, 3}) << true << false;
    QTest::newRow("caret inside") << u"abc"_s << Caret({1, 0, 3}) << false << false;
    QTest::newRow("selection to the end") << u"abc"_s << Caret({3, 2, 3}) << false << false;
}

void PanelKeysTest::asksTheCaret()
{
    QFETCH(QString, query);
    QFETCH(std::optional<HistoryViewModel::SearchCaret>, caret);
    QFETCH(bool, leftHops);
    QFETCH(bool, rightHops);
    ViewModelFixture f;
    f.fillTexts({u"abc"_s});
    f.model.setQuery(query);
    f.model.searchCaret = [&] { return caret; };

    QCOMPARE(f.model.handleKey(plain(KeyCode::left)), leftHops);
    QCOMPARE(f.model.handleKey(plain(KeyCode::right)), rightHops);
    QVERIFY(f.model.searchCaretAllowsHop(FocusMove::up) || (caret && caret->selectionLength > 0));
}

void PanelKeysTest::escapesStepByStep()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    f.model.setQuery(u"b"_s);
    f.model.frames = {{FocusKey::row(*f.model.selectedID()), {0, 40, 200, 40}},
                      {FocusKey::chip(std::nullopt), {0, 0, 40, 20}}};
    QVERIFY(f.model.handleKey(plain(KeyCode::up)));
    QVERIFY(f.model.focus());

    QVERIFY(f.model.handleKey(plain(KeyCode::escape)));
    QVERIFY(!f.model.focus());
    QCOMPARE(f.model.query(), u"b"_s);
    QVERIFY(f.model.handleKey(plain(KeyCode::escape)));
    QCOMPARE(f.model.query(), QString());
    QCOMPARE(f.selected(), u"b"_s);
    QVERIFY(!f.model.handleKey(plain(KeyCode::escape))); // the window's turn
}

void PanelKeysTest::runsCommands_data()
{
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<bool>("handled");
    QTest::addColumn<QString>("result"); // what changed

    QTest::newRow("find") << command(KeyCode::f) << true << u"token"_s;
    QTest::newRow("pin") << command(KeyCode::p) << true << u"pinned"_s;
    QTest::newRow("delete") << command(KeyCode::delete_) << true << u"deleted"_s;
    QTest::newRow("command sheet") << command(KeyCode::k) << true << u"sheet"_s;
    QTest::newRow("annotate a text") << command(KeyCode::e) << true << QString();
    QTest::newRow("p is typed") << plain(KeyCode::p) << false << QString();
    QTest::newRow("delete is the field's") << plain(KeyCode::delete_) << false << QString();
    QTest::newRow("copy is the field's") << command(KeyCode::c) << false << QString();
}

void PanelKeysTest::runsCommands()
{
    QFETCH(KeyEvent, key);
    QFETCH(bool, handled);
    QFETCH(QString, result);
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s});
    f.model.setSelectedID(f.entry(1).id);
    const QUuid token = f.model.focusToken();

    QCOMPARE(f.model.handleKey(key), handled);
    QCOMPARE(f.model.focusToken() != token, result == u"token"_s);
    QCOMPARE(f.store.items().first().isPinned, result == u"pinned"_s);
    QCOMPARE(f.stored().contains(u"b"_s), result != u"deleted"_s);
    QCOMPARE(f.model.cmdkOpen(), result == u"sheet"_s);
}

void PanelKeysTest::activatesWhatHasFocus()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    layOut(f);
    QVERIFY(f.model.handleKey(plain(KeyCode::right)));
    QVERIFY(f.model.handleKey(plain(KeyCode::right))); // on the copy button

    QVERIFY(f.model.handleKey(plain(KeyCode::return_)));
    QCOMPARE(f.toasts, QStringList{u"Copied “a”"_s});
    QCOMPARE(f.closeRequests, 0);

    QVERIFY(f.model.handleKey(plain(KeyCode::escape)));
    QVERIFY(f.model.handleKey(plain(KeyCode::return_))); // on the list
    QCOMPARE(f.closeRequests, 1);

    f.model.activate(FocusKey::chip(ClipType::code));
    QCOMPARE(f.model.filter(), std::optional(ClipType::code));
    QVERIFY(f.visible().isEmpty());
}

void PanelKeysTest::drivesTheCommandSheet_data()
{
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("handled");
    QTest::addColumn<QString>("ran");
    QTest::addColumn<bool>("open");

    const QString none;
    QTest::newRow("return runs the highlighted") << plain(KeyCode::return_) << none << true << u"one"_s << false;
    QTest::newRow("escape closes") << plain(KeyCode::escape) << none << true << none << false;
    QTest::newRow("escape clears first") << plain(KeyCode::escape) << u"t"_s << true << none << true;
    QTest::newRow("third") << command(KeyCode::unknown, u"3"_s) << none << true << u"three"_s << false;
    QTest::newRow("a sign is a number's") << command(KeyCode::unknown, u"+1"_s) << none << true << u"one"_s << false;
    QTest::newRow("beyond the list") << command(KeyCode::unknown, u"4"_s) << none << true << none << true;
    QTest::newRow("zero") << command(KeyCode::unknown, u"0"_s) << none << false << none << true;
    QTest::newRow("negative") << command(KeyCode::unknown, u"-1"_s) << none << false << none << true;
    QTest::newRow("a blank before") << command(KeyCode::unknown, u" 1"_s) << none << false << none << true;
    QTest::newRow("digit without command")
        << KeyEvent{KeyCode::unknown, false, false, false, false, u"1"_s} << none << false << none << true;
    QTest::newRow("the panel's own keys rest") << command(KeyCode::delete_) << none << false << none << true;
}

void PanelKeysTest::drivesTheCommandSheet()
{
    QFETCH(KeyEvent, key);
    QFETCH(QString, query);
    QFETCH(bool, handled);
    QFETCH(QString, ran);
    QFETCH(bool, open);
    ViewModelFixture f;
    for (const QString& label : {u"one"_s, u"two"_s, u"three"_s})
        f.catalogue.append({label, [label] { return SmartActionResult{{{}, label}, label}; }});
    f.fillTexts({u"a"_s});
    f.model.openCmdk();
    f.model.setCmdkQuery(query);

    QCOMPARE(f.model.handleKey(key), handled);
    QCOMPARE(f.toasts.join(u","_s), ran);
    QCOMPARE(f.model.cmdkOpen(), open);
    QCOMPARE(f.stored(), QStringList{u"a"_s});
}

void PanelKeysTest::doesNothingWithoutEntries()
{
    ViewModelFixture f;
    f.model.panelWillShow(std::nullopt);
    for (const KeyCode code :
         {KeyCode::down, KeyCode::up, KeyCode::left, KeyCode::right, KeyCode::return_, KeyCode::home, KeyCode::end})
        QVERIFY(f.model.handleKey(plain(code)));
    for (const KeyCode code : {KeyCode::p, KeyCode::e, KeyCode::delete_, KeyCode::k})
        QVERIFY(f.model.handleKey(command(code)));
    QVERIFY(!f.model.selectedID() && !f.model.focus() && !f.model.cmdkOpen());
    QVERIFY(f.pasteboard.writes.isEmpty() && f.toasts.isEmpty());
}

QTEST_GUILESS_MAIN(PanelKeysTest)
#include "PanelKeysTest.moc"
