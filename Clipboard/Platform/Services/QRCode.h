#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace Clipboard::QRCode {

/// The QR code (ISO/IEC 18004, error correction level M, byte mode) of these bytes, black on white: 10 pixels a module,
/// a quiet zone of 4 modules around it. Nothing when there is no byte or more of them than a code can hold (2,331).
[[nodiscard]] std::optional<QImage> image(const QByteArray& bytes);

} // namespace Clipboard::QRCode
