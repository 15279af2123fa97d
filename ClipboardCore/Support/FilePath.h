#pragma once

#include <QByteArrayView>

/// Paths as texts; the file system is never asked.
namespace ClipboardCore::FilePath {

/// What stands after the last "/"; one at the end does not count. The root is its own name.
[[nodiscard]] QByteArrayView lastComponent(QByteArrayView path);

} // namespace ClipboardCore::FilePath
