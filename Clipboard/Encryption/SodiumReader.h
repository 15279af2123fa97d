#pragma once

#include <QByteArray>
#include <QIODevice>

#include <memory>

#include <sodium.h>

namespace Clipboard {

/// Reads a sealed file from front to back, a chunk at a time, and no further than it is asked for. Fails at the first
/// chunk that is not as it was written, and at an end before the last one.
class SodiumReader final : public QIODevice
{
public:
    SodiumReader(std::unique_ptr<QIODevice> sealed, const unsigned char* key, QByteArray context);
    ~SodiumReader() override;
    Q_DISABLE_COPY_MOVE(SodiumReader)

    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    [[nodiscard]] bool pull();
    bool fail();

    std::unique_ptr<QIODevice> m_sealed;
    QByteArray m_context;
    crypto_secretstream_xchacha20poly1305_state m_state{};
    QByteArray m_chunk;
    qsizetype m_taken = 0; // of the chunk
    bool m_isAtEnd = false;
    bool m_hasFailed = false;
};

} // namespace Clipboard
