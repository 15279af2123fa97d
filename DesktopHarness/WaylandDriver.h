#pragma once

#include "WaylandKeyboard.h"
#include "X11Driver.h"

namespace Clipboard::Testing {

/// A person at a Wayland session, as far as it does not matter whose compositor it has: wl-clipboard for the clipboard.
class WaylandDriver : public Desktop
{
public:
    /// To be called once the compositor runs. False when it takes no keyboard or mouse.
    [[nodiscard]] virtual bool plugIn() = 0;

    void press(const QStringList& chords) override;
    void type(const QString& text) override;
    void drag(const QList<QPoint>& path) override;
    /// No compositor tells.
    [[nodiscard]] QByteArray pointerShape() const override { return {}; }
    void copy(const QByteArray& content, const QString& target) override;
    [[nodiscard]] std::unique_ptr<ForeignOwner> otherProgram() override;
    [[nodiscard]] QByteArray pasted(const QString& target) override;

protected:
    /// The session has to outlive it.
    explicit WaylandDriver(VirtualSession& session);

    [[nodiscard]] VirtualSession& session() const { return m_session; }
    /// Eyes for the windows of X11, those among them that the compositor does not manage.
    [[nodiscard]] const X11Driver& x11() const { return m_x11; }
    [[nodiscard]] virtual WaylandKeyboard& keyboard() = 0;

private:
    VirtualSession& m_session;
    X11Driver m_x11;
};

} // namespace Clipboard::Testing
