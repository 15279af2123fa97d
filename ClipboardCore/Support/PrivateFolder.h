#pragma once

#include <QString>

namespace ClipboardCore {

/// Creates the folder and those that are missing on the way to it, for their owner alone (XDG Base Directory
/// Specification, "Referencing this specification"): a clipboard holds secrets. One that exists keeps its rights. A
/// failure shows when something is written there.
void createPrivateFolder(const QString& path);

/// Takes everybody else's rights from a folder of ours.
void makePrivate(const QString& folder);
/// The same from the files and folders in it, of earlier versions or from another disk. Links stay as they are, and
/// what they lead to.
void makeContentPrivate(const QString& folder);

} // namespace ClipboardCore
