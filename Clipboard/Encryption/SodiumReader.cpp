#include "SodiumReader.h"

#include "SodiumBytes.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

SodiumReader::SodiumReader(std::unique_ptr<QIODevice> sealed, const unsigned char* key, QByteArray context)
    : m_sealed(std::move(sealed))
    , m_context(std::move(context))
{
    constexpr qsizetype headerSize = crypto_secretstream_xchacha20poly1305_HEADERBYTES;
    const QByteArray beginning = m_sealed->read(Sodium::fileBeginning.size());
    const QByteArray header = m_sealed->read(headerSize);
    m_hasFailed = beginning != Sodium::fileBeginning || header.size() != headerSize ||
                  crypto_secretstream_xchacha20poly1305_init_pull(&m_state, sodiumBytes(header.constData()), key) != 0;
    open(QIODevice::ReadOnly);
}

SodiumReader::~SodiumReader()
{
    sodium_memzero(&m_state, sizeof m_state);
}

bool SodiumReader::fail()
{
    m_hasFailed = true;
    return false;
}

bool SodiumReader::pull()
{
    const QByteArray sealed = m_sealed->read(Sodium::chunkSize + Sodium::chunkOverhead);
    if (sealed.size() < Sodium::chunkOverhead)
        return fail();
    m_chunk.resize(sealed.size() - Sodium::chunkOverhead);
    m_taken = 0;
    unsigned char tag = 0;
    if (crypto_secretstream_xchacha20poly1305_pull(&m_state, sodiumBytes(m_chunk.data()), nullptr, &tag,
                                                   sodiumBytes(sealed.constData()), size_t(sealed.size()),
                                                   sodiumBytes(m_context.constData()), size_t(m_context.size())) != 0)
        return fail();
    m_isAtEnd = tag == crypto_secretstream_xchacha20poly1305_TAG_FINAL;
    return !m_isAtEnd || m_sealed->read(1).isEmpty() || fail(); // nothing may follow
}

qint64 SodiumReader::readData(char* data, qint64 maxSize)
{
    while (!m_hasFailed && m_taken == m_chunk.size() && !m_isAtEnd && pull()) {
    }
    if (m_hasFailed)
        return -1;
    const qsizetype count = std::min<qsizetype>(maxSize, m_chunk.size() - m_taken);
    std::copy_n(m_chunk.constData() + m_taken, count, data);
    m_taken += count;
    return count;
}

qint64 SodiumReader::writeData(const char* /*data*/, qint64 /*maxSize*/)
{
    return -1;
}

} // namespace Clipboard
