#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Clipboard {

/// The installed applications, by their desktop entries (freedesktop.org Desktop Entry Specification 1.5).
class DesktopEntries final
{
public:
    struct Entry
    {
        QString id;   // without ".desktop"
        QString name; // in the user's language
        QString icon; // a name of the icon theme or an absolute path; may be empty
        QString windowClass;
        QString executable;  // file name alone
        bool isShown = true; // in menus
    };

    /// What a window tells of its program; any of it may be empty.
    struct Traits
    {
        QString applicationID; // _GTK_APPLICATION_ID
        QString windowClass;
        QString windowInstance;
        QString executable; // file name alone
    };

    DesktopEntries() = default;
    /// Reads the folders, the first of which counts most. `language` is a locale's name, such as "de_AT". Takes
    /// milliseconds: not for the main thread.
    DesktopEntries(const QStringList& folders, const QString& language);

    [[nodiscard]] bool isEmpty() const { return m_entries.empty(); }
    [[nodiscard]] const Entry* find(const QString& id) const;
    /// The application of a window: by its application id, then the window class that an entry claims, then the class
    /// as an entry's id, then the executable.
    [[nodiscard]] const Entry* find(const Traits& traits) const;

    /// The text of one entry; nothing when it is not an application or is marked as deleted.
    [[nodiscard]] static std::optional<Entry> parse(const QString& id, const QByteArray& text, const QString& language);

private:
    std::vector<Entry> m_entries;
};

} // namespace Clipboard
