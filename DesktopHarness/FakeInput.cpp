#include "FakeInput.h"

#include "VirtualSession.h"

#include <fake-input-client-protocol.h>

#include <QList>

#include <linux/input-event-codes.h>

#include <utility>

namespace Clipboard::Testing {

namespace {

constexpr quint32 protocolVersion = 4;

const QList<std::pair<quint32, quint32>> keysOfModifiers{{WaylandKeyboard::super, KEY_LEFTMETA},
                                                         {WaylandKeyboard::control, KEY_LEFTCTRL},
                                                         {WaylandKeyboard::alt, KEY_LEFTALT},
                                                         {WaylandKeyboard::shift, KEY_LEFTSHIFT}};

} // namespace

FakeInput::FakeInput(VirtualSession& session)
    : m_client(session.connectToCompositor())
{
    if (m_client.display() == nullptr)
        return;
    m_input = static_cast<org_kde_kwin_fake_input*>(m_client.bind(org_kde_kwin_fake_input_interface, protocolVersion));
    if (m_input == nullptr)
        return;
    org_kde_kwin_fake_input_authenticate(m_input, "a person", "to use the programs");
    wl_display_roundtrip(m_client.display());
}

FakeInput::~FakeInput()
{
    if (m_input != nullptr)
        org_kde_kwin_fake_input_destroy(m_input);
}

void FakeInput::movePointer(QPoint place)
{
    org_kde_kwin_fake_input_pointer_motion_absolute(m_input, wl_fixed_from_int(place.x()),
                                                    wl_fixed_from_int(place.y()));
    wl_display_roundtrip(m_client.display());
}

void FakeInput::setButton(int button, bool isDown)
{
    constexpr quint32 buttons[] = {BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
    org_kde_kwin_fake_input_button(m_input, buttons[button - 1],
                                   isDown ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    wl_display_roundtrip(m_client.display());
}

void FakeInput::turnWheel()
{
    constexpr int notch = 15; // what the compositor takes a notch for, in pixels
    org_kde_kwin_fake_input_axis(m_input, WL_POINTER_AXIS_VERTICAL_SCROLL, wl_fixed_from_int(-notch));
    wl_display_roundtrip(m_client.display());
}

void FakeInput::send(quint32 key, quint32 modifiers)
{
    const auto setKey = [this](quint32 which, quint32 state) {
        org_kde_kwin_fake_input_keyboard_key(m_input, which, state);
    };
    for (const auto& [modifier, itsKey] : keysOfModifiers) {
        if ((modifiers & modifier) != 0)
            setKey(itsKey, WL_KEYBOARD_KEY_STATE_PRESSED);
    }
    setKey(key, WL_KEYBOARD_KEY_STATE_PRESSED);
    setKey(key, WL_KEYBOARD_KEY_STATE_RELEASED);
    for (const auto& [modifier, itsKey] : keysOfModifiers) {
        if ((modifiers & modifier) != 0)
            setKey(itsKey, WL_KEYBOARD_KEY_STATE_RELEASED);
    }
    wl_display_roundtrip(m_client.display());
}

} // namespace Clipboard::Testing
