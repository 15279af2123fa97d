#include "Support/WhiteSpace.h"

#include "Support/Utf8.h"

#include <QChar>

#include <algorithm>

namespace ClipboardCore::WhiteSpace {

namespace {

/// The length of the white space at the beginning.
qsizetype leading(QByteArrayView text)
{
    qsizetype at = 0;
    while (at < text.size()) {
        const auto codePoint = Utf8::decode(text, at);
        if (!QChar::isSpace(codePoint.value))
            break;
        at += codePoint.length;
    }
    return at;
}

/// True for the bytes with which white space can begin: the ASCII ones and the lead bytes of U+0085, U+00A0 (C2),
/// U+1680 (E1), U+2000 to U+205F (E2) and U+3000 (E3).
constexpr bool mayBegin(unsigned char byte)
{
    return byte <= 0x20 || byte == 0xC2 || (byte >= 0xE1 && byte <= 0xE3);
}

} // namespace

QByteArrayView trimmed(QByteArrayView text)
{
    text = text.sliced(leading(text));
    while (!text.isEmpty()) {
        const auto codePoint = Utf8::decodeBefore(text, text.size());
        if (!QChar::isSpace(codePoint.value))
            break;
        text.chop(codePoint.length);
    }
    return text;
}

bool isBlank(QByteArrayView text)
{
    return leading(text) == text.size();
}

bool isIn(QByteArrayView text)
{
    // A block is looked at closely only when one of its bytes may begin white space; without an early exit inside, the
    // compiler checks many bytes at a time.
    constexpr qsizetype blockSize = 256;
    for (qsizetype start = 0; start < text.size(); start += blockSize) {
        const qsizetype end = std::min(start + blockSize, text.size());
        bool candidate = false;
        for (qsizetype at = start; at < end; ++at)
            candidate |= mayBegin(static_cast<unsigned char>(text[at]));
        if (!candidate)
            continue;
        for (qsizetype at = start; at < end; ++at)
            if (!Utf8::isContinuation(text[at]) && QChar::isSpace(Utf8::decode(text, at).value))
                return true;
    }
    return false;
}

} // namespace ClipboardCore::WhiteSpace
