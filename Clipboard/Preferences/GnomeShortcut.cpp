#include "GnomeShortcut.h"

#include <QStringList>

namespace Clipboard::GnomeShortcut {

using namespace Qt::StringLiterals;

bool isDesktop()
{
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP"); // as "ubuntu:GNOME"
    return desktops.split(u':').contains("GNOME"_L1);
}

QString listSchema()
{
    return u"org.gnome.settings-daemon.plugins.media-keys"_s;
}

QString listKey()
{
    return u"custom-keybindings"_s;
}

QString path()
{
    return u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/tessaly/"_s;
}

QString schema()
{
    return listSchema() + u".custom-keybinding:"_s + path();
}

QString accelerator(const ClipboardCore::KeyChord& chord)
{
    const auto held = [](bool isHeld, const QString& name) { return isHeld ? name : QString(); };
    const bool isLower = chord.key.size() == 1 || chord.key == "Space"_L1;
    return held(chord.super, u"<Super>"_s) + held(chord.control, u"<Ctrl>"_s) + held(chord.alt, u"<Alt>"_s) +
           held(chord.shift, u"<Shift>"_s) + (isLower ? chord.key.toLower() : chord.key);
}

std::optional<ClipboardCore::KeyChord> chordOf(const QString& accelerator)
{
    QString text = accelerator;
    text.replace("<Control>"_L1, "<Ctrl>"_L1, Qt::CaseInsensitive)
        .replace("<Primary>"_L1, "<Ctrl>"_L1, Qt::CaseInsensitive);
    return ClipboardCore::KeyChord::fromText(text.remove(u'<').replace(u'>', u'+'));
}

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s) + u'\'';
}

} // namespace Clipboard::GnomeShortcut
