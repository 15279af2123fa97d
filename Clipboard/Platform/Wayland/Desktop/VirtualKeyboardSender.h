#pragma once

#include "ToplevelKeystrokeSender.h"

#include <memory>

struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace Clipboard {

/// Types the paste chord on a keyboard of its own, which the compositor takes for another one of the user's.
class VirtualKeyboardSender final : public ToplevelKeystrokeSender
{
public:
    /// Null when the compositor takes no keyboards from programs. `engine` may be null: then nobody needs to wait for a
    /// write to be in force.
    [[nodiscard]] static std::unique_ptr<VirtualKeyboardSender> create(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                                       std::shared_ptr<ClipboardEngine> engine);
    ~VirtualKeyboardSender() override;

private:
    VirtualKeyboardSender(std::shared_ptr<Wayland::Toplevels> toplevels, std::shared_ptr<ClipboardEngine> engine);

    [[nodiscard]] bool type(PasteChord chord) override;
    /// False when the compositor cannot be handed the keys.
    [[nodiscard]] bool plugIn();

    zwp_virtual_keyboard_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    zwp_virtual_keyboard_v1* m_keyboard = nullptr; // from the first paste on
};

} // namespace Clipboard
