#include "WaylandPointer.h"

#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>

namespace Clipboard::Testing {

namespace {

/// As Linux numbers them (input-event-codes.h).
quint32 codeOf(int button)
{
    constexpr quint32 left = 0x110;
    constexpr quint32 right = 0x111;
    constexpr quint32 middle = 0x112;
    return button == 1 ? left : (button == 2 ? middle : right);
}

} // namespace

WaylandPointer::WaylandPointer(const VirtualSession& session)
    : m_client(session)
{
    if (m_client.display() == nullptr)
        return;
    m_manager = static_cast<zwlr_virtual_pointer_manager_v1*>(m_client.bind(zwlr_virtual_pointer_manager_v1_interface));
    if (m_manager == nullptr)
        return;
    m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(m_manager, nullptr);
    wl_display_roundtrip(m_client.display());
}

WaylandPointer::~WaylandPointer()
{
    if (m_pointer != nullptr)
        zwlr_virtual_pointer_v1_destroy(m_pointer);
    if (m_manager != nullptr)
        zwlr_virtual_pointer_manager_v1_destroy(m_manager);
}

void WaylandPointer::move(QPoint place, QSize screen)
{
    const auto number = [](int value) { return static_cast<uint32_t>(value); };
    zwlr_virtual_pointer_v1_motion_absolute(m_pointer, ++m_time, number(place.x()), number(place.y()),
                                            number(screen.width()), number(screen.height()));
    finish();
}

void WaylandPointer::set(int button, bool isDown)
{
    zwlr_virtual_pointer_v1_button(m_pointer, ++m_time, codeOf(button),
                                   isDown ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    finish();
}

void WaylandPointer::turnWheel()
{
    constexpr int notch = 15; // what a notch is to most compositors, in pixels
    zwlr_virtual_pointer_v1_axis_source(m_pointer, WL_POINTER_AXIS_SOURCE_WHEEL);
    zwlr_virtual_pointer_v1_axis_discrete(m_pointer, ++m_time, WL_POINTER_AXIS_VERTICAL_SCROLL,
                                          wl_fixed_from_int(-notch), -1);
    finish();
}

void WaylandPointer::finish()
{
    zwlr_virtual_pointer_v1_frame(m_pointer);
    wl_display_roundtrip(m_client.display());
}

} // namespace Clipboard::Testing
