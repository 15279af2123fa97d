#include "QRCode.h"

#include <qrencode.h>

#include <memory>

namespace Clipboard {

namespace {

constexpr int pixelsPerModule = 10;
constexpr int quietZone = 4;          // modules
constexpr qsizetype maxBytes = 2331;  // of version 40 at level M; no reason to look at more
constexpr unsigned char darkBit = 1U; // in the library's module bytes

} // namespace

std::optional<QImage> QRCode::image(const QByteArray& bytes)
{
    if (bytes.isEmpty() || bytes.size() > maxBytes)
        return std::nullopt;
    constexpr int smallestVersionThatFits = 0;
    const std::unique_ptr<::QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeData(static_cast<int>(bytes.size()), reinterpret_cast<const unsigned char*>(bytes.constData()),
                          smallestVersionThatFits, QR_ECLEVEL_M),
        &QRcode_free);
    if (!code)
        return std::nullopt;

    // One bit a pixel: a large code takes 200 KB instead of 6 MB, and turns into a PNG in no time.
    QImage modules(code->width + 2 * quietZone, code->width + 2 * quietZone, QImage::Format_Mono);
    modules.setColorTable({qRgb(0xff, 0xff, 0xff), qRgb(0, 0, 0)});
    modules.fill(0);
    const unsigned char* module = code->data;
    for (int y = 0; y < code->width; ++y) {
        for (int x = 0; x < code->width; ++x, ++module)
            modules.setPixel(quietZone + x, quietZone + y, *module & darkBit);
    }
    return modules.scaled(modules.size() * pixelsPerModule);
}

} // namespace Clipboard
