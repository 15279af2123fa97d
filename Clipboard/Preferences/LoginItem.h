#pragma once

#include <QString>

namespace Clipboard {

/// Launch at login, by an entry in the user's autostart folder
/// (https://specifications.freedesktop.org/autostart-spec/).
class LoginItem final
{
public:
    /// For the running program and the user's own folder.
    LoginItem();
    LoginItem(const QString& autostartFolder, QString executable);

    [[nodiscard]] bool isEnabled() const;
    /// Enables what is disabled and the other way round; a failure is logged. Answers whether it is enabled now.
    bool toggle();
    /// Enables or disables it; a failure is logged. Answers whether that is so now.
    bool set(bool isEnabled);
    /// Where the entry is.
    [[nodiscard]] QString folder() const;
    /// An entry of the name that Tessaly had before it had an id becomes one of today's.
    void adoptOldEntry() const;

private:
    [[nodiscard]] bool enable(QString& error) const;
    [[nodiscard]] bool disable(QString& error) const;

    QString m_file;
    QString m_oldFile;
    QString m_executable;
};

} // namespace Clipboard
