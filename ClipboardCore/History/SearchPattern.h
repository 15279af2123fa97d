#pragma once

#include <QByteArray>

namespace ClipboardCore {

/// A text to look for, without regard to the case of ASCII letters. Many times faster than lower-casing what is
/// searched, and it needs no copy of it.
class SearchPattern final
{
public:
    /// `folded`: what to look for, as TextFolding::folded() makes it.
    explicit SearchPattern(const QByteArray& folded);

    [[nodiscard]] const QByteArray& folded() const { return m_bytes; }
    /// `text` is folded, but for the case of ASCII letters.
    [[nodiscard]] bool isIn(QByteArrayView text) const;

private:
    [[nodiscard]] bool isAt(const char* text) const;

    QByteArray m_bytes;
    // Per byte: the bit that tells a capital from a small ASCII letter, where the byte is such a letter.
    QByteArray m_caseBits;
};

} // namespace ClipboardCore
