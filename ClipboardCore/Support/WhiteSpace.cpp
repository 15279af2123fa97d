#include "Support/WhiteSpace.h"

#include "Support/Utf8.h"

#include <QChar>

#include <algorithm>

namespace ClipboardCore::WhiteSpace {

namespace {

// Long runs of plain white space are passed in blocks: a copied megabyte of blanks must not hold up the caller.
constexpr qsizetype plainBlock = 64;

/// True when `block` is nothing but ASCII white space.
bool isPlainBlank(QByteArrayView block)
{
    unsigned char others = 0;
    for (const char c : block) {
        const auto byte = static_cast<unsigned char>(c);
        others |= static_cast<unsigned char>((byte != ' ') & (static_cast<unsigned char>(byte - '\t') > '\r' - '\t'));
    }
    return others == 0;
}

/// Not 0 for the bytes with which white space can begin: the ASCII ones, and the lead bytes of U+0085 and U+00A0 (C2),
/// U+1680 (E1), U+2000 to U+205F (E2) and U+3000 (E3). Arithmetic instead of branches, which the compiler can do on
/// many bytes at a time.
constexpr unsigned char mayBegin(unsigned char byte)
{
    const bool isASCII = byte <= 0x20;
    const bool isC2 = byte == 0xC2;
    const bool isE1ToE3 = static_cast<unsigned char>(byte - 0xE1) <= 2;
    return static_cast<unsigned char>(isASCII | isC2 | isE1ToE3);
}

} // namespace

qsizetype leading(QByteArrayView text)
{
    qsizetype at = 0;
    while (at + plainBlock <= text.size() && isPlainBlank(text.sliced(at, plainBlock)))
        at += plainBlock;
    while (at < text.size()) {
        const auto codePoint = Utf8::decode(text, at);
        if (!QChar::isSpace(codePoint.value))
            break;
        at += codePoint.length;
    }
    return at;
}

qsizetype leadingWord(QByteArrayView text)
{
    qsizetype at = 0;
    while (at < text.size()) {
        if (mayBegin(static_cast<unsigned char>(text[at])) == 0) {
            ++at;
            continue;
        }
        const auto codePoint = Utf8::decode(text, at);
        if (QChar::isSpace(codePoint.value))
            break;
        at += codePoint.length;
    }
    return at;
}

QByteArrayView trimmed(QByteArrayView text)
{
    text = text.sliced(leading(text));
    while (text.size() >= plainBlock && isPlainBlank(text.last(plainBlock)))
        text.chop(plainBlock);
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
    // A block is looked at closely only when one of its bytes may begin white space.
    constexpr qsizetype blockSize = 256;
    for (qsizetype start = 0; start < text.size(); start += blockSize) {
        const qsizetype end = std::min(start + blockSize, text.size());
        unsigned char candidates = 0;
        for (qsizetype at = start; at < end; ++at)
            candidates |= mayBegin(static_cast<unsigned char>(text[at]));
        if (candidates == 0)
            continue;
        for (qsizetype at = start; at < end; ++at)
            if (!Utf8::isContinuation(text[at]) && QChar::isSpace(Utf8::decode(text, at).value))
                return true;
    }
    return false;
}

} // namespace ClipboardCore::WhiteSpace
