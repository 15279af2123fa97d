#pragma once

#include <QString>

namespace Clipboard {

/// Start at login, through an XDG autostart entry (freedesktop Desktop Application Autostart Specification).
class LoginItem final
{
public:
    /// `autostartFolder` is usually $XDG_CONFIG_HOME/autostart; `program` the absolute path to start.
    LoginItem(QString autostartFolder, QString program);

    /// True when the entry exists and neither hides nor disables itself.
    [[nodiscard]] bool isEnabled() const;
    /// Writes the entry, or removes it. A failure is logged and leaves things as they were.
    /// Returns whether it is enabled afterwards.
    bool toggle();

private:
    [[nodiscard]] QString entryPath() const;

    QString m_autostartFolder;
    QString m_program;
};

} // namespace Clipboard
