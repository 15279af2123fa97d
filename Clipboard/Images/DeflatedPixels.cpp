#include "DeflatedPixels.h"

#include <QByteArray>
#include <QtEndian>

#include <zlib.h>

namespace Clipboard {

namespace {

constexpr qsizetype signatureBytes = 8;
constexpr qsizetype fieldBytes = 4; // a chunk is its data's length, its type, the data and a checksum of type and data
constexpr qsizetype frameBytes = 3 * fieldBytes;
constexpr unsigned char lastFilter = 4;                 // Paeth
constexpr qsizetype bufferBytes = 64 * qsizetype{1024}; // stays in the processor's cache

struct Chunk
{
    QByteArrayView whole;

    [[nodiscard]] bool isPixels() const { return whole.sliced(fieldBytes, fieldBytes) == QByteArrayView("IDAT"); }
    [[nodiscard]] QByteArrayView data() const { return whole.sliced(2 * fieldBytes, whole.size() - frameBytes); }
    [[nodiscard]] bool isSound() const
    {
        const QByteArrayView summed = whole.sliced(fieldBytes, whole.size() - 2 * fieldBytes);
        return ::crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), static_cast<size_t>(summed.size())) ==
               qFromBigEndian<quint32>(whole.last(fieldBytes).data());
    }
};

/// Nothing when the picture ends before it does.
std::optional<Chunk> chunkAt(QByteArrayView png, qsizetype offset)
{
    const qsizetype left = png.size() - offset;
    if (left < frameBytes)
        return std::nullopt;
    const qsizetype length = qFromBigEndian<quint32>(png.data() + offset);
    if (length > left - frameBytes)
        return std::nullopt;
    return Chunk{png.sliced(offset, frameBytes + length)};
}

/// Takes the compressed data piece by piece and looks at what comes out of it.
class RowCheck
{
public:
    explicit RowCheck(const DeflatedPixels::Rows& rows)
        : m_rowBytes(rows.bytes + 1)
        , m_left(rows.count * m_rowBytes)
        , m_isReady(::inflateInit(&m_stream) == Z_OK)
    {
    }
    ~RowCheck() { ::inflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(RowCheck)

    /// False for what cannot belong to these rows.
    [[nodiscard]] bool take(QByteArrayView deflated)
    {
        if (!m_isReady || m_isAtEnd)
            return false;
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(deflated.data())); // NOLINT: an old interface
        m_stream.avail_in = static_cast<uInt>(deflated.size());
        do {
            m_stream.next_out = reinterpret_cast<Bytef*>(m_buffer.data());
            m_stream.avail_out = static_cast<uInt>(m_buffer.size());
            const int result = ::inflate(&m_stream, Z_NO_FLUSH);
            m_isAtEnd = result == Z_STREAM_END;
            // No progress is no fault: the piece ended where the buffer did.
            if ((result != Z_OK && result != Z_BUF_ERROR && !m_isAtEnd) ||
                !look(m_buffer.size() - static_cast<qsizetype>(m_stream.avail_out)))
                return false;
        } while (!m_isAtEnd && (m_stream.avail_in > 0 || m_stream.avail_out == 0));
        return m_stream.avail_in == 0;
    }
    [[nodiscard]] bool isComplete() const { return m_isAtEnd && m_left == 0; }

private:
    bool look(qsizetype length)
    {
        m_left -= length;
        for (; m_nextRow < length; m_nextRow += m_rowBytes) {
            if (static_cast<unsigned char>(m_buffer.at(m_nextRow)) > lastFilter)
                return false;
        }
        m_nextRow -= length;
        return m_left >= 0;
    }

    QByteArray m_buffer{bufferBytes, Qt::Uninitialized};
    z_stream m_stream{};
    qsizetype m_rowBytes;
    qsizetype m_left;
    qsizetype m_nextRow = 0; // from the buffer's begin
    bool m_isReady;
    bool m_isAtEnd = false;
};

} // namespace

std::optional<QByteArrayView> DeflatedPixels::sound(QByteArrayView png, const Rows& rows)
{
    qsizetype begin = signatureBytes;
    auto chunk = chunkAt(png, begin);
    for (; chunk && !chunk->isPixels(); chunk = chunkAt(png, begin))
        begin += chunk->whole.size();

    RowCheck check(rows);
    qsizetype end = begin;
    for (; chunk && chunk->isPixels(); chunk = chunkAt(png, end)) {
        if (!chunk->isSound() || !check.take(chunk->data()))
            return std::nullopt;
        end += chunk->whole.size();
    }
    if (!check.isComplete())
        return std::nullopt;
    return png.sliced(begin, end - begin);
}

} // namespace Clipboard
