#pragma once

#include <QByteArray>
#include <QString>

namespace ClipboardCore {

/// An immutable, implicitly shared text held as well-formed UTF-8.
///
/// Copied texts reach 256 MiB; UTF-8 is how they arrive, how they are saved and how they are searched, at half the
/// memory of UTF-16. Convert to QString only the part that is shown (see Graphemes).
class Utf8Text
{
public:
    Utf8Text() = default;
    Utf8Text(const QString& text); // NOLINT(google-explicit-constructor): a text is a text

    /// Takes bytes from outside. Shares them when they are well-formed UTF-8; otherwise every ill-formed sequence
    /// becomes U+FFFD.
    [[nodiscard]] static Utf8Text fromUtf8(const QByteArray& bytes);
    /// Takes bytes that are known to be well-formed.
    [[nodiscard]] static Utf8Text fromValidUtf8(const QByteArray& bytes);

    [[nodiscard]] const QByteArray& utf8() const { return m_utf8; }
    [[nodiscard]] QString toString() const;
    /// Length in UTF-8 bytes.
    [[nodiscard]] qsizetype byteCount() const { return m_utf8.size(); }
    [[nodiscard]] bool isEmpty() const { return m_utf8.isEmpty(); }

    /// Unicode canonical equivalence (UAX #15), so "é" equals "e" + combining acute.
    friend bool operator==(const Utf8Text& a, const Utf8Text& b);

private:
    QByteArray m_utf8;
};

} // namespace ClipboardCore
