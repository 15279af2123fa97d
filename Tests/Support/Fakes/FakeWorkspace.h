#pragma once

#include "Workspace.h"

#include <QHash>
#include <QStringList>

namespace Clipboard::Testing {

/// A workspace with the application in front and the icons that the test chooses.
class FakeWorkspace final : public Workspace
{
public:
    [[nodiscard]] std::optional<Application> frontmostApplication() const override { return frontmost; }
    [[nodiscard]] QIcon applicationIcon(const QString& bundleID) const override
    {
        applicationIconsAsked.append(bundleID);
        return applicationIcons.value(bundleID);
    }
    [[nodiscard]] QIcon fileIcon(const QString& path) const override
    {
        fileIconsAsked.append(path);
        return fileIcons.value(path);
    }

    [[nodiscard]] std::optional<QString> desktopFolder() const override { return desktop; }
    [[nodiscard]] QString picturesFolder() const override { return pictures; }
    void openURL(const QString& link) override { opened.append(link); }
    void revealFile(const QString& path) override { revealed.append(path); }

    std::optional<Application> frontmost;
    std::optional<QString> desktop;
    QString pictures;
    QStringList opened;
    QStringList revealed;
    QHash<QString, QIcon> applicationIcons;
    QHash<QString, QIcon> fileIcons;
    mutable QStringList applicationIconsAsked;
    mutable QStringList fileIconsAsked;
};

} // namespace Clipboard::Testing
