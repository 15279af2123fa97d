#pragma once

#include "EntryWorkspace.h"
#include "Toplevels.h"

#include <memory>

namespace Clipboard {

/// The active window as a Wayland compositor tells of it.
class WaylandWorkspace final : public EntryWorkspace
{
public:
    explicit WaylandWorkspace(std::shared_ptr<Wayland::Toplevels> toplevels);

    [[nodiscard]] std::optional<Application> frontmostApplication() const override;

private:
    std::shared_ptr<Wayland::Toplevels> m_toplevels;
};

} // namespace Clipboard
