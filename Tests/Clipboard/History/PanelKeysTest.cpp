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
    void hopsBetweenRegions_data();
    void hopsBetweenRegions();
    void asksTheCaret_data();
    void asksTheCaret();
    void numbersRunActions_data();
    void numbersRunActions();
    void deletesOrEdits_data();
    void deletesOrEdits();
};

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
        PanelKeys(f.model).spatialHop(FocusMove::right, FocusKey::button(ItemAction::copy));
        QCOMPARE(f.model.focus(), from);
        layOut(f);
    }

    QVERIFY(f.model.handleKey(key));
    QCOMPARE(f.model.focus(), to);
    QCOMPARE(f.selected(), u"a"_s);
}

void PanelKeysTest::asksTheCaret_data()
{
    using Caret = std::optional<PanelState::SearchCaret>;
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
    QFETCH(std::optional<PanelState::SearchCaret>, caret);
    QFETCH(bool, leftHops);
    QFETCH(bool, rightHops);
    ViewModelFixture f;
    f.fillTexts({u"abc"_s});
    f.model.setQuery(query);
    f.model.searchCaret = [&] { return caret; };

    QCOMPARE(f.model.handleKey(plain(KeyCode::left)), leftHops);
    QCOMPARE(f.model.handleKey(plain(KeyCode::right)), rightHops);
}

void PanelKeysTest::numbersRunActions_data()
{
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<bool>("handled");
    QTest::addColumn<QString>("ran");

    const auto row = [](const char* name, const QString& characters, bool handled, const QString& ran) {
        QTest::newRow(name) << command(KeyCode::unknown, characters) << handled << ran;
    };
    row("third", u"3"_s, true, u"three"_s);
    row("a sign is a number's", u"+1"_s, true, u"one"_s);
    row("beyond the list", u"4"_s, true, {});
    row("zero", u"0"_s, false, {});
    row("negative", u"-1"_s, false, {});
    row("two digits", u"10"_s, false, {});
    row("a blank before", u" 1"_s, false, {});
    QTest::newRow("without command") << KeyEvent{KeyCode::unknown, false, false, false, false, u"1"_s} << false
                                     << QString();
}

void PanelKeysTest::numbersRunActions()
{
    QFETCH(KeyEvent, key);
    QFETCH(bool, handled);
    QFETCH(QString, ran);
    ViewModelFixture f;
    for (const QString& label : {u"one"_s, u"two"_s, u"three"_s})
        f.catalogue.append({label, [label] { return SmartActionResult{{{}, label}, label}; }});
    f.fillTexts({u"a"_s});
    f.model.openCmdk();

    QCOMPARE(f.model.handleKey(key), handled);
    QCOMPARE(f.model.cmdkOpen(), ran.isEmpty());
    QTRY_COMPARE(f.toasts.join(u','), ran);
}

void PanelKeysTest::deletesOrEdits_data()
{
    QTest::addColumn<KeyEvent>("key");
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("deletes");

    const KeyEvent shiftDelete{KeyCode::forwardDelete, false, false, true, false, {}};
    const KeyEvent shiftBackspace{KeyCode::delete_, false, false, true, false, {}};
    QTest::newRow("command, nothing typed") << command(KeyCode::delete_) << QString() << true;
    QTest::newRow("command, forward, nothing typed") << command(KeyCode::forwardDelete) << QString() << true;
    QTest::newRow("command edits") << command(KeyCode::delete_) << u"a"_s << false;
    QTest::newRow("command, forward, edits") << command(KeyCode::forwardDelete) << u"a"_s << false;
    QTest::newRow("shift and delete") << shiftDelete << u"a"_s << true;
    QTest::newRow("shift was for a capital") << shiftBackspace << QString() << false;
    QTest::newRow("plain") << plain(KeyCode::forwardDelete) << QString() << false;
}

void PanelKeysTest::deletesOrEdits()
{
    QFETCH(KeyEvent, key);
    QFETCH(QString, query);
    QFETCH(bool, deletes);
    ViewModelFixture f;
    f.fillTexts({u"a"_s});
    f.model.setQuery(query);
    QCOMPARE(f.model.handleKey(key), deletes);
    QCOMPARE(f.stored().isEmpty(), deletes);
}

QTEST_GUILESS_MAIN(PanelKeysTest)
#include "PanelKeysTest.moc"
