#include "Support/Utf8.h"

#include <QString>
#include <QStringDecoder>

#include <simdjson.h>

#include <cstring>

namespace ClipboardCore::Utf8 {

bool isASCII(QByteArrayView text)
{
    // Whole blocks without an early exit let the compiler use wide registers.
    constexpr qsizetype blockSize = 256;
    qsizetype at = 0;
    for (; at + blockSize <= text.size(); at += blockSize) {
        unsigned char all = 0;
        for (qsizetype i = 0; i < blockSize; ++i)
            all |= static_cast<unsigned char>(text[at + i]);
        if (all >= 0x80)
            return false;
    }
    unsigned char all = 0;
    for (; at < text.size(); ++at)
        all |= static_cast<unsigned char>(text[at]);
    return all < 0x80;
}

QString toString(QByteArrayView text)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringConverter::Flag::ConvertInitialBom | QStringConverter::Flag::Stateless);
    return decoder(text);
}

QByteArray repaired(const QByteArray& bytes)
{
    if (simdjson::validate_utf8(bytes.constData(), static_cast<size_t>(bytes.size())))
        return bytes;
    return toString(bytes).toUtf8();
}

} // namespace ClipboardCore::Utf8
