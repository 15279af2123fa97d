#pragma once

#include "Toplevels.h"

#include <QRect>

#include <map>
#include <memory>

struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace Clipboard::Wayland {

/// As the compositor of Plasma tells, and only those programs whose desktop file asks for it.
class PlasmaToplevels final : public Toplevels
{
public:
    /// Null when the compositor cannot be reached, or does not tell.
    [[nodiscard]] static std::shared_ptr<PlasmaToplevels> follow();
    ~PlasmaToplevels() override;

    bool activateOurs(const QString& title) override;
    /// The compositor takes the one with the pointer.
    [[nodiscard]] QString wantedOutput() const override { return outputOf(lastActive()); }

private:
    struct State
    {
        QString title;
        QRect geometry;       // on all outputs together
        bool isAsked = false; // is yet to be described
    };

    using Handle = org_kde_plasma_window;

    using Toplevels::Toplevels;
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void end(Handle* handle);
    [[nodiscard]] bool isAsking() const override;
    /// The one that has its middle, as the toolkit calls it.
    [[nodiscard]] QString outputOf(Window window) const override;

    org_kde_plasma_window_management* m_manager = nullptr;
    std::map<Handle*, State> m_states;
};

} // namespace Clipboard::Wayland
