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
    /// Surfaces above the windows are in no list. That they are there the program has to say; that they can be seen it
    /// has not.
    [[nodiscard]] QList<Window> unlisted(const QList<Window>& reported) const override;
    [[nodiscard]] QByteArray pixels() const override { return picture({QPoint(), size()}); }

protected:
    /// The session has to outlive it.
    explicit WaylandDriver(VirtualSession& session);

    [[nodiscard]] VirtualSession& session() const { return m_session; }
    /// Eyes for the windows of X11, those among them that the compositor does not manage.
    [[nodiscard]] const X11Driver& x11() const { return m_x11; }
    [[nodiscard]] virtual WaylandKeyboard& keyboard() = 0;
    /// What the screen shows there, as PPM.
    [[nodiscard]] virtual QByteArray picture(QRect part) const = 0;

private:
    /// The screen has more than one colour there.
    [[nodiscard]] bool isPainted(QRect place) const;

    VirtualSession& m_session;
    X11Driver m_x11;
};

} // namespace Clipboard::Testing
