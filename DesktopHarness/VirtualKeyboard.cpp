#include "VirtualKeyboard.h"

#include <virtual-keyboard-unstable-v1-client-protocol.h>

#include <QTemporaryFile>

namespace Clipboard::Testing {

VirtualKeyboard::VirtualKeyboard(const VirtualSession& session)
    : m_client(session)
{
    if (m_client.display() == nullptr)
        return;
    m_manager = static_cast<zwp_virtual_keyboard_manager_v1*>(m_client.bind(zwp_virtual_keyboard_manager_v1_interface));
    m_seat = static_cast<wl_seat*>(m_client.bind(wl_seat_interface));
    const QByteArray map = keymap() + '\0';
    QTemporaryFile file;
    if (m_manager == nullptr || m_seat == nullptr || !file.open() || file.write(map) != map.size() || !file.flush())
        return;
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_manager, m_seat);
    zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.handle(),
                                   static_cast<uint32_t>(map.size()));
    wl_display_roundtrip(m_client.display());
}

VirtualKeyboard::~VirtualKeyboard()
{
    if (m_keyboard != nullptr)
        zwp_virtual_keyboard_v1_destroy(m_keyboard);
    if (m_seat != nullptr)
        wl_seat_destroy(m_seat);
    if (m_manager != nullptr)
        zwp_virtual_keyboard_manager_v1_destroy(m_manager);
}

void VirtualKeyboard::send(quint32 key, quint32 modifiers)
{
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, modifiers, 0, 0, 0);
    zwp_virtual_keyboard_v1_key(m_keyboard, ++m_time, key, WL_KEYBOARD_KEY_STATE_PRESSED);
    zwp_virtual_keyboard_v1_key(m_keyboard, ++m_time, key, WL_KEYBOARD_KEY_STATE_RELEASED);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
    wl_display_roundtrip(m_client.display());
}

} // namespace Clipboard::Testing
