#pragma once

#include "WaylandClient.h"

#include <QPoint>
#include <QSize>

struct zwlr_virtual_pointer_manager_v1;
struct zwlr_virtual_pointer_v1;

namespace Clipboard::Testing {

/// A mouse of a Wayland session. Without one the compositor's own pointer reaches no program.
class WaylandPointer
{
public:
    explicit WaylandPointer(const VirtualSession& session);
    ~WaylandPointer();
    Q_DISABLE_COPY_MOVE(WaylandPointer)

    /// False when the compositor takes no mouse.
    [[nodiscard]] bool isPluggedIn() const { return m_pointer != nullptr; }
    /// On a screen of that size.
    void move(QPoint place, QSize screen);
    /// A button by its number in X11: 1 is the left one, 3 the right one.
    void set(int button, bool isDown);
    /// By one notch, away from the person.
    void turnWheel();

private:
    void finish();

    WaylandClient m_client;
    zwlr_virtual_pointer_manager_v1* m_manager = nullptr;
    zwlr_virtual_pointer_v1* m_pointer = nullptr;
    quint32 m_time = 0; // of what happened last, in milliseconds
};

} // namespace Clipboard::Testing
