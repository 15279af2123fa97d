#include "SodiumSeal.h"

#include "SodiumBytes.h"
#include "SodiumReader.h"

#include <algorithm>
#include <array>
#include <utility>

#include <sodium.h>

namespace Clipboard {

namespace {

class SodiumStream final : public ClipboardCore::ContentSeal::Stream
{
public:
    SodiumStream(const unsigned char* key, QByteArray context, ClipboardCore::ContentSeal::Sink sink)
        : m_context(std::move(context))
        , m_sink(std::move(sink))
    {
        std::array<char, crypto_secretstream_xchacha20poly1305_HEADERBYTES> header{};
        crypto_secretstream_xchacha20poly1305_init_push(&m_state, sodiumBytes(header.data()), key);
        m_sink(Sodium::fileBeginning);
        m_sink({header.data(), qsizetype(header.size())});
        m_held.reserve(Sodium::chunkSize);
    }
    ~SodiumStream() override
    {
        sodium_memzero(&m_state, sizeof m_state);
        sodium_memzero(m_held.data(), size_t(m_held.size()));
    }
    Q_DISABLE_COPY_MOVE(SodiumStream)

    void append(QByteArrayView bytes) override
    {
        while (!bytes.isEmpty()) {
            if (m_held.size() == Sodium::chunkSize) // more follows, so this is not the last chunk
                push(crypto_secretstream_xchacha20poly1305_TAG_MESSAGE);
            const qsizetype count = std::min(bytes.size(), Sodium::chunkSize - m_held.size());
            m_held += bytes.first(count);
            bytes = bytes.sliced(count);
        }
    }
    void finish() override { push(crypto_secretstream_xchacha20poly1305_TAG_FINAL); }

private:
    void push(unsigned char tag)
    {
        QByteArray sealed(m_held.size() + Sodium::chunkOverhead, Qt::Uninitialized);
        crypto_secretstream_xchacha20poly1305_push(&m_state, sodiumBytes(sealed.data()), nullptr,
                                                   sodiumBytes(m_held.constData()), size_t(m_held.size()),
                                                   sodiumBytes(m_context.constData()), size_t(m_context.size()), tag);
        m_sink(sealed);
        m_held.resize(0);
    }

    crypto_secretstream_xchacha20poly1305_state m_state{};
    QByteArray m_context;
    ClipboardCore::ContentSeal::Sink m_sink;
    QByteArray m_held;
};

constexpr qsizetype nonceSize = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr qsizetype recordTagSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;

} // namespace

struct SodiumSeal::Key
{
    std::array<unsigned char, keySize> bytes{};
};

static_assert(SodiumSeal::keySize == crypto_secretstream_xchacha20poly1305_KEYBYTES);
static_assert(SodiumSeal::keySize == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);

std::shared_ptr<const SodiumSeal> SodiumSeal::make(const QByteArray& key)
{
    if (key.size() != keySize || sodium_init() < 0)
        return nullptr;
    return std::shared_ptr<const SodiumSeal>(new SodiumSeal(key));
}

QByteArray SodiumSeal::newKey()
{
    QByteArray key(keySize, '\0');
    if (sodium_init() < 0)
        return {};
    randombytes_buf(key.data(), size_t(key.size()));
    return key;
}

SodiumSeal::SodiumSeal(const QByteArray& key)
    : m_key(std::make_unique<Key>())
{
    std::ranges::copy(key, m_key->bytes.begin());
    sodium_mlock(m_key->bytes.data(), m_key->bytes.size()); // not into the swap, where that is allowed
}

SodiumSeal::~SodiumSeal()
{
    sodium_munlock(m_key->bytes.data(), m_key->bytes.size()); // and overwrites it
}

std::unique_ptr<SodiumSeal::Stream> SodiumSeal::sealing(const QByteArray& context, Sink sink) const
{
    return std::make_unique<SodiumStream>(m_key->bytes.data(), context, std::move(sink));
}

std::unique_ptr<QIODevice> SodiumSeal::opening(std::unique_ptr<QIODevice> sealed, const QByteArray& context) const
{
    return std::make_unique<SodiumReader>(std::move(sealed), m_key->bytes.data(), context);
}

QByteArray SodiumSeal::sealRecord(QByteArrayView plain, const QByteArray& context) const
{
    // 192 random bits: no two are ever the same.
    QByteArray sealed(nonceSize + plain.size() + recordTagSize, Qt::Uninitialized);
    randombytes_buf(sealed.data(), nonceSize);
    crypto_aead_xchacha20poly1305_ietf_encrypt(sodiumBytes(sealed.data()) + nonceSize, nullptr,
                                               sodiumBytes(plain.data()), size_t(plain.size()),
                                               sodiumBytes(context.constData()), size_t(context.size()), nullptr,
                                               sodiumBytes(sealed.constData()), m_key->bytes.data());
    return sealed;
}

std::optional<QByteArray> SodiumSeal::openRecord(QByteArrayView sealed, const QByteArray& context) const
{
    const qsizetype size = sealed.size() - nonceSize - recordTagSize;
    if (size < 0)
        return std::nullopt;
    QByteArray plain(size, Qt::Uninitialized);
    const QByteArrayView body = sealed.sliced(nonceSize);
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(sodiumBytes(plain.data()), nullptr, nullptr,
                                                   sodiumBytes(body.data()), size_t(body.size()),
                                                   sodiumBytes(context.constData()), size_t(context.size()),
                                                   sodiumBytes(sealed.data()), m_key->bytes.data()) != 0)
        return std::nullopt;
    return plain;
}

} // namespace Clipboard
