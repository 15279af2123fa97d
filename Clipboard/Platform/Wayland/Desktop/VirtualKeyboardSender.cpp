#include "VirtualKeyboardSender.h"

#include <virtual-keyboard-unstable-v1-client-protocol.h>

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <utility>

namespace Clipboard {

namespace {

// The keyboard has the two keys that paste, by their numbers in Linux (input-event-codes.h); the symbols are the same
// whatever the layout of the user's own.
constexpr uint32_t keyV = 47;
constexpr uint32_t keyInsert = 110;
constexpr QByteArrayView keymap = R"(xkb_keymap {
xkb_keycodes "paste" { minimum = 8; maximum = 255; <V> = 55; <INS> = 118; };
xkb_types "paste" { include "complete" };
xkb_compatibility "paste" { include "complete" };
xkb_symbols "paste" { key <V> { [ v, V ] }; key <INS> { [ Insert ] }; };
};
)";

// The real modifiers of every keymap (X Keyboard Extension, section 2.2).
constexpr uint32_t shift = 1;
constexpr uint32_t control = 4;

/// The text as a file that the compositor can map; -1 when there is none to be had.
int fileWith(QByteArrayView text)
{
    const int file = ::memfd_create("tessaly-keymap", MFD_CLOEXEC);
    if (file < 0)
        return -1;
    const auto size = static_cast<size_t>(text.size());
    if (::write(file, text.data(), size) == static_cast<ssize_t>(size) && ::write(file, "", 1) == 1)
        return file;
    ::close(file);
    return -1;
}

} // namespace

std::unique_ptr<VirtualKeyboardSender> VirtualKeyboardSender::create(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                                     std::shared_ptr<ClipboardEngine> engine)
{
    std::unique_ptr<VirtualKeyboardSender> sender(new VirtualKeyboardSender(std::move(toplevels), std::move(engine)));
    return sender->m_manager != nullptr && sender->m_seat != nullptr ? std::move(sender) : nullptr;
}

VirtualKeyboardSender::VirtualKeyboardSender(std::shared_ptr<Wayland::Toplevels> toplevels,
                                             std::shared_ptr<ClipboardEngine> engine)
    : ToplevelKeystrokeSender(std::move(toplevels), std::move(engine))
    , m_manager(static_cast<zwp_virtual_keyboard_manager_v1*>(
          connection().bind(zwp_virtual_keyboard_manager_v1_interface, 1)))
    , m_seat(static_cast<wl_seat*>(connection().bind(wl_seat_interface, 1)))
{
}

VirtualKeyboardSender::~VirtualKeyboardSender()
{
    if (m_keyboard != nullptr)
        zwp_virtual_keyboard_v1_destroy(m_keyboard);
    if (m_manager != nullptr)
        zwp_virtual_keyboard_manager_v1_destroy(m_manager);
    if (m_seat != nullptr)
        wl_seat_destroy(m_seat);
}

/// The user's own keyboard may still hold keys. What is held counts by keyboard: on this one nothing is.
bool VirtualKeyboardSender::type(PasteChord chord)
{
    if (!plugIn())
        return false;
    const uint32_t held =
        (chord == PasteChord::ShiftInsert ? 0 : control) | (chord == PasteChord::ControlV ? 0 : shift);
    const uint32_t key = chord == PasteChord::ShiftInsert ? keyInsert : keyV;
    const auto time = static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                                Wayland::WaylandConnection::Clock::now().time_since_epoch())
                                                .count());
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, held, 0, 0, 0);
    zwp_virtual_keyboard_v1_key(m_keyboard, time, key, WL_KEYBOARD_KEY_STATE_PRESSED);
    zwp_virtual_keyboard_v1_key(m_keyboard, time, key, WL_KEYBOARD_KEY_STATE_RELEASED);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
    return true;
}

bool VirtualKeyboardSender::plugIn()
{
    if (m_keyboard != nullptr)
        return true;
    const int file = fileWith(keymap);
    if (file < 0)
        return false;
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_manager, m_seat);
    zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<uint32_t>(keymap.size() + 1));
    ::close(file); // the request holds a copy
    return true;
}

} // namespace Clipboard
