#pragma once

#include <QByteArray>
#include <QString>

/// Walking over well-formed UTF-8 (RFC 3629), code point by code point.
namespace ClipboardCore::Utf8 {

struct CodePoint
{
    char32_t value = 0;
    qsizetype length = 0; // in bytes
};

[[nodiscard]] constexpr bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The code point that starts at `at`; `at` is inside `text` and at the start of one.
[[nodiscard]] inline CodePoint decode(QByteArrayView text, qsizetype at)
{
    const auto byte = [&](qsizetype offset) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[at + offset]));
    };
    const auto tail = [&](qsizetype offset) { return byte(offset) & 0x3FU; };
    const char32_t lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    if (lead < 0xE0)
        return {(lead & 0x1FU) << 6U | tail(1), 2};
    if (lead < 0xF0)
        return {(lead & 0x0FU) << 12U | tail(1) << 6U | tail(2), 3};
    return {(lead & 0x07U) << 18U | tail(1) << 12U | tail(2) << 6U | tail(3), 4};
}

/// The code point that ends at `end`; `end` is greater than 0.
[[nodiscard]] inline CodePoint decodeBefore(QByteArrayView text, qsizetype end)
{
    qsizetype start = end - 1;
    while (start > 0 && isContinuation(text[start]))
        --start;
    return decode(text, start);
}

/// The longest prefix of at most `limit` bytes that ends between code points.
[[nodiscard]] inline QByteArrayView prefix(QByteArrayView text, qsizetype limit)
{
    if (limit >= text.size())
        return text;
    while (limit > 0 && isContinuation(text[limit]))
        --limit;
    return text.first(limit);
}

/// The longest suffix of at most `limit` bytes that begins at a code point.
[[nodiscard]] inline QByteArrayView suffix(QByteArrayView text, qsizetype limit)
{
    if (limit >= text.size())
        return text;
    qsizetype start = text.size() - limit;
    while (start < text.size() && isContinuation(text[start]))
        ++start;
    return text.sliced(start);
}

/// True when `bytes` are well-formed.
[[nodiscard]] bool isValid(QByteArrayView bytes);

/// The length of the ASCII text at the beginning.
[[nodiscard]] qsizetype asciiLength(QByteArrayView text);

/// True when every byte is below 0x80.
[[nodiscard]] bool isASCII(QByteArrayView text);

/// `text` as UTF-16, a leading byte order mark included (QString::fromUtf8 drops it).
[[nodiscard]] QString toString(QByteArrayView text);

/// `bytes` with what is ill-formed replaced by U+FFFD; shares them when nothing is.
[[nodiscard]] QByteArray repaired(const QByteArray& bytes);

} // namespace ClipboardCore::Utf8
