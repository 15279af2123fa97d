#pragma once

#include "Desktop.h"

#include <xcb/xcb.h>

namespace Clipboard::Testing {

class VirtualSession;

/// A person at an X11 session: xdotool for hands, xclip for the clipboard, the session's own connection for eyes.
class X11Driver final : public Desktop
{
public:
    /// The session has to outlive it.
    explicit X11Driver(VirtualSession& session);

    void press(const QStringList& chords) override;
    void type(const QString& text) override;
    void movePointer(QPoint place) override;
    void click(QPoint place, int times, int button) override;
    void turnWheel(int notches) override;
    void drag(const QList<QPoint>& path) override;
    void pressButton() override;
    void releaseButton() override;
    [[nodiscard]] QByteArray pointerShape() const override;
    /// Where the programs of X11 know the pointer to be.
    [[nodiscard]] QPoint pointer() const;
    void copy(const QByteArray& content, const QString& target) override;
    [[nodiscard]] std::unique_ptr<ForeignOwner> otherProgram() override;
    [[nodiscard]] QByteArray pasted(const QString& target) override;
    [[nodiscard]] QStringList terminal(const QString& title, const QString& command) const override;
    [[nodiscard]] QList<Window> windowsOf(const QByteArray& program) const override;
    [[nodiscard]] std::optional<Window> activeWindow() const override;
    [[nodiscard]] QSize size() const override;
    [[nodiscard]] QByteArray pixels() const override;
    void place(const Window& window, QRect geometry) override;

private:
    void hand(const QStringList& commands);
    void awaitRelease();
    [[nodiscard]] xcb_connection_t* xcb() const;
    [[nodiscard]] bool hasFocus(xcb_window_t window) const;
    [[nodiscard]] Window describe(xcb_window_t window, bool isUnmanaged) const;
    void collect(xcb_window_t window, const QByteArray& program, QList<Window>& found) const;

    VirtualSession& m_session;
};

} // namespace Clipboard::Testing
