#include "Support/JSONWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

namespace ClipboardCore {

namespace {

// Large enough that a system call for each is cheap.
constexpr auto heldBackSize = qsizetype(256) * 1024;

constexpr bool needsEscape(unsigned char byte)
{
    return byte < 0x20 || byte == '"' || byte == '\\' || byte == '/';
}

/// True when one of eight bytes may need an escape. Exact up to bytes above a hit, which the caller looks at anyway.
bool mayNeedEscape(quint64 bytes)
{
    constexpr quint64 ones = 0x0101010101010101U;
    constexpr quint64 highBits = 0x8080808080808080U;
    const auto hasZero = [](quint64 word) { return (word - ones) & ~word & highBits; };
    const quint64 control = (bytes - ones * 0x20U) & ~bytes & highBits;
    return (control | hasZero(bytes ^ ones * '"') | hasZero(bytes ^ ones * '\\') | hasZero(bytes ^ ones * '/')) != 0;
}

/// The first byte from `at` on that needs an escape.
qsizetype findEscape(QByteArrayView text, qsizetype at)
{
    constexpr qsizetype step = sizeof(quint64);
    for (; at + step <= text.size(); at += step) {
        quint64 bytes = 0;
        std::memcpy(&bytes, text.data() + at, step);
        if (mayNeedEscape(bytes))
            break;
    }
    while (at < text.size() && !needsEscape(static_cast<unsigned char>(text[at])))
        ++at;
    return at;
}

/// The character after the backslash of a short escape; 'u' when there is none.
char shortEscape(char c)
{
    switch (c) {
    case '"':
    case '\\':
    case '/':
        return c;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 'u';
    }
}

} // namespace

JSONWriter::JSONWriter(Sink sink)
    : m_sink(std::move(sink))
{
    m_held.reserve(heldBackSize);
}

void JSONWriter::put(QByteArrayView bytes)
{
    if (m_held.size() + bytes.size() > heldBackSize)
        finish();
    if (bytes.size() > heldBackSize)
        m_sink(bytes);
    else
        m_held.append(bytes);
}

void JSONWriter::finish()
{
    if (!m_held.isEmpty())
        m_sink(m_held);
    m_held.resize(0);
}

void JSONWriter::beginValue()
{
    if (m_needsComma)
        put(",");
    m_needsComma = true;
}

void JSONWriter::beginArray()
{
    beginValue();
    put("[");
    m_needsComma = false;
}

void JSONWriter::endArray()
{
    put("]");
    m_needsComma = true;
}

void JSONWriter::beginObject()
{
    beginValue();
    put("{");
    m_needsComma = false;
}

void JSONWriter::endObject()
{
    put("}");
    m_needsComma = true;
}

void JSONWriter::key(QLatin1String name)
{
    string(QByteArrayView(name.data(), name.size()));
    put(":");
    m_needsComma = false;
}

void JSONWriter::string(QByteArrayView utf8)
{
    beginValue();
    put("\"");
    escape(utf8, [this](QByteArrayView bytes) { put(bytes); });
    put("\"");
}

void JSONWriter::number(double value)
{
    Q_ASSERT(std::isfinite(value));
    // Plain digits as long as they are exact; nobody reads 7.5e+08 as a time.
    constexpr double largestPlain = 1e15;
    std::array<char, 32> digits{};
    const auto format = std::abs(value) < largestPlain && (value == 0 || std::abs(value) > 1e-5)
                            ? std::chars_format::fixed
                            : std::chars_format::general;
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value, format);
    Q_ASSERT(error == std::errc());
    beginValue();
    put(QByteArrayView(digits.data(), end - digits.data()));
}

void JSONWriter::boolean(bool value)
{
    beginValue();
    put(value ? QByteArrayView("true") : QByteArrayView("false"));
}

void JSONWriter::escape(QByteArrayView utf8, const Sink& sink)
{
    qsizetype done = 0;
    while (true) {
        const qsizetype next = findEscape(utf8, done);
        if (next > done)
            sink(utf8.sliced(done, next - done));
        if (next == utf8.size())
            return;
        constexpr std::array<char, 17> hexDigits{"0123456789abcdef"};
        const auto byte = static_cast<unsigned char>(utf8[next]);
        const char letter = shortEscape(utf8[next]);
        const std::array<char, 6> bytes{'\\', letter, '0', '0', hexDigits.at(byte >> 4U), hexDigits.at(byte & 0x0FU)};
        sink(QByteArrayView(bytes.data(), letter == 'u' ? 6 : 2));
        done = next + 1;
    }
}

} // namespace ClipboardCore
