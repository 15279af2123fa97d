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
    void takesStrictNumbersForRows();
    void shiftMustMeanTheEntry();
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

void PanelKeysTest::takesStrictNumbersForRows()
{
    ViewModelFixture f;
    f.catalogue = {{u"one"_s, [] { return SmartActionResult{{}, u"ran"_s}; }}};
    f.fillTexts({u"a"_s});
    f.model.openCmdk();
    for (const QString& characters : {u"0"_s, u"-1"_s, u"10"_s, u" 1"_s, u"x"_s})
        QVERIFY2(!f.model.handleKey(command(KeyCode::unknown, characters)), qPrintable(characters));
    QVERIFY(!f.model.handleKey({KeyCode::unknown, false, false, false, false, u"1"_s})); // typed into the filter
    QVERIFY(f.model.handleKey(command(KeyCode::unknown, u"2"_s)));                       // beyond the list
    QVERIFY(f.model.cmdkOpen());
    QVERIFY(f.model.handleKey(command(KeyCode::unknown, u"+1"_s)));
    QVERIFY(!f.model.cmdkOpen());
    QTRY_COMPARE(f.toasts, QStringList{u"ran"_s});
}

void PanelKeysTest::shiftMustMeanTheEntry()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s});
    QVERIFY(!f.model.handleKey({KeyCode::delete_, false, false, true, false, {}})); // Shift was for a capital
    QVERIFY(!f.model.handleKey(plain(KeyCode::forwardDelete)));
    f.model.setQuery(u"a"_s);
    QVERIFY(!f.model.handleKey(command(KeyCode::forwardDelete))); // a word of the search
    QCOMPARE(f.stored().size(), 1);
    QVERIFY(f.model.handleKey({KeyCode::forwardDelete, false, false, true, false, {}}));
    QVERIFY(f.stored().isEmpty());
}

QTEST_GUILESS_MAIN(PanelKeysTest)
#include "PanelKeysTest.moc"
