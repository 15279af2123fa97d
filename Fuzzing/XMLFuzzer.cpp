#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"
#include "Support/WhiteSpace.h"

using namespace ClipboardCore;
using ContentDetectors::formattedXML;

namespace {

QByteArray withoutBlanks(QByteArrayView document)
{
    QByteArray xml = WhiteSpace::trimmed(document).toByteArray();
    xml.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return xml;
}

} // namespace

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto formatted = formattedXML(content);
    if (!formatted)
        return;
    require(withoutBlanks(formatted->utf8()) == withoutBlanks(content.utf8()), "nothing but white space is changed");
    if (formatted->byteCount() <= ContentDetectors::sizeLimit)
        require(isResult(formattedXML(*formatted), formatted->utf8()), "what is formatted stays as it is");
}
