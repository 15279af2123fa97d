#pragma once

#include "WaylandClient.h"
#include "WaylandKeyboard.h"

struct wl_seat;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace Clipboard::Testing {

/// A keyboard that is plugged in. It is one and the same for as long as the session: a program that reads the keymap
/// late, as those of X11 do, would otherwise take a key of one keyboard for that of the next, and where the last
/// keyboard goes, programs lose the focus.
class VirtualKeyboard final : public WaylandKeyboard
{
public:
    explicit VirtualKeyboard(const VirtualSession& session);
    ~VirtualKeyboard() override;

    [[nodiscard]] bool isPluggedIn() const override { return m_keyboard != nullptr; }

private:
    void send(quint32 key, quint32 modifiers) override;

    WaylandClient m_client;
    zwp_virtual_keyboard_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    zwp_virtual_keyboard_v1* m_keyboard = nullptr;
    quint32 m_time = 0; // of the last key, in milliseconds
};

} // namespace Clipboard::Testing
