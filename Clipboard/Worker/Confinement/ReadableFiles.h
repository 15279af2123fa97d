#pragma once

#include <QByteArrayList>

namespace Clipboard {

/// True when the kernel has Landlock (Linux 5.13) and lets it be used.
[[nodiscard]] bool canConfineFiles();

/// Leaves this thread, and those that it starts, with reading these files, and folders with all that is in them, and
/// with no other way to open or change any file. Never undone. False, with nothing changed, when the kernel cannot.
[[nodiscard]] bool allowReadingOnly(const QByteArrayList& paths);

} // namespace Clipboard
