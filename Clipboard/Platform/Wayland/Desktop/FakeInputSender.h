#pragma once

#include "KeyPlaces.h"
#include "ToplevelKeystrokeSender.h"

#include <functional>
#include <memory>

struct org_kde_kwin_fake_input;

namespace Clipboard {

/// Types the paste chord as if on the user's own keyboard, where the compositor of Plasma lets this program do so: its
/// desktop file asks for it.
class FakeInputSender final : public ToplevelKeystrokeSender
{
public:
    /// Says which of the keyboard's layouts is in force.
    using LayoutInForce = std::function<uint32_t()>;

    /// Null when the compositor does not. `engine` may be null: then nobody needs to wait for a write to be in force.
    [[nodiscard]] static std::unique_ptr<FakeInputSender> create(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                                 std::shared_ptr<ClipboardEngine> engine,
                                                                 LayoutInForce layout);
    ~FakeInputSender() override;

private:
    FakeInputSender(std::shared_ptr<Wayland::Toplevels> toplevels, std::shared_ptr<ClipboardEngine> engine,
                    LayoutInForce layout);

    [[nodiscard]] bool type(PasteChord chord) override;

    org_kde_kwin_fake_input* m_input;
    Wayland::KeyPlaces m_places;
    LayoutInForce m_layout;
};

} // namespace Clipboard
