#pragma once

#include "HotKeyGrabber.h"

#include <QProcess>

namespace Clipboard {

/// The hot key of a GNOME session on Wayland, where no program can take one: a shortcut in the user's settings that
/// runs the program, for the command `bind` to set. Here is only looked whether it is there; a press comes in by the
/// bus.
class GnomeHotKey final : public HotKeyGrabber
{
    Q_OBJECT
public:
    GnomeHotKey();

    /// Whether this is such a session.
    [[nodiscard]] static bool isThere();

    void grab() override;
    [[nodiscard]] QString holder() const override { return QStringLiteral("gnome"); }

private:
    void judge(const QString& binding);

    QProcess m_gsettings;
};

} // namespace Clipboard
