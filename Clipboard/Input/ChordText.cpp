#include "ChordText.h"

#include "KeyTranslation.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStringList>

#include <array>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::KeyChord;

namespace {

// What a chord is made of, in the context that the toolkit's own shortcuts have.
[[maybe_unused]] constexpr std::array keyNames{
    QT_TRANSLATE_NOOP("QShortcut", "Super"),  QT_TRANSLATE_NOOP("QShortcut", "Alt"),
    QT_TRANSLATE_NOOP("QShortcut", "Shift"),  QT_TRANSLATE_NOOP("QShortcut", "Space"),
    QT_TRANSLATE_NOOP("QShortcut", "Insert"), QT_TRANSLATE_NOOP("QShortcut", "Delete"),
    QT_TRANSLATE_NOOP("QShortcut", "Home"),   QT_TRANSLATE_NOOP("QShortcut", "End"),
    QT_TRANSLATE_NOOP("QShortcut", "PageUp"), QT_TRANSLATE_NOOP("QShortcut", "PageDown"),
    QT_TRANSLATE_NOOP("QShortcut", "Pause"),  QT_TRANSLATE_NOOP("QShortcut", "Print"),
};

struct NamedKey
{
    int key;
    const char16_t* name;
};

constexpr std::array namedKeys{
    NamedKey{Qt::Key_Space, u"Space"},       NamedKey{Qt::Key_Insert, u"Insert"}, NamedKey{Qt::Key_Delete, u"Delete"},
    NamedKey{Qt::Key_Home, u"Home"},         NamedKey{Qt::Key_End, u"End"},       NamedKey{Qt::Key_PageUp, u"PageUp"},
    NamedKey{Qt::Key_PageDown, u"PageDown"}, NamedKey{Qt::Key_Pause, u"Pause"},   NamedKey{Qt::Key_Print, u"Print"},
};

QString keyName(const QKeyEvent& event)
{
    for (const NamedKey& named : namedKeys) {
        if (named.key == event.key())
            return QString::fromUtf16(named.name);
    }
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F24)
        return u'F' + QString::number(event.key() - Qt::Key_F1 + 1);
    // With Shift held a digit's key types a sign; without the modifiers it is known by its place.
    return translateKey(event).charactersIgnoringModifiers.toUpper();
}

} // namespace

QString shownChord(const KeyChord& chord)
{
    QStringList words = chord.text().split(u'+');
    for (QString& word : words)
        word = QCoreApplication::translate("QShortcut", word.toLatin1().constData());
    return words.join(u'+');
}

std::optional<KeyChord> pressedChord(const QKeyEvent& event)
{
    const auto held = event.modifiers();
    KeyChord chord{held.testFlag(Qt::MetaModifier), held.testFlag(Qt::ControlModifier), held.testFlag(Qt::AltModifier),
                   held.testFlag(Qt::ShiftModifier), keyName(event)};
    return KeyChord::fromText(chord.text()); // which knows what may be one
}

} // namespace Clipboard
