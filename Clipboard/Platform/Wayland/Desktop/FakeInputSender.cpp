#include "FakeInputSender.h"

#include <fake-input-client-protocol.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Clipboard {

namespace {

// The first version that has keys.
constexpr uint32_t protocolVersion = 4;

// As the kernel numbers keys (input-event-codes.h).
constexpr uint32_t keyLeftControl = 29;
constexpr uint32_t keyLeftShift = 42;
constexpr uint32_t keyV = 47;
constexpr uint32_t keyInsert = 110;
// With one of them down the chord would be another one: both of Control, Shift, Alt and Super.
constexpr uint32_t modifierKeys[] = {keyLeftControl, 97, keyLeftShift, 54, 56, 100, 125, 126};

} // namespace

std::unique_ptr<FakeInputSender> FakeInputSender::create(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                         std::shared_ptr<ClipboardEngine> engine, LayoutInForce layout)
{
    std::unique_ptr<FakeInputSender> sender(
        new FakeInputSender(std::move(toplevels), std::move(engine), std::move(layout)));
    if (sender->m_input == nullptr || org_kde_kwin_fake_input_get_version(sender->m_input) < protocolVersion)
        return nullptr;
    // The compositor may tell the user.
    org_kde_kwin_fake_input_authenticate(sender->m_input, "Tessaly", "to paste what was chosen from the history");
    return sender;
}

FakeInputSender::FakeInputSender(std::shared_ptr<Wayland::Toplevels> toplevels, std::shared_ptr<ClipboardEngine> engine,
                                 LayoutInForce layout)
    : ToplevelKeystrokeSender(std::move(toplevels), std::move(engine))
    , m_input(
          static_cast<org_kde_kwin_fake_input*>(connection().bind(org_kde_kwin_fake_input_interface, protocolVersion)))
    , m_places(connection())
    , m_layout(std::move(layout))
{
}

FakeInputSender::~FakeInputSender()
{
    if (m_input != nullptr)
        org_kde_kwin_fake_input_destroy(m_input);
}

/// There is one keyboard for the compositor, whoever types: what the user still holds is let go first, the key that is
/// about to be pressed as well. Whatever was not held stays as it is, and nothing is pressed again afterwards, because
/// by then the user may have let it go.
bool FakeInputSender::type(PasteChord chord)
{
    const auto send = [this](uint32_t key, uint32_t state) {
        org_kde_kwin_fake_input_keyboard_key(m_input, key, state);
    };
    std::vector<uint32_t> keys;
    if (chord != PasteChord::ShiftInsert)
        keys.push_back(keyLeftControl);
    if (chord != PasteChord::ControlV)
        keys.push_back(keyLeftShift);
    keys.push_back(chord == PasteChord::ShiftInsert ? keyInsert : m_places.placeOf('v', m_layout(), keyV));

    for (const uint32_t key : modifierKeys)
        send(key, WL_KEYBOARD_KEY_STATE_RELEASED);
    send(keys.back(), WL_KEYBOARD_KEY_STATE_RELEASED);
    for (const uint32_t key : keys)
        send(key, WL_KEYBOARD_KEY_STATE_PRESSED);
    std::for_each(keys.rbegin(), keys.rend(), [&](uint32_t key) { send(key, WL_KEYBOARD_KEY_STATE_RELEASED); });
    return true;
}

} // namespace Clipboard
