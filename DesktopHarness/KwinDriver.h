#pragma once

#include "FakeInput.h"
#include "PlasmaWindows.h"
#include "WaylandDriver.h"

namespace Clipboard::Testing {

/// A person at a kwin session: the compositor's fake input for hands, its list of windows for eyes.
class KwinDriver final : public WaylandDriver
{
public:
    /// The session has to outlive it.
    KwinDriver(VirtualSession& session, QSize size);

    [[nodiscard]] bool plugIn() override;
    void movePointer(QPoint place) override;
    void click(QPoint place, int times, int button) override;
    void turnWheel(int notches) override;
    void pressButton() override;
    void releaseButton() override;
    /// One of X11: that of Wayland in the other sessions waits for ever for this compositor's screen to show it.
    [[nodiscard]] QStringList terminal(const QString& title, const QString& command) const override;
    [[nodiscard]] QList<Window> windowsOf(const QByteArray& program) const override;
    [[nodiscard]] std::optional<Window> activeWindow() const override;
    [[nodiscard]] QSize size() const override { return m_size; }
    /// The windows place themselves: ends the program.
    void place(const Window& window, QRect geometry) override;

private:
    [[nodiscard]] WaylandKeyboard& keyboard() override { return *m_hands; }
    [[nodiscard]] QByteArray picture(QRect part) const override;

    QSize m_size;
    std::unique_ptr<FakeInput> m_hands;
    std::unique_ptr<PlasmaWindows> m_windows;
};

} // namespace Clipboard::Testing
