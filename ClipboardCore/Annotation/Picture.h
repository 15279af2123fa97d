#pragma once

#include <QSize>

#include <cstdint>
#include <memory>
#include <span>

namespace ClipboardCore {

class BitmapContext;

/// A picture in memory that never changes: shared by pointer, and read from any thread.
///
/// A pixel is four bytes, one a component, with alpha premultiplied. Their order is the implementation's choice, the
/// same for all its pictures and bitmaps. Pictures of other formats are converted before they become a Picture.
class Picture
{
public:
    Picture() = default;
    virtual ~Picture() = default;
    Q_DISABLE_COPY_MOVE(Picture)

    /// In pixels; neither side is 0.
    [[nodiscard]] virtual QSize size() const = 0;
    /// Row `y` from the top: width × 4 bytes. `y` outside the picture is the caller's fault.
    [[nodiscard]] virtual std::span<const std::uint8_t> row(int y) const = 0;
    /// A transparent bitmap to draw into, in this picture's colour space when that is an RGB one, else in sRGB. Null
    /// when there is no memory for it.
    [[nodiscard]] virtual std::unique_ptr<BitmapContext> rgbaContext(QSize size) const = 0;
};

} // namespace ClipboardCore
