#include "IconCache.h"

#include "Workspace.h"

#include <memory>

namespace Clipboard {

namespace {

// Identifiers come from other programs' windows: a program that makes up new ones must not fill the memory.
constexpr qsizetype maxIcons = 500;

} // namespace

IconCache* IconCache::s_shared = nullptr;

IconCache::IconCache(const Workspace& workspace)
    : m_workspace(workspace)
    , m_icons(maxIcons)
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
    if (const QIcon* known = m_icons.object(*bundleID))
        return *known;
    QIcon icon = m_workspace.applicationIcon(*bundleID);
    m_icons.insert(*bundleID, std::make_unique<QIcon>(icon).release());
    return icon;
}

} // namespace Clipboard
