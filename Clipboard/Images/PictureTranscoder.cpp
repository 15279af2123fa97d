#include "PictureTranscoder.h"

#include "DeflatedPixels.h"
#include "PictureReading.h"

#include <QColorSpace>

#include <spng.h>

#include <cstring>
#include <memory>

namespace Clipboard {

namespace {

// Deflate's fastest level: a large screenshot must be stored before the user calls up the panel.
// docs/decisions/0004-picture-codec.md has the measurements.
constexpr int compressionLevel = 1;
// Only wraps the pixels: what is left when somebody waits for the end of the program.
constexpr int storedLevel = 0;

// Pixels that take as much when they are compressed are a photograph's or finer: to compress them anew would take a
// fifth of a second at least, several when there are 16 bits a channel, and save nothing.
constexpr qsizetype keptBytes = qsizetype{4} * 1024 * 1024;
constexpr QByteArrayView endOfPicture("\0\0\0\0IEND\xae\x42\x60\x82", 12);

/// What an encoding may cost. It stops half-way once `hurry` is requested.
struct Effort
{
    int level = compressionLevel;
    std::stop_token hurry;
};

/// Encodes as well as there is time for.
template <typename Encode>
std::optional<QByteArray> inTime(const std::stop_token& hurry, Encode encode)
{
    if (!hurry.stop_requested()) {
        std::optional<QByteArray> png = encode(Effort{compressionLevel, hurry});
        if (png || !hurry.stop_requested())
            return png;
    }
    return encode(Effort{storedLevel, {}});
}

/// One cheap filter makes a photograph smaller and, because there is less to compress, faster. Palette indexes and
/// packed pixels are no amounts whose difference means anything.
int filterFor(const spng_ihdr& header, int level)
{
    const bool packed = header.color_type == SPNG_COLOR_TYPE_INDEXED || header.bit_depth < 8;
    return packed || level == storedLevel ? int{SPNG_DISABLE_FILTERING} : int{SPNG_FILTER_CHOICE_SUB};
}

// Chunks other than pixels are palettes and colour profiles; a profile of a few megabytes is already exotic.
constexpr size_t maxChunkBytes = size_t{16} * 1024 * 1024;
constexpr uint32_t maxSide = 0x7fffffff; // what the format allows
// The codec holds four rows or so on either side: a picture that is one row of the most that may be decoded would take
// two gigabytes. This is a hundred times a screen's row, and that of no picture.
constexpr size_t maxRowBytes = size_t{16} * 1024 * 1024;

struct ContextDeleter
{
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

int appendToByteArray(spng_ctx* /*context*/, void* user, void* bytes, size_t length)
{
    static_cast<QByteArray*>(user)->append(static_cast<const char*>(bytes), static_cast<qsizetype>(length));
    return SPNG_OK;
}

/// Takes the rows of one picture, top to bottom, and makes a PNG of them.
class Encoder
{
public:
    Encoder(spng_ihdr header, const Effort& effort)
        : m_hurry(effort.hurry)
        , m_context(spng_ctx_new(SPNG_CTX_ENCODER))
    {
        header.interlace_method = SPNG_INTERLACE_NONE;
        spng_set_png_stream(m_context.get(), appendToByteArray, &m_png);
        spng_set_option(m_context.get(), SPNG_IMG_COMPRESSION_LEVEL, effort.level);
        spng_set_option(m_context.get(), SPNG_FILTER_CHOICE, filterFor(header, effort.level));
        spng_set_ihdr(m_context.get(), &header);
    }

    [[nodiscard]] spng_ctx* context() const { return m_context.get(); }

    void setProfile(const QColorSpace& colorSpace)
    {
        if (!colorSpace.isValid() || colorSpace == QColorSpace(QColorSpace::SRgb))
            return;
        m_profile = colorSpace.iccProfile();
        spng_iccp profile{};
        std::strncpy(profile.profile_name, "ICC profile", sizeof profile.profile_name - 1);
        profile.profile_len = static_cast<size_t>(m_profile.size());
        profile.profile = m_profile.data();
        spng_set_iccp(m_context.get(), &profile);
    }

