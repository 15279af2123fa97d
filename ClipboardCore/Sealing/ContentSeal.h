#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QIODevice>

#include <functional>
#include <memory>
#include <optional>

namespace ClipboardCore {

/// Encrypts what goes to the disk with one key, and opens it again unless a single byte of it was changed. What it does
/// is the same on every thread. `context` says what the content is, and is not stored: under another one nothing opens.
class ContentSeal
{
public:
    using Sink = std::function<void(QByteArrayView)>;

    /// Takes a content piece by piece.
    class Stream
    {
    public:
        Stream() = default;
        virtual ~Stream() = default;
        Q_DISABLE_COPY_MOVE(Stream)

        virtual void append(QByteArrayView bytes) = 0;
        /// Once, last: what was appended up to here is the whole.
        virtual void finish() = 0;
    };

    ContentSeal() = default;
    virtual ~ContentSeal() = default;
    Q_DISABLE_COPY_MOVE(ContentSeal)

    /// Hands the sealed form of what is appended to `sink`. It begins as isSealed() wants it.
    [[nodiscard]] virtual std::unique_ptr<Stream> sealing(const QByteArray& context, Sink sink) const = 0;
    /// What is in such a form, read no further than it is asked for; reading fails where it is damaged or ends early.
    [[nodiscard]] virtual std::unique_ptr<QIODevice> opening(std::unique_ptr<QIODevice> sealed,
                                                             const QByteArray& context) const = 0;

    /// A short content, sealed by itself.
    [[nodiscard]] virtual QByteArray sealRecord(QByteArrayView plain, const QByteArray& context) const = 0;
    /// Nothing when it is damaged.
    [[nodiscard]] virtual std::optional<QByteArray> openRecord(QByteArrayView sealed,
                                                               const QByteArray& context) const = 0;
};

/// What sealed files begin with, before the number of their form. No history and no picture begins so.
inline constexpr QByteArrayView sealedBeginning = "Tessaly sealed ";

[[nodiscard]] inline bool isSealed(QByteArrayView beginning)
{
    return beginning.startsWith(sealedBeginning);
}

/// How files are kept from now on, and what opens those that are sealed.
struct Sealing
{
    std::shared_ptr<const ContentSeal> seal; // null while no key is known
    bool isWanted = false;                   // never without a seal

    /// What the next file is written with; null for a plain one.
    [[nodiscard]] std::shared_ptr<const ContentSeal> writing() const { return isWanted ? seal : nullptr; }
};

/// A whole content, sealed; as it is for a null seal.
[[nodiscard]] QByteArray sealed(const QByteArray& content, const ContentSeal* seal, const QByteArray& context);
/// The whole of a sealed content, with room for `padding` bytes more. Nothing when it is damaged.
[[nodiscard]] std::optional<QByteArray> opened(const ContentSeal& seal, std::unique_ptr<QIODevice> sealed,
                                               const QByteArray& context, qsizetype padding = 0);
[[nodiscard]] std::optional<QByteArray> opened(const ContentSeal& seal, const QByteArray& sealed,
                                               const QByteArray& context, qsizetype padding = 0);

} // namespace ClipboardCore
