#include "PortalShortcut.h"

#include <array>

using namespace Qt::StringLiterals;

namespace Clipboard {

QString PortalShortcut::trigger() const
{
    return properties.value(u"trigger_description"_s).toString();
}

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

/// Keys have the names of their X symbols.
QString portalTrigger(const ClipboardCore::KeyChord& chord)
{
    struct Modifier
    {
        bool isHeld;
        QLatin1String name;
    };
    const std::array modifiers{Modifier{chord.control, "CTRL+"_L1}, Modifier{chord.alt, "ALT+"_L1},
                               Modifier{chord.super, "LOGO+"_L1}, Modifier{chord.shift, "SHIFT+"_L1}};
    QString text;
    for (const Modifier& modifier : modifiers) {
        if (modifier.isHeld)
            text += modifier.name;
    }
    if (chord.key.size() == 1 || chord.key == "Space"_L1)
        return text + chord.key.toLower();
    return text + QString(chord.key).replace("PageUp"_L1, "Page_Up"_L1).replace("PageDown"_L1, "Page_Down"_L1);
}

} // namespace Clipboard
