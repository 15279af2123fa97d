#pragma once

#include "Toplevels.h"

#include <memory>
#include <set>

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

private:
    using Handle = org_kde_plasma_window;

    using Toplevels::Toplevels;
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void end(Handle* handle);
    [[nodiscard]] bool isAsking() const override { return !m_asked.empty(); }

    org_kde_plasma_window_management* m_manager = nullptr;
    std::set<Handle*> m_handles;
    std::set<Handle*> m_asked; // those among them that are yet to be described
};

} // namespace Clipboard::Wayland
