#include "Actions/ColorMath.h"
#include "Fuzzer.h"
#include "History/TypeDetector.h"
#include "Support/WhiteSpace.h"

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const ClipType type = TypeDetector::classify(content);
    const QByteArrayView trimmed = WhiteSpace::trimmed(content.utf8());
    require(TypeDetector::classify(text(trimmed)) == type, "white space around it does not count");
    require(ColorMath::hexToRGB(content.toString()).has_value() == (type == ClipType::color),
            "what is called a colour is one");
    if (type == ClipType::link)
        require(!WhiteSpace::isIn(trimmed), "a link is one word");
    if (type == ClipType::code)
        require(TypeDetector::looksLikeCode(text(trimmed)), "what is called code looks like it");
    require(type != ClipType::image && type != ClipType::file, "a text is no file");
}
