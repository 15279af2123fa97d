#pragma once

#include <QImage>

namespace Clipboard {

/// The picture as a text recognizer reads it best: grey, without transparency, mostly dark on light, letters of a
/// screen doubled to the size of printed ones, and never more than a bounded number of pixels. Null for a null picture.
[[nodiscard]] QImage recognitionPicture(QImage picture);

} // namespace Clipboard
