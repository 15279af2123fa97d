#include "KeyTranslation.h"

#include <QKeyEvent>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;
using ClipboardCore::KeyCode;

class KeyTranslationTest final : public QObject
{
    Q_OBJECT
private slots:
    void modifiers();
    void keys_data();
    void keys();
};

namespace {

ClipboardCore::KeyEvent translate(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode)
{
    return translateKey(QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0, 0));
}

} // namespace

void KeyTranslationTest::modifiers()
{
    const auto control = translate(Qt::Key_K, Qt::ControlModifier, 0);
    QVERIFY(control.command && !control.option && !control.shift);
    const auto alt = translate(Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier, 0);
    QVERIFY(!alt.command && alt.option && alt.shift);
    // Else a chord of the desktop would pass for a plain letter.
    const auto super = translate(Qt::Key_C, Qt::MetaModifier, 0);
    QVERIFY(!super.command && !super.option && super.control);
}

void KeyTranslationTest::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<KeyCode>("code");
    QTest::addColumn<QString>("characters");
    const auto row = [](const char* name, int key, quint32 scanCode, KeyCode code, const QString& characters,
                        Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::newRow(name) << key << scanCode << modifiers << code << characters;
    };
    row("digit, which types nothing under Control", Qt::Key_3, 12, KeyCode::unknown, u"3"_s);
    row("types nothing", Qt::Key_F5, 71, KeyCode::unknown, {});
    row("French: the key of 1 types &", Qt::Key_Ampersand, 10, KeyCode::unknown, u"1"_s);
    row("French: the key of 9 types ç", Qt::Key_Ccedilla, 18, KeyCode::unknown, u"9"_s);
    row("French: the sign itself", Qt::Key_Ampersand, 10, KeyCode::unknown, u"&"_s, {});
    row("American: ! is Shift and 1", Qt::Key_Exclam, 10, KeyCode::unknown, u"!"_s,
        Qt::ControlModifier | Qt::ShiftModifier);
    row("Russian, key of K", 0x041b, 45, KeyCode::k, u"k"_s);
    row("Greek, key of F", 0x03a6, 41, KeyCode::f, u"f"_s);
    row("Hebrew, key of P", 0x05e4, 33, KeyCode::p, u"p"_s);
    row("Russian, key of a bracket", 0x0425, 34, KeyCode::unknown, u"х"_s);
    row("backspace deletes", Qt::Key_Backspace, 22, KeyCode::delete_, {});
    row("delete deletes forward", Qt::Key_Delete, 119, KeyCode::forwardDelete, {});
    row("no table names it", Qt::Key_Q, 24, KeyCode::unknown, u"q"_s);
    row("Latin letters go by what they type", Qt::Key_A, 24, KeyCode::a, u"a"_s);
    row("an accented letter is no plain one", 0x00c9, 26, KeyCode::unknown, u"é"_s);
}

void KeyTranslationTest::keys()
{
    QFETCH(int, key);
    QFETCH(quint32, scanCode);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    const auto translated = translate(key, modifiers, scanCode);
    QTEST(translated.code, "code");
    QTEST(translated.charactersIgnoringModifiers, "characters");
}

QTEST_APPLESS_MAIN(KeyTranslationTest)

#include "KeyTranslationTest.moc"
