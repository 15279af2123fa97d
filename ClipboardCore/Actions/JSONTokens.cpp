#include "Actions/JSONTokens.h"

#include <optional>

namespace ClipboardCore::JSONTokens {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// What the four hexadecimal digits at `digits` say; nothing when they are none. All four bytes are readable.
std::optional<char32_t> codeUnit(const char* digits)
{
    char32_t value = 0;
    for (const char c : std::string_view(digits, 4)) {
        const char lower = static_cast<char>(c | 0x20);
        if (!isDigit(c) && (lower < 'a' || lower > 'f'))
            return std::nullopt;
        value = value * 16 + static_cast<char32_t>(isDigit(c) ? c - '0' : lower - 'a' + 10);
    }
    return value;
}

bool isHighSurrogate(char32_t value)
{
    return value >= 0xD800 && value < 0xDC00;
}

bool isLowSurrogate(char32_t value)
{
    return value >= 0xDC00 && value < 0xE000;
}

/// Writes a code point, surrogates included, in the manner of UTF-8; returns the end.
char* encode(char32_t codePoint, char* out)
{
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(static_cast<unsigned char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
        return out;
    }
    if (codePoint < 0x800) {
        put(0xC0U | codePoint >> 6U);
    } else {
        if (codePoint < 0x10000) {
            put(0xE0U | codePoint >> 12U);
        } else {
            put(0xF0U | codePoint >> 18U);
            put(0x80U | (codePoint >> 12U & 0x3FU));
        }
        put(0x80U | (codePoint >> 6U & 0x3FU));
    }
    put(0x80U | (codePoint & 0x3FU));
    return out;
}

/// The character that an escape of two signs stands for; nothing when there is no such escape.
std::optional<char> shortEscape(char letter)
{
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    const size_t index = letters.find(letter);
    return index == std::string_view::npos ? std::nullopt : std::optional(meanings[index]);
}

} // namespace

bool isNumber(std::string_view text)
{
    size_t at = 0;
    const auto skip = [&](char sign) {
        const bool found = at < text.size() && text[at] == sign;
        at += found ? 1 : 0;
        return found;
    };
    const auto skipDigits = [&] {
        const size_t start = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at > start;
    };

    skip('-');
    if (!skip('0') && !skipDigits())
        return false;
    if (skip('.') && !skipDigits())
        return false;
    if (skip('e') || skip('E')) {
        if (!skip('+'))
            skip('-');
        if (!skipDigits())
            return false;
    }
    return at == text.size();
}

char* unescape(char* start, const char* end)
{
    char* out = start;
    const char* in = start;
    while (in < end) {
        if (*in != '\\') {
            *out++ = *in++;
            continue;
        }
        if (in[1] != 'u') {
            const auto meaning = shortEscape(in[1]);
            if (!meaning)
                return nullptr;
            *out++ = *meaning;
            in += 2;
            continue;
        }
        const auto unit = end - in >= 6 ? codeUnit(in + 2) : std::nullopt;
        if (!unit)
            return nullptr;
        in += 6;
        if (isHighSurrogate(*unit) && end - in >= 6 && in[0] == '\\' && in[1] == 'u') {
            if (const auto low = codeUnit(in + 2); low && isLowSurrogate(*low)) {
                out = encode(0x10000 + ((*unit - 0xD800) << 10U) + (*low - 0xDC00), out);
                in += 6;
                continue;
            }
        }
        out = encode(*unit, out);
    }
    return out;
}

} // namespace ClipboardCore::JSONTokens
