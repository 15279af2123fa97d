#pragma once

#include "Workspace.h"

namespace Clipboard {

/// What every freedesktop.org session offers, however it shows its windows: the user's folders (xdg-user-dirs), the
/// default programs (xdg-open) and the file manager (org.freedesktop.FileManager1 on the session bus).
class XdgWorkspace : public Workspace
{
public:
    using Workspace::Workspace;

    [[nodiscard]] std::optional<QString> desktopFolder() const final;
    [[nodiscard]] QString picturesFolder() const final;
    /// "www.example.org" is opened as the web page it is to people. Any other URL without a scheme is ignored: the
    /// desktop would take it for the name of a file.
    void openURL(const QString& link) final;
    void revealFile(const QString& path) final;
};

} // namespace Clipboard