    [[nodiscard]] bool begin()
    {
        return spng_encode_image(m_context.get(), nullptr, 0, SPNG_FMT_PNG,
                                 SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE) == SPNG_OK;
    }

    [[nodiscard]] bool addRow(const void* row, size_t length)
    {
        if (m_hurry.stop_requested())
            return false;
        const int result = spng_encode_row(m_context.get(), row, length);
        m_complete = result == SPNG_EOI;
        return result == SPNG_OK || m_complete;
    }

    /// In place of any rows: pixels that are compressed already, as chunks.
    [[nodiscard]] QByteArray finishWith(QByteArrayView pixels)
    {
        m_png.reserve(m_png.size() + pixels.size() + endOfPicture.size());
        m_png.append(pixels);
        m_png.append(endOfPicture);
        return std::move(m_png);
    }

    [[nodiscard]] std::optional<QByteArray> finish()
    {
        if (!m_complete)
            return std::nullopt;
        return std::move(m_png);
    }

private:
    // Both outlive the context, which writes into the one and reads the other when it begins.
    QByteArray m_png;
    QByteArray m_profile;
    std::stop_token m_hurry;
    Context m_context;
    bool m_complete = false;
};

/// Hands a chunk's value from the decoder to the encoder when the picture has that chunk.
template <typename Value>
void copyChunk(spng_ctx* from, spng_ctx* to, int (*get)(spng_ctx*, Value*), int (*set)(spng_ctx*, Value*))
{
    Value value{};
    if (get(from, &value) == SPNG_OK)
        set(to, &value);
}

void copyPresentation(spng_ctx* from, spng_ctx* to)
{
    copyChunk(from, to, spng_get_plte, spng_set_plte);
    copyChunk(from, to, spng_get_trns, spng_set_trns);
    copyChunk(from, to, spng_get_iccp, spng_set_iccp);
    copyChunk(from, to, spng_get_chrm_int, spng_set_chrm_int);
    copyChunk(from, to, spng_get_phys, spng_set_phys);
    uint8_t renderingIntent = 0;
    if (spng_get_srgb(from, &renderingIntent) == SPNG_OK)
        spng_set_srgb(to, renderingIntent);
    uint32_t gamma = 0;
    if (spng_get_gama_int(from, &gamma) == SPNG_OK)
        spng_set_gama_int(to, gamma);
}

/// Rows as the decoder produces them; only one is in memory.
bool streamRows(spng_ctx* decoder, Encoder& encoder, size_t stride)
{
    if (spng_decode_image(decoder, nullptr, 0, SPNG_FMT_PNG, SPNG_DECODE_PROGRESSIVE) != SPNG_OK)
        return false;
    QByteArray row(static_cast<qsizetype>(stride), Qt::Uninitialized);
    int result = SPNG_OK;
    while (result == SPNG_OK) {
        result = spng_decode_row(decoder, row.data(), stride);
        if ((result != SPNG_OK && result != SPNG_EOI) || !encoder.addRow(row.constData(), stride))
            return false;
    }
    return true;
}

/// An interlaced picture's rows are complete only when all of it is decoded.
bool decodeThenEncodeRows(spng_ctx* decoder, Encoder& encoder, size_t stride, size_t size)
{
    QByteArray pixels(static_cast<qsizetype>(size), Qt::Uninitialized);
    if (spng_decode_image(decoder, pixels.data(), size, SPNG_FMT_PNG, 0) != SPNG_OK)
        return false;
    for (size_t offset = 0; offset < size; offset += stride) {
        if (!encoder.addRow(pixels.constData() + offset, stride))
            return false;
    }
    return true;
}

/// The compressed pixels of a picture that had better keep them: sound, many, and compressed in earnest.
std::optional<QByteArrayView> pixelsToKeep(const QByteArray& picture, const spng_ihdr& header, size_t size)
{
    if (picture.size() < keptBytes || header.interlace_method != SPNG_INTERLACE_NONE)
        return std::nullopt;
    const auto rows = static_cast<qsizetype>(header.height);
    const auto pixels = DeflatedPixels::sound(picture, {rows, static_cast<qsizetype>(size) / rows});
    const bool isWorthIt = pixels && pixels->size() >= keptBytes && pixels->size() < static_cast<qsizetype>(size);
    return isWorthIt ? pixels : std::nullopt;
}

std::optional<QByteArray> fromPNG(const QByteArray& picture, const Effort& effort)
{
    const Context decoder(spng_ctx_new(0));
    spng_set_image_limits(decoder.get(), maxSide, maxSide);
    spng_set_chunk_limits(decoder.get(), maxChunkBytes, 2 * maxChunkBytes);
    spng_set_png_buffer(decoder.get(), picture.constData(), static_cast<size_t>(picture.size()));

    spng_ihdr header{};
    size_t size = 0;
    if (spng_get_ihdr(decoder.get(), &header) != SPNG_OK ||
        spng_decoded_image_size(decoder.get(), SPNG_FMT_PNG, &size) != SPNG_OK ||
        size > static_cast<size_t>(PictureReading::maxDecodedBytes))
        return std::nullopt;

    const size_t stride = size / header.height;
    if (stride > maxRowBytes)
        return std::nullopt;
    Encoder encoder(header, effort);
    copyPresentation(decoder.get(), encoder.context());
    if (!encoder.begin())
        return std::nullopt;
    if (const auto pixels = pixelsToKeep(picture, header, size))
        return encoder.finishWith(*pixels);
    const bool complete = header.interlace_method == SPNG_INTERLACE_NONE
                              ? streamRows(decoder.get(), encoder, stride)
                              : decodeThenEncodeRows(decoder.get(), encoder, stride, size);
    return complete ? encoder.finish() : std::nullopt;
}

struct PixelLayout
{
    QImage::Format format;
    uint8_t bitDepth;
    uint8_t colorType;
    size_t bytesPerPixel;
};

/// The layout that PNG knows and that loses nothing of the picture.
PixelLayout layoutFor(const QImage& image)
{
    if (image.format() == QImage::Format_Grayscale8)
        return {QImage::Format_Grayscale8, 8, SPNG_COLOR_TYPE_GRAYSCALE, 1};
    if (image.format() == QImage::Format_Grayscale16)
        return {QImage::Format_Grayscale16, 16, SPNG_COLOR_TYPE_GRAYSCALE, 2};
    if (image.depth() > 32)
        return {QImage::Format_RGBA64, 16, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 8};
    if (image.hasAlphaChannel())
        return {QImage::Format_RGBA8888, 8, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 4};
    return {QImage::Format_RGB888, 8, SPNG_COLOR_TYPE_TRUECOLOR, 3};
}

/// `image` is in `layout`'s format.
std::optional<QByteArray> fromPixels(const QImage& image, const PixelLayout& layout, const Effort& effort)
{
    spng_ihdr header{};
    header.width = static_cast<uint32_t>(image.width());
    header.height = static_cast<uint32_t>(image.height());
    header.bit_depth = layout.bitDepth;
    header.color_type = layout.colorType;
    Encoder encoder(header, effort);
    encoder.setProfile(image.colorSpace());
    if (!encoder.begin())
        return std::nullopt;
    for (int y = 0; y < image.height(); ++y) {
        if (!encoder.addRow(image.constScanLine(y), header.width * layout.bytesPerPixel))
            return std::nullopt;
    }
    return encoder.finish();
}

} // namespace

std::optional<QByteArray> PictureTranscoder::toPNG(const QByteArray& picture, const std::stop_token& hurry)
{
    if (picture.startsWith("\x89PNG\r\n\x1a\n"))
        return inTime(hurry, [&](const Effort& effort) { return fromPNG(picture, effort); });
    if (picture.startsWith(QByteArrayView("II*\0", 4)) || picture.startsWith(QByteArrayView("MM\0*", 4)))
        return toPNG(PictureReading::readTIFF(picture), hurry);
    return std::nullopt;
}

std::optional<QByteArray> PictureTranscoder::toPNG(QImage image, const std::stop_token& hurry)
{
    if (image.isNull())
        return std::nullopt;
    const PixelLayout layout = layoutFor(image);
    image.convertTo(layout.format);
    return inTime(hurry, [&](const Effort& effort) { return fromPixels(image, layout, effort); });
}

} // namespace Clipboard
