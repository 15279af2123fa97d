#pragma once

#include "ClickCatcher.h"
#include "LayerSurface.h"
#include "Toplevels.h"
#include "WindowSystem.h"

#include <memory>
#include <vector>

namespace Clipboard {

/// Windows that the program places itself, above those of the compositor, by layer shell. The compositor gives the
/// focus back when one of them goes.
class WaylandWindowSystem final : public WindowSystem
{
public:
    /// Set before the toolkit starts, they have it leave such windows to us, and each where it was put.
    static void prepareToolkit();

    /// Set before the toolkit starts, it has it draw with the processor alone, unless the user wants otherwise: all our
    /// windows are drawn so, and what drives graphics cards takes tens of megabytes.
    static void forgoAcceleration();
    /// After it has started: programs that are started from here draw as they like.
    static void endForgoing();

    /// Whether the toolkit has a compositor for its display and has lost it. Any thread.
    [[nodiscard]] static bool isDisplayLost();

    /// Null when the toolkit's windows are not those of a compositor with layer shell.
    [[nodiscard]] static std::unique_ptr<WaylandWindowSystem> create(std::shared_ptr<Wayland::Toplevels> toplevels);
    ~WaylandWindowSystem() override;

    void prepare(QWindow* window, Role role) override;
    void setShadow(QWindow* window, const QMargins& shadow) override;
    /// The list of windows knows which one was in front.
    void rememberFrontWindow() override {}
    void activate(QWindow* window) override;
    void restoreFrontWindow() override {}
    /// That of the active window. Without one, and until the compositor has told where a new one is, it is a guess:
    /// that of the panel the last time. The compositor knows, and says where it has put the panel.
    [[nodiscard]] QScreen* workScreen() const override;
    /// A program hears of the pointer only while it is over one of its windows.
    [[nodiscard]] std::optional<QPoint> pointer() const override { return {}; }
    [[nodiscard]] bool isCompositing() const override { return true; }
    [[nodiscard]] bool canFade() const override { return false; }

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    WaylandWindowSystem(std::shared_ptr<Wayland::LayerShell> shell, std::shared_ptr<Wayland::Toplevels> toplevels);
    [[nodiscard]] static QScreen* screenNamed(const QString& name);
    void catchClicksBeside(QWindow* panel);
    void dropCatchers();
    void sparePanel();

    std::shared_ptr<Wayland::LayerShell> m_shell;
    std::shared_ptr<Wayland::Toplevels> m_toplevels;
    QWindow* m_panelWindow = nullptr;
    Wayland::LayerSurface* m_panel = nullptr;                       // the window's
    std::vector<std::unique_ptr<Wayland::ClickCatcher>> m_catchers; // while the panel is shown
    std::vector<std::unique_ptr<Wayland::ClickCatcher>> m_dropped;  // until the toolkit is done with them
};

} // namespace Clipboard
