#pragma once

#include "KeystrokeSender.h"
#include "PasteChord.h"
#include "Toplevels.h"

#include <QDeadlineTimer>

#include <memory>

struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace Clipboard {

class ClipboardEngine;

/// Types the paste chord on a keyboard of its own, which the compositor takes for another one of the user's.
class VirtualKeyboardSender final : public KeystrokeSender
{
public:
    /// Null when the compositor takes no keyboards from programs. `engine` may be null: then nobody needs to wait for a
    /// write to be in force.
    [[nodiscard]] static std::unique_ptr<VirtualKeyboardSender> create(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                                       std::shared_ptr<ClipboardEngine> engine);
    ~VirtualKeyboardSender() override;

    [[nodiscard]] bool isTrusted() const override { return true; }
    void requestTrust() override {}
    [[nodiscard]] QString unavailableReason() const override { return {}; }
    void sendPaste(std::function<void(PasteResult)> done) override;

private:
    using Done = std::function<void(PasteResult)>;

    VirtualKeyboardSender(std::shared_ptr<Wayland::Toplevels> toplevels, std::shared_ptr<ClipboardEngine> engine);

    void waitForFocus(const QDeadlineTimer& deadline, const Done& done);
    void waitForWrites(const Done& done);
    [[nodiscard]] PasteResult send(PasteChord chord);
    [[nodiscard]] PasteChord chord() const;
    /// False when the compositor cannot be handed the keys.
    [[nodiscard]] bool plugIn();

    std::shared_ptr<Wayland::Toplevels> m_toplevels;
    std::shared_ptr<ClipboardEngine> m_engine;
    zwp_virtual_keyboard_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    zwp_virtual_keyboard_v1* m_keyboard = nullptr; // from the first paste on
};

} // namespace Clipboard
