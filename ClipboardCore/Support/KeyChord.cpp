#include "Support/KeyChord.h"

#include <QStringList>

#include <array>

namespace ClipboardCore {

using namespace Qt::StringLiterals;

namespace {

struct Modifier
{
    QLatin1String name;
    bool KeyChord::*isHeld;
};

// In the order in which they are written.
constexpr std::array modifiers{Modifier{"Super"_L1, &KeyChord::super}, Modifier{"Ctrl"_L1, &KeyChord::control},
                               Modifier{"Alt"_L1, &KeyChord::alt}, Modifier{"Shift"_L1, &KeyChord::shift}};

bool isFunctionKey(QStringView key)
{
    constexpr int last = 24;
    bool isNumber = false;
    const int number = key.startsWith(u'F') ? key.mid(1).toInt(&isNumber) : 0;
    return isNumber && number >= 1 && number <= last && key.mid(1) == QString::number(number);
}

bool typesOneCharacter(QStringView key)
{
    return key.size() == 1 && ((key.front() >= u'A' && key.front() <= u'Z') || key.front().isDigit()) &&
           key.front().unicode() < 0x80;
}

/// The name as it is written here; empty for no key.
QString keyNamed(QStringView name)
{
    for (const QString& named : KeyChord::namedKeys()) {
        if (named.compare(name, Qt::CaseInsensitive) == 0)
            return named;
    }
    const QString upper = name.toString().toUpper();
    return typesOneCharacter(upper) || isFunctionKey(upper) ? upper : QString();
}

} // namespace

const QStringList& KeyChord::namedKeys()
{
    static const QStringList names{u"Space"_s,  u"Insert"_s,   u"Delete"_s, u"Home"_s, u"End"_s,
                                   u"PageUp"_s, u"PageDown"_s, u"Pause"_s,  u"Print"_s};
    return names;
}

std::optional<KeyChord> KeyChord::fromText(QStringView text)
{
    KeyChord chord;
    QList<QStringView> words = text.split(u'+');
    chord.key = keyNamed(words.takeLast().trimmed());
    for (const QStringView word : words) {
        bool isKnown = false;
        for (const Modifier& modifier : modifiers) {
            if (word.trimmed().compare(modifier.name, Qt::CaseInsensitive) == 0)
                isKnown = chord.*modifier.isHeld = true;
        }
        if (!isKnown)
            return std::nullopt;
    }
    const bool mayStandAlone = isFunctionKey(chord.key) || chord.key == "Pause"_L1 || chord.key == "Print"_L1;
    if (chord.key.isEmpty() || !(mayStandAlone || chord.super || chord.control || chord.alt))
        return std::nullopt;
    return chord;
}

QString KeyChord::text() const
{
    QString text;
    for (const Modifier& modifier : modifiers)
        text += this->*modifier.isHeld ? modifier.name + u'+' : QString();
    return text + key;
}

} // namespace ClipboardCore
