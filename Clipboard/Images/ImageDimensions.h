#pragma once

#include <QString>

#include <optional>

/// The size of a picture file, as a text.
namespace Clipboard::ImageDimensions {

/// Width and height in pixels, grouped for the user's locale: "1,920 × 1,080". Nothing when the file or its size cannot
/// be read. Reads the file's header only, and each path once while it stays in a bounded cache: a file that goes later
/// keeps its label. Main thread only.
[[nodiscard]] std::optional<QString> label(const QString& path);

} // namespace Clipboard::ImageDimensions
