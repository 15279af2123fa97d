#include "Support/PercentEscapes.h"

namespace ClipboardCore::PercentEscapes {

namespace {

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

} // namespace

bool areWellFormed(QByteArrayView text)
{
    for (qsizetype at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1))
        if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2]))
            return false;
    return true;
}

} // namespace ClipboardCore::PercentEscapes
