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
    void charactersIgnoreModifiers_data();
    void charactersIgnoreModifiers();
    void codes_data();
    void codes();
};

namespace {

ClipboardCore::KeyEvent translate(int key, Qt::KeyboardModifiers modifiers = {}, quint32 scanCode = 0)
{
    return translateKey(QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0, 0));
}

} // namespace

void KeyTranslationTest::modifiers()
{
    const auto control = translate(Qt::Key_K, Qt::ControlModifier);
    QVERIFY(control.command && !control.option && !control.shift);
    const auto alt = translate(Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    QVERIFY(!alt.command && alt.option && alt.shift);
    // Else a chord of the desktop would pass for a plain letter.
    const auto super = translate(Qt::Key_C, Qt::MetaModifier);
    QVERIFY(!super.command && !super.option && super.control);
}

void KeyTranslationTest::charactersIgnoreModifiers_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("characters");
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    QTest::newRow("digit, which types nothing under Control") << int(Qt::Key_3) << quint32(12) << control << u"3"_s;
    QTest::newRow("types nothing") << int(Qt::Key_F5) << quint32(71) << control << QString();
    QTest::newRow("French: the key of 1 types &") << int(Qt::Key_Ampersand) << quint32(10) << control << u"1"_s;
    QTest::newRow("French: the key of 9 types ç") << int(Qt::Key_Ccedilla) << quint32(18) << control << u"9"_s;
    QTest::newRow("American: ! is Shift and 1")
        << int(Qt::Key_Exclam) << quint32(10) << (control | Qt::ShiftModifier) << u"!"_s;
    QTest::newRow("French: the sign itself")
        << int(Qt::Key_Ampersand) << quint32(10) << Qt::KeyboardModifiers() << u"&"_s;
}

void KeyTranslationTest::charactersIgnoreModifiers()
{
    QFETCH(int, key);
    QFETCH(quint32, scanCode);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QTEST(translate(key, modifiers, scanCode).charactersIgnoringModifiers, "characters");
}

void KeyTranslationTest::codes_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<KeyCode>("code");
    QTest::newRow("Russian, key of K") << 0x041b << quint32(45) << KeyCode::k;
    QTest::newRow("Greek, key of F") << 0x03a6 << quint32(41) << KeyCode::f;
    QTest::newRow("Hebrew, key of P") << 0x05e4 << quint32(33) << KeyCode::p;
    QTest::newRow("Russian, key of a bracket") << 0x0425 << quint32(34) << KeyCode::unknown;
    QTest::newRow("backspace deletes") << int(Qt::Key_Backspace) << quint32(22) << KeyCode::delete_;
    QTest::newRow("delete deletes forward") << int(Qt::Key_Delete) << quint32(119) << KeyCode::forwardDelete;
    QTest::newRow("no table names it") << int(Qt::Key_Q) << quint32(24) << KeyCode::unknown;
    QTest::newRow("Latin letters go by what they type") << int(Qt::Key_A) << quint32(24) << KeyCode::a;
    QTest::newRow("an accented letter is no plain one") << 0x00c9 << quint32(26) << KeyCode::unknown;
}

void KeyTranslationTest::codes()
{
    QFETCH(int, key);
    QFETCH(quint32, scanCode);
    QTEST(translate(key, Qt::ControlModifier, scanCode).code, "code");
}

QTEST_APPLESS_MAIN(KeyTranslationTest)

#include "KeyTranslationTest.moc"
