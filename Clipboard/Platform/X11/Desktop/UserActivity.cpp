#include "UserActivity.h"

#include <xcb/xinput.h>

#include <array>

namespace Clipboard::X11 {

namespace {

// The wheel's buttons, up, down, left and right (X protocol, by convention).
constexpr uint32_t firstWheelButton = 4;
constexpr uint32_t lastWheelButton = 7;

constexpr uint32_t everyModifier = 0xff;
constexpr uint32_t ofShortcuts = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

} // namespace

UserActivity::UserActivity(std::shared_ptr<X11Session> session)
    : m_session(session)
    , m_keyboard(std::move(session))
{
    if (!m_session->connection().hasExtension(&xcb_input_id))
        return;
    // Since 2.1 raw events come also while another program has grabbed the device, as for a hot key or a menu.
    xcb_connection_t* xcb = m_session->xcb();
    const XcbPointer<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 1), nullptr));
    if (!version || version->major_version < 2)
        return;
    m_extension = xcb_get_extension_data(xcb, &xcb_input_id)->major_opcode;
    connect(m_session.get(), &X11Session::eventReceived, this, &UserActivity::handle);
}

void UserActivity::follow()
{
    if (m_extension == 0)
        return;
    m_isFollowing = true;
    m_pointer = m_session->pointer().place;
    select(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
           XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    m_modifiers = m_keyboard.modifierKeys(everyModifier);
    m_shortcutModifiers = m_keyboard.modifierKeys(ofShortcuts);
    m_pressed = m_keyboard.pressedKeys();
}

void UserActivity::stop()
{
    if (m_isFollowing)
        select(0);
    m_isFollowing = false;
}

bool UserActivity::hasMovedPointer() const
{
    return m_isFollowing && m_session->pointer().place != m_pointer;
}

void UserActivity::select(uint32_t events)
{
    struct
    {
        xcb_input_event_mask_t head;
        uint32_t events;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
    xcb_input_xi_select_events(m_session->xcb(), m_session->root(), 1, &mask.head);
    m_session->connection().flush();
}

void UserActivity::handle(const xcb_generic_event_t* event)
{
    const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event);
    if ((event->response_type & 0x7fU) != XCB_GE_GENERIC || generic->extension != m_extension)
        return;
    // Key and button events have the same shape.
    const auto* input = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event);
    if (generic->event_type == XCB_INPUT_RAW_KEY_RELEASE) {
        if (input->detail < m_pressed.size())
            m_pressed.reset(input->detail);
        return;
    }
    m_pointer = m_session->pointer().place;
    if (generic->event_type == XCB_INPUT_RAW_KEY_PRESS)
        keyPressed(input->detail);
    else if (input->detail < firstWheelButton || input->detail > lastWheelButton)
        emit clicked();
}

void UserActivity::keyPressed(uint32_t key)
{
    if (key >= m_pressed.size())
        return;
    m_pressed.set(key);
    if (!m_modifiers.test(key) && (m_pressed & m_shortcutModifiers).none())
        emit typed();
}

} // namespace Clipboard::X11
