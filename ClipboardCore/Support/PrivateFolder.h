#pragma once

#include <QString>

namespace ClipboardCore {

/// Creates the folder and those that are missing on the way to it, for their owner alone (XDG Base Directory
/// Specification, "Referencing this specification"): a clipboard holds secrets. One that exists keeps its rights. A
/// failure shows when something is written there.
void createPrivateFolder(const QString& path);

} // namespace ClipboardCore
