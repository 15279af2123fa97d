#pragma once

#include "WindowSystem.h"

#include <QCursor>
#include <QGuiApplication>

namespace Clipboard {

/// No window manager to talk to: the panel gets what Qt alone can do.
class NullWindowSystem final : public WindowSystem
{
public:
    void prepare(QWindow* /*window*/, Role /*role*/) override {}
    void setShadow(QWindow* /*window*/, const QMargins& /*shadow*/) override {}
    void rememberFrontWindow() override {}
    void activate(QWindow* window) override
    {
        window->raise();
        window->requestActivate();
    }
    void restoreFrontWindow() override {}
    [[nodiscard]] QScreen* workScreen() const override { return QGuiApplication::screenAt(QCursor::pos()); }
    [[nodiscard]] bool isCompositing() const override { return false; }
};

} // namespace Clipboard
