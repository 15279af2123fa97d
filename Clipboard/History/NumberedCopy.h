#pragma once

#include <QString>

#include <optional>

namespace Clipboard {

/// Copies a file into a folder under `name`, its own one unless another is given, or, where that is taken, with the
/// first free number from 2 before its extension: "shot.png", "shot 2.png". Nothing that exists is ever replaced, not
/// even what another program creates at the same moment. The path of the copy, once it is on the disk; nothing, with no
/// copy left behind, when the source is no readable file or the folder does not take it. Blocking: never on the main
/// thread.
[[nodiscard]] std::optional<QString> copyNumbered(const QString& sourcePath, const QString& folder,
                                                  const QString& name = {});

} // namespace Clipboard
