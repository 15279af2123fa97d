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

} // namespace

class PanelKeysTest final : public QObject
{
    Q_OBJECT
private slots:
    void hopsBetweenRegions();
    void takesStrictNumbersForRows();
    void shiftMustMeanTheEntry();
};

void PanelKeysTest::hopsBetweenRegions()
{
    ViewModelFixture f;
    f.fillTexts({u"a"_s, u"b"_s, u"c"_s});
    // Two filter chips above three rows, two buttons to their right.
    f.model.frames = {
        {FocusKey::chip(std::nullopt), {0, 0, 40, 20}},
        {FocusKey::chip(ClipType::text), {50, 0, 40, 20}},
        {FocusKey::row(f.entry(0).id), {0, 40, 200, 40}},
        {FocusKey::row(f.entry(1).id), {0, 80, 200, 40}},
        {FocusKey::row(f.entry(2).id), {0, 120, 200, 40}},
        {FocusKey::button(ItemAction::paste), {220, 40, 60, 20}},
        {FocusKey::button(ItemAction::copy), {290, 40, 60, 20}},
    };
    const PanelFocusTarget list;
    const PanelFocusTarget copy = FocusKey::button(ItemAction::copy);
    const auto hop = [&f](KeyCode key, const PanelFocusTarget& to) {
        QVERIFY(f.model.handleKey(plain(key)));
        QCOMPARE(f.model.focus(), to);
        QCOMPARE(f.selected(), u"a"_s);
    };
    hop(KeyCode::left, list); // there is nothing
    hop(KeyCode::up, FocusKey::chip(ClipType::text));
    hop(KeyCode::left, FocusKey::chip(std::nullopt));
    hop(KeyCode::down, list);
    hop(KeyCode::right, FocusKey::button(ItemAction::paste));
    hop(KeyCode::left, list);
    hop(KeyCode::right, FocusKey::button(ItemAction::paste));
    hop(KeyCode::right, copy);
    f.model.frames.remove(*copy);
    hop(KeyCode::left, copy); // from what is no longer on screen nothing is near
}

void PanelKeysTest::takesStrictNumbersForRows()
{
    ViewModelFixture f;
    for (const QString& label : {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s, u"8"_s, u"9"_s})
        f.catalogue.append({label, [label] { return SmartActionResult{{}, label}; }});
    f.fillTexts({u"a"_s});
    f.model.openCmdk();
    for (const QString& characters : {u"0"_s, u"-1"_s, u"10"_s, u" 1"_s, u"x"_s})
        QVERIFY2(!f.model.handleKey(command(KeyCode::unknown, characters)), qPrintable(characters));
    QVERIFY(!f.model.handleKey({KeyCode::unknown, false, false, false, false, u"1"_s})); // typed into the filter
    QVERIFY(f.model.handleKey(plain(KeyCode::up)) && f.model.handleKey(plain(KeyCode::down)));
    QVERIFY(f.model.handleKey(command(KeyCode::unknown, u"9"_s)));
    QVERIFY(!f.model.cmdkOpen());
    f.model.openCmdk();
    f.model.setCmdkQuery(u"2"_s);
    QVERIFY(f.model.handleKey(command(KeyCode::unknown, u"2"_s))); // beyond the list
    QVERIFY(f.model.cmdkOpen());
    QVERIFY(f.model.handleKey(command(KeyCode::unknown, u"+1"_s)));
    QTRY_COMPARE(f.toasts, QStringList({u"9"_s, u"2"_s}));
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
