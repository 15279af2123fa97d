#pragma once

#include "KeystrokeSender.h"
#include "X11/FrontWindow.h"
#include "X11/Keyboard.h"
#include "X11/PasteChord.h"
#include "X11/SelectionEngine.h"

#include <QDeadlineTimer>

namespace Clipboard {

/// Types the paste chord through XTEST, which every program takes for the user's own keys.
class X11KeystrokeSender final : public KeystrokeSender
{
public:
    /// `engine` may be null: then nobody needs to wait for a write to be in force.
    X11KeystrokeSender(std::shared_ptr<X11::X11Session> session, std::shared_ptr<X11::FrontWindow> frontWindow,
                       std::shared_ptr<X11::SelectionEngine> engine);

    /// True when the server can be told of keys.
    [[nodiscard]] static bool isPossible(const X11::X11Session& session);

    [[nodiscard]] bool isTrusted() const override { return true; }
    void requestTrust() override {}
    [[nodiscard]] QString unavailableReason() const override { return {}; }
    void sendPaste(std::function<void()> done) override;

private:
    void waitForFocus(const QDeadlineTimer& deadline, X11::PasteChord chord, const std::function<void()>& done);
    void releaseHeldKeys();
    void type(X11::PasteChord chord);
    void fake(uint8_t eventType, xcb_keycode_t key);

    std::shared_ptr<X11::X11Session> m_session;
    std::shared_ptr<X11::FrontWindow> m_frontWindow;
    std::shared_ptr<X11::SelectionEngine> m_engine;
};

} // namespace Clipboard
