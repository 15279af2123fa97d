#pragma once

#include "Keyboard.h"
#include "X11Session.h"

#include <QObject>

#include <bitset>
#include <memory>

namespace Clipboard::X11 {

/// What the user does with mouse and keyboard, in whichever window, as XInput 2 tells it in raw events. Silent on a
/// server without that extension.
class UserActivity final : public QObject
{
    Q_OBJECT
public:
    explicit UserActivity(std::shared_ptr<X11Session> session);

    /// Tells from now on until stop().
    void follow();
    void stop();

    /// The pointer is elsewhere than at the latest click or key since follow().
    [[nodiscard]] bool hasMovedPointer() const;

signals:
    /// A button went down; the wheel's are none.
    void clicked();
    /// A key went down that is no modifier and was no shortcut: without Control, Alt and Super.
    void typed();

private:
    void select(uint32_t events);
    void handle(const xcb_generic_event_t* event);
    void keyPressed(uint32_t key);

    std::shared_ptr<X11Session> m_session;
    Keyboard m_keyboard;
    uint8_t m_extension = 0; // the extension's number, by which its events are told
    bool m_isFollowing = false;
    QPoint m_pointer; // at the latest click or key
    std::bitset<256> m_modifiers;
    std::bitset<256> m_shortcutModifiers;
    std::bitset<256> m_pressed;
};

} // namespace Clipboard::X11
