#pragma once

#include <QCache>
#include <QIcon>
#include <QString>

#include <optional>

namespace Clipboard {

class Workspace;

/// Application icons by bundle identifier; what is not found is remembered too. Main thread only.
class IconCache final
{
public:
    /// Becomes what shared() answers. `workspace` must outlive it.
    explicit IconCache(const Workspace& workspace);
    ~IconCache();
    Q_DISABLE_COPY_MOVE(IconCache)

    /// The one that the composition root owns; it must exist.
    [[nodiscard]] static IconCache& shared();

    /// Null when there is no identifier or no icon for it.
    [[nodiscard]] QIcon icon(const std::optional<QString>& bundleID);

private:
    const Workspace& m_workspace;
    QCache<QString, QIcon> m_icons;
    static IconCache* s_shared;
};

} // namespace Clipboard
