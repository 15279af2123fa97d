#pragma once

#include "HotKeyGrabber.h"
#include "Keyboard.h"

#include <QTimer>

namespace Clipboard {

/// The hot key by a passive grab on the root window, whatever lock keys are on and whatever the layout becomes.
class X11HotKeyGrabber final : public HotKeyGrabber
{
public:
    explicit X11HotKeyGrabber(const std::shared_ptr<X11::X11Session>& session);
    ~X11HotKeyGrabber() override;

    void grab() override;
    [[nodiscard]] QString holder() const override { return QStringLiteral("x11"); }

private:
    struct Combination
    {
        xcb_keycode_t key;
        uint16_t modifiers;

        [[nodiscard]] bool operator==(const Combination&) const = default;
    };
    using Combinations = std::vector<Combination>;

    [[nodiscard]] Combinations wantedCombinations();
    [[nodiscard]] std::vector<xcb_keycode_t> wantedKeys();
    [[nodiscard]] bool grabAll(const Combinations& combinations);
    void ungrab(const Combinations& combinations);
    void handle(const xcb_generic_event_t* event);
    void keyPressed(const xcb_key_press_event_t& event);
    void layoutChanged();
    void checkHeldKey();

    std::shared_ptr<X11::X11Session> m_session;
    X11::Keyboard m_keyboard;
    Combinations m_grabbed;
    xcb_keycode_t m_heldKey = 0;
    QTimer m_heldKeyCheck;  // runs only while the key is held down
    QTimer m_layoutChanged; // one change comes as several events
    bool m_isWanted = false;
};

} // namespace Clipboard
