#include "Sealing/ContentSeal.h"

#include <algorithm>
#include <utility>

namespace ClipboardCore {

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

} // namespace ClipboardCore
