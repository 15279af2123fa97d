#pragma once

#include "History/ClipItem.h"

class QPainter;
class QRectF;

namespace Clipboard {

class FileKinds;
class Thumbs;

/// The small square in front of an entry: the picture itself, a swatch of the colour, or a tile with the type's sign.
/// A picture that is not at hand is loaded meanwhile (Thumbs::finished tells) and shows as a tile until then; so does a
/// folder as a file (FileKinds::found).
void paintRowThumb(QPainter& painter, const QRectF& square, const ClipboardCore::ClipItem& item, Thumbs& thumbs,
                   FileKinds& files);

} // namespace Clipboard
