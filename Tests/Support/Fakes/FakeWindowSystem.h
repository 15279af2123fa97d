#pragma once

#include "WindowSystem.h"

#include <QStringList>

namespace Clipboard::Testing {

/// A window manager that notes the calls in their order, by the names of the functions.
class FakeWindowSystem final : public WindowSystem
{
public:
    void prepareUtilityWindow(QWindow* /*window*/) override { calls.append(QStringLiteral("prepareUtilityWindow")); }
    void rememberFrontWindow() override { calls.append(QStringLiteral("rememberFrontWindow")); }
    void activate(QWindow* window) override
    {
        calls.append(QStringLiteral("activate"));
        window->requestActivate();
    }
    void restoreFrontWindow() override { calls.append(QStringLiteral("restoreFrontWindow")); }
    [[nodiscard]] QScreen* workScreen() const override { return screen; }
    [[nodiscard]] bool isCompositing() const override { return compositing; }
    void setCompositing(bool on)
    {
        compositing = on;
        emit compositingChanged();
    }

    QStringList calls;
    QScreen* screen = nullptr;
    bool compositing = true;
};

} // namespace Clipboard::Testing
