#include "Sealing/ContentSeal.h"

#include <QBuffer>

#include <algorithm>
#include <utility>

namespace ClipboardCore {

QByteArray sealed(const QByteArray& content, const ContentSeal* seal, const QByteArray& context)
{
    if (seal == nullptr)
        return content;
    QByteArray bytes;
    bytes.reserve(content.size() + content.size() / 1024 + 1024); // a chunk of 64 KiB grows by a few bytes
    const auto stream = seal->sealing(context, [&bytes](QByteArrayView piece) { bytes += piece; });
    stream->append(content);
    stream->finish();
    return bytes;
}

std::optional<QByteArray> opened(const ContentSeal& seal, std::unique_ptr<QIODevice> sealed, const QByteArray& context,
                                 qsizetype padding)
{
    constexpr qsizetype pieceSize = qsizetype{64} * 1024;
    QByteArray content;
    content.reserve(sealed->size() + padding); // the plain content is smaller
    const auto plain = seal.opening(std::move(sealed), context);
    for (;;) {
        const qsizetype done = content.size();
        content.resize(done + pieceSize);
        const qint64 count = plain->read(content.data() + done, pieceSize);
        content.resize(done + std::max<qint64>(count, 0));
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return content;
    }
}

std::optional<QByteArray> opened(const ContentSeal& seal, const QByteArray& sealed, const QByteArray& context,
                                 qsizetype padding)
{
    auto device = std::make_unique<QBuffer>();
    device->setData(sealed);
    device->open(QIODevice::ReadOnly);
    return opened(seal, std::move(device), context, padding);
}

} // namespace ClipboardCore
