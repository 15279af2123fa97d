#pragma once

#include "Sealing/ContentSeal.h"

namespace Clipboard {

/// Seals with XChaCha20-Poly1305 by libsodium (docs/history-format.md, "Encrypted"): files as its secretstream, in
/// chunks that each are authenticated before a byte of them is handed out; records by themselves.
class SodiumSeal final : public ClipboardCore::ContentSeal
{
public:
    static constexpr qsizetype keySize = 32;

    /// Null unless `key` has keySize bytes and the library works here.
    [[nodiscard]] static std::shared_ptr<const SodiumSeal> make(const QByteArray& key);
    /// From the system's source of randomness.
    [[nodiscard]] static QByteArray newKey();

    /// Takes the key out of memory.
    ~SodiumSeal() override;
    Q_DISABLE_COPY_MOVE(SodiumSeal)

    [[nodiscard]] std::unique_ptr<Stream> sealing(const QByteArray& context, Sink sink) const override;
    [[nodiscard]] std::unique_ptr<QIODevice> opening(std::unique_ptr<QIODevice> sealed,
                                                     const QByteArray& context) const override;
    [[nodiscard]] QByteArray sealRecord(QByteArrayView plain, const QByteArray& context) const override;
    [[nodiscard]] std::optional<QByteArray> openRecord(QByteArrayView sealed, const QByteArray& context) const override;

private:
    explicit SodiumSeal(const QByteArray& key);

    struct Key;
    std::unique_ptr<Key> m_key;
};

} // namespace Clipboard
