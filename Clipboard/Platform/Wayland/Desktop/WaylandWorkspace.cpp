#include "WaylandWorkspace.h"

#include <utility>

namespace Clipboard {

WaylandWorkspace::WaylandWorkspace(std::shared_ptr<Wayland::Toplevels> toplevels)
    : m_toplevels(std::move(toplevels))
{
    connect(m_toplevels.get(), &Wayland::Toplevels::frontChanged, this, [this] { readEntriesAgainIfChanged(); });
}

std::optional<Workspace::Application> WaylandWorkspace::frontmostApplication() const
{
    m_toplevels->catchUp();
    const auto application = m_toplevels->frontApplication();
    if (!application)
        return {};
    return applicationOf(
        {.applicationID = *application, .windowClass = *application, .windowInstance = {}, .executable = {}});
}

} // namespace Clipboard
