#pragma once

#include "FrontWindow.h"
#include "Keyboard.h"
#include "KeystrokeSender.h"
#include "PasteChord.h"
#include "SpareKey.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <optional>
#include <vector>

namespace Clipboard {

class ClipboardEngine;

/// Types the paste chord through XTEST, which every program takes for the user's own keys.
class X11KeystrokeSender final : public KeystrokeSender
{
public:
    /// `engine` may be null: then nobody needs to wait for a write to be in force. `limits` is why not all windows of
    /// the session can be reached; empty when they can.
    X11KeystrokeSender(std::shared_ptr<X11::X11Session> session, std::shared_ptr<X11::FrontWindow> frontWindow,
                       std::shared_ptr<ClipboardEngine> engine, QString limits = {});

    /// True when the server can be told of keys.
    [[nodiscard]] static bool isPossible(const X11::X11Session& session);

    [[nodiscard]] bool isTrusted() const override { return true; }
    void requestTrust() override {}
    [[nodiscard]] QString unavailableReason() const override { return m_limits; }
    void sendPaste(std::function<void(PasteResult)> done) override;

private:
    using Done = std::function<void(PasteResult)>;
    using Keys = std::vector<xcb_keycode_t>;

    void waitForFocus(const QDeadlineTimer& deadline, const Done& done);
    void waitForWrites(PasteChord chord, const Done& done);
    [[nodiscard]] PasteResult send(PasteChord chord);
    [[nodiscard]] std::optional<Keys> keysOf(PasteChord chord);
    [[nodiscard]] std::optional<xcb_keycode_t> keyWith(X11::Keyboard& keyboard, xcb_keysym_t symbol);
    void releaseHeldKeys();
    void type(const Keys& keys);
    void fake(uint8_t eventType, xcb_keycode_t key);

    std::shared_ptr<X11::X11Session> m_session;
    std::shared_ptr<X11::FrontWindow> m_frontWindow;
    std::shared_ptr<ClipboardEngine> m_engine;
    QString m_limits;
    std::unique_ptr<X11::SpareKey> m_spareKey; // while a program may still look up what it stands for
    QTimer m_spareKeyReturn;
};

} // namespace Clipboard
