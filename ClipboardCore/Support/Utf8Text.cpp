#include "Support/Utf8Text.h"

#include "Support/CanonicalText.h"
#include "Support/Utf8.h"

namespace ClipboardCore {

Utf8Text::Utf8Text(const QString& text)
    : m_utf8(text.toUtf8())
{
}

Utf8Text Utf8Text::fromUtf8(const QByteArray& bytes)
{
    return fromValidUtf8(Utf8::repaired(bytes));
}

Utf8Text Utf8Text::fromValidUtf8(const QByteArray& bytes)
{
    Utf8Text text;
    text.m_utf8 = bytes;
    return text;
}

QString Utf8Text::toString() const
{
    return Utf8::toString(m_utf8);
}

bool operator==(const Utf8Text& a, const Utf8Text& b)
{
    return CanonicalText::equal(a.m_utf8, b.m_utf8);
}

} // namespace ClipboardCore
