#pragma once

#include "XdgWorkspace.h"

namespace Clipboard {

/// A session that does not tell which application is in front.
class NullWorkspace final : public XdgWorkspace
{
public:
    [[nodiscard]] std::optional<Application> frontmostApplication() const override { return {}; }
    [[nodiscard]] QIcon applicationIcon(const QString& /*bundleID*/) const override { return {}; }
    [[nodiscard]] QIcon fileIcon(const QString& /*path*/) const override { return {}; }
};

} // namespace Clipboard
