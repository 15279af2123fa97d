#pragma once

#include "X11Session.h"

#include <memory>

namespace Clipboard::X11 {

/// Lends a symbol that no key of the user's keyboard bears to a key code that stands for no key, and takes it back at
/// its end. Every program hears of the change and asks the server for the new keyboard.
class SpareKey final
{
public:
    SpareKey(std::shared_ptr<X11Session> session, xcb_keycode_t key, xcb_keysym_t symbol);
    ~SpareKey();
    Q_DISABLE_COPY_MOVE(SpareKey)

    [[nodiscard]] xcb_keycode_t key() const { return m_key; }
    [[nodiscard]] xcb_keysym_t symbol() const { return m_symbol; }

private:
    void bear(xcb_keysym_t symbol);

    std::shared_ptr<X11Session> m_session;
    xcb_keycode_t m_key;
    xcb_keysym_t m_symbol;
};

} // namespace Clipboard::X11
