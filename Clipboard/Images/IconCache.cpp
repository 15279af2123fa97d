#include "IconCache.h"

#include "Workspace.h"

namespace Clipboard {

namespace {

// Identifiers come from other programs' windows: a program that makes up new ones must not fill the memory.
constexpr qsizetype maxIcons = 500;

} // namespace

IconCache* IconCache::s_shared = nullptr;

IconCache::IconCache(const Workspace& workspace)
    : m_workspace(workspace)
{
    s_shared = this;
}

IconCache::~IconCache()
{
    if (s_shared == this)
        s_shared = nullptr;
}

IconCache& IconCache::shared()
{
    Q_ASSERT(s_shared);
    return *s_shared;
}

QIcon IconCache::icon(const std::optional<QString>& bundleID)
{
    if (!bundleID)
        return {};
    if (const auto known = m_icons.constFind(*bundleID); known != m_icons.cend())
        return *known;
    if (m_icons.size() >= maxIcons)
        m_icons.clear();
    return *m_icons.insert(*bundleID, m_workspace.applicationIcon(*bundleID));
}

} // namespace Clipboard
