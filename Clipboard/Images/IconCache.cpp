#include "IconCache.h"

#include "Workspace.h"

#include <QImage>
#include <QPixmap>

#include <algorithm>
#include <memory>

namespace Clipboard {

namespace {

// Identifiers come from other programs' windows: a program that makes up new ones must not fill the memory.
constexpr qsizetype maxIcons = 500;

constexpr int probeSize = 16;

/// Some drawn icons use what the SVG reader does not know and come out empty: a blank place is worse than none.
bool isBlank(const QIcon& icon)
{
    const QImage probe = icon.pixmap(probeSize).toImage().convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < probe.height(); ++y) {
        const uchar* row = probe.constScanLine(y);
        if (std::any_of(row, row + probe.width(), [](uchar alpha) { return alpha != 0; }))
            return false;
    }
    return true;
}

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
    if (isBlank(icon))
        icon = {};
    m_icons.insert(*bundleID, std::make_unique<QIcon>(icon).release());
    return icon;
}

} // namespace Clipboard
