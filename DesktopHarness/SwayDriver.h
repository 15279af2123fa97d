#pragma once

#include "WaylandDriver.h"
#include "WaylandPointer.h"

#include <QJsonObject>

namespace Clipboard::Testing {

class VirtualSession;

/// A person at a sway session: a keyboard and a mouse for hands, the compositor's tree of windows and the pixels of its
/// screen for eyes.
class SwayDriver final : public WaylandDriver
{
public:
    /// The session has to outlive it.
    explicit SwayDriver(VirtualSession& session);

    [[nodiscard]] bool plugIn() override;
    void movePointer(QPoint place) override;
    void click(QPoint place, int times, int button) override;
    void turnWheel(int notches) override;
    void pressButton() override;
    void releaseButton() override;
    [[nodiscard]] QStringList terminal(const QString& title, const QString& command) const override;
    [[nodiscard]] QList<Window> windowsOf(const QByteArray& program) const override;
    [[nodiscard]] std::optional<Window> activeWindow() const override;
    [[nodiscard]] QSize size() const override;
    void place(const Window& window, QRect geometry) override;

private:
    [[nodiscard]] WaylandKeyboard& keyboard() override { return *m_keyboard; }
    [[nodiscard]] QByteArray picture(QRect part) const override;
    void command(const QString& words) const;
    /// All windows, with what the compositor says of each.
    [[nodiscard]] QList<QJsonObject> windows() const;

    std::unique_ptr<WaylandKeyboard> m_keyboard;
    std::unique_ptr<WaylandPointer> m_pointer;
};

} // namespace Clipboard::Testing
