#pragma once

#include <QIcon>
#include <QObject>
#include <QString>

#include <optional>

namespace Clipboard {

/// What the desktop knows of its applications and files. Queries answer from memory or a local look-up.
class Workspace : public QObject
{
    Q_OBJECT
public:
    struct Application
    {
        std::optional<QString> name;     // localized
        std::optional<QString> bundleID; // the desktop entry's id without ".desktop"; else the window's class
    };

    using QObject::QObject;

    /// The application whose window is active, Tessaly's own windows left out.
    [[nodiscard]] virtual std::optional<Application> frontmostApplication() const = 0;
    /// The application's icon; null when it has none that can be found.
    [[nodiscard]] virtual QIcon applicationIcon(const QString& bundleID) const = 0;
    /// The icon of the file's type; a folder's path ends in a slash. Looks at the name alone, never at the file.
    [[nodiscard]] virtual QIcon fileIcon(const QString& path) const = 0;
    /// The user's Desktop folder; nothing when there is none.
    [[nodiscard]] virtual std::optional<QString> desktopFolder() const = 0;
    /// Where pictures go when there is no Desktop folder: the user's Pictures, else the home folder.
    [[nodiscard]] virtual QString picturesFolder() const = 0;

    // Neither waits for the other program, and neither tells whether it did what was asked.
    /// Opens the link, a URL by RFC 3986, with the user's default program for its scheme.
    virtual void openURL(const QString& link) = 0;
    /// Shows the file, selected, in the file manager; where that cannot be asked, opens the folder it is in.
    virtual void revealFile(const QString& path) = 0;
};

} // namespace Clipboard
