#include "Support/Utf8.h"

#include <QString>
#include <QStringDecoder>

#include <simdjson.h>

#include <cstring>

namespace ClipboardCore::Utf8 {

bool isValid(QByteArrayView bytes)
{
    return simdjson::validate_utf8(bytes.data(), static_cast<size_t>(bytes.size()));
}

qsizetype asciiLength(QByteArrayView text)
{
    qsizetype length = 0;
    for (quint64 bytes = 0; length + qsizetype(sizeof(bytes)) <= text.size(); length += sizeof(bytes)) {
        std::memcpy(&bytes, text.data() + length, sizeof(bytes));
        if ((bytes & 0x8080808080808080U) != 0)
            break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80)
        ++length;
    return length;
}

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
    if (isValid(bytes))
        return bytes;
    return toString(bytes).toUtf8();
}

} // namespace ClipboardCore::Utf8
