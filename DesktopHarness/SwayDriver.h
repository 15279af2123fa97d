#pragma once

#include "WaylandKeyboard.h"
#include "WaylandPointer.h"
#include "X11Driver.h"

#include <QJsonObject>

namespace Clipboard::Testing {

class VirtualSession;

/// A person at a sway session: a keyboard and a mouse for hands, wl-clipboard for the clipboard, the compositor's tree
/// of windows and the pixels of its screen for eyes.
class SwayDriver final : public Desktop
{
public:
    /// The session has to outlive it.
    explicit SwayDriver(VirtualSession& session);
    /// To be called once the compositor runs. False when it takes no keyboard or mouse.
    [[nodiscard]] bool plugIn();

    void press(const QStringList& chords) override;
    void type(const QString& text) override;
    void movePointer(QPoint place) override;
    void click(QPoint place, int times, int button) override;
    void drag(const QList<QPoint>& path) override;
    void pressButton() override;
    void releaseButton() override;
    /// Not to be had of this compositor.
    [[nodiscard]] QByteArray pointerShape() const override { return {}; }
    void copy(const QByteArray& content, const QString& target) override;
    [[nodiscard]] std::unique_ptr<ForeignOwner> otherProgram() override;
    [[nodiscard]] QByteArray pasted(const QString& target) override;
    [[nodiscard]] QStringList terminal(const QString& title, const QString& command) const override;
    [[nodiscard]] QList<Window> windowsOf(const QByteArray& program) const override;
    [[nodiscard]] QList<Window> unlisted(const QList<Window>& reported) const override;
    [[nodiscard]] std::optional<Window> activeWindow() const override;
    [[nodiscard]] QSize size() const override;
    [[nodiscard]] QByteArray pixels() const override;
    void place(const Window& window, QRect geometry) override;

private:
    void command(const QString& words) const;
    /// All windows, with what the compositor says of each.
    [[nodiscard]] QList<QJsonObject> windows() const;
    /// The screen has more than one colour there.
    [[nodiscard]] bool isPainted(QRect place) const;

    VirtualSession& m_session;
    std::unique_ptr<WaylandKeyboard> m_keyboard;
    std::unique_ptr<WaylandPointer> m_pointer;
    X11Driver m_x11; // eyes for the windows of X11, those among them that the compositor does not manage
};

} // namespace Clipboard::Testing
