#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"
#include "Support/WhiteSpace.h"

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto decoded = ContentDetectors::base64Decoded(content);
    if (!decoded)
        return;
    const QByteArrayView encoded = WhiteSpace::trimmed(content.utf8());
    const QByteArray again = decoded->utf8().toBase64();
    require(!decoded->isEmpty(), "something is decoded");
    require(again.size() == encoded.size(), "encoded again it is as long");
    // The last group may have bits that stand for nothing.
    require(again.startsWith(encoded.chopped(4)), "encoded again it is the same");
    require(isResult(ContentDetectors::base64Decoded(Utf8Text::fromValidUtf8(again)), decoded->utf8()),
            "encoded again it says the same");
}
