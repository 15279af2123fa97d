#pragma once

#include "KeystrokeSender.h"
#include "PasteChord.h"
#include "Toplevels.h"

#include <QDeadlineTimer>

#include <memory>

namespace Clipboard {

class ClipboardEngine;

/// Pastes where a Wayland compositor tells which window is active, and lets programs type; how is the business of the
/// classes below this one.
class ToplevelKeystrokeSender : public KeystrokeSender
{
public:
    [[nodiscard]] bool isTrusted() const override { return true; }
    void requestTrust() override {}
    [[nodiscard]] QString unavailableReason() const override { return {}; }
    void sendPaste(std::function<void(PasteResult)> done) override;

protected:
    /// `engine` may be null: then nobody needs to wait for a write to be in force.
    ToplevelKeystrokeSender(std::shared_ptr<Wayland::Toplevels> toplevels, std::shared_ptr<ClipboardEngine> engine);
    [[nodiscard]] Wayland::WaylandConnection& connection() { return m_toplevels->connection(); }

    /// Types the chord into the window with the keyboard. False when the compositor cannot be handed the keys.
    [[nodiscard]] virtual bool type(PasteChord chord) = 0;

private:
    using Done = std::function<void(PasteResult)>;

    void waitForFocus(const QDeadlineTimer& deadline, const Done& done);
    void waitForWrites(const Done& done);
    [[nodiscard]] PasteResult send();
    [[nodiscard]] PasteChord chord() const;

    std::shared_ptr<Wayland::Toplevels> m_toplevels;
    std::shared_ptr<ClipboardEngine> m_engine;
};

} // namespace Clipboard
