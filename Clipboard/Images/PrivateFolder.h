#pragma once

#include <QString>

namespace Clipboard {

/// Creates the folder, readable by its owner alone: a clipboard holds secrets. Folders on the way there are created
/// with the usual rights; one that exists keeps its own. A failure shows when something is written there.
void createPrivateFolder(const QString& path);

} // namespace Clipboard
