#pragma once

#include <QSize>
#include <QString>

namespace Clipboard::Testing {

/// An invented history that shows a bit of everything: 128 entries, the first of them in a fixed order, as old as their
/// labels say at the moment they are written.
///
/// Writes the history file, the pictures it names (drawn from the SVG files in `drawings`), and the desktop entries of
/// the applications they were copied in below `home`. False when something could not be written.
[[nodiscard]] bool writeSampleHistory(const QString& dataFolder, const QString& home, const QString& drawings);

/// The pixels of the picture in the row of that name.
inline constexpr QSize orderPicture{1600, 1000};

/// The rows that scenes go to, counted from the top of the list.
enum class SampleRow { code, text, link, color, landscape, file, letter, slug, tides, order };

} // namespace Clipboard::Testing
