#pragma once

#include <QObject>

namespace Clipboard {

/// Which of the keyboard's layouts is in force. A Wayland compositor tells only the window with the keyboard; that of
/// Plasma has it on the session bus as well, as org.kde.keyboard, while there are several. Main thread; never waits.
class PlasmaLayout final : public QObject
{
    Q_OBJECT
public:
    PlasmaLayout();

    /// Its number among those of the keymap; the first one's while nobody tells.
    [[nodiscard]] uint inForce() const { return m_inForce; }

private slots:
    void layoutChanged(uint layout) { m_inForce = layout; }

private:
    uint m_inForce = 0;
};

} // namespace Clipboard
