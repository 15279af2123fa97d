#pragma once

#include "Sealing/ContentSeal.h"

#include <QByteArrayView>

#include <sodium.h>

namespace Clipboard {

/// The bytes as the library wants them.
inline unsigned char* sodiumBytes(char* bytes)
{
    return reinterpret_cast<unsigned char*>(bytes);
}
inline const unsigned char* sodiumBytes(const char* bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes);
}

/// The form of a sealed file (docs/history-format.md).
namespace Sodium {
inline constexpr QByteArrayView fileBeginning = "Tessaly sealed 1";
inline constexpr qsizetype chunkSize = qsizetype{64} * 1024;
inline constexpr qsizetype chunkOverhead = crypto_secretstream_xchacha20poly1305_ABYTES;
} // namespace Sodium

} // namespace Clipboard
