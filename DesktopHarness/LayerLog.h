#pragma once

#include "Desktop.h"

namespace Clipboard::Testing {

/// The surfaces above all windows that a program has on the screen, as it reports them under `tessaly.layers`: a
/// Wayland compositor lists no such surface.
class LayerLog
{
public:
    static constexpr QByteArrayView prefix = "tessaly.layers ";

    /// What follows the prefix in a line.
    void take(const QByteArray& words);

    [[nodiscard]] const QList<Desktop::Window>& shown() const { return m_shown; }
    /// The one with the keyboard.
    [[nodiscard]] std::optional<Desktop::Window> focused() const;

private:
    void show(const QByteArrayList& words);

    QList<Desktop::Window> m_shown;
    quint32 m_focused = 0;
};

} // namespace Clipboard::Testing
