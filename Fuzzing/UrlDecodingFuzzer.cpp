#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto decoded = ContentDetectors::urlDecoded(content);
    if (!decoded)
        return;
    require(decoded->byteCount() == content.byteCount() - 2 * content.utf8().count('%'),
            "each escape becomes one byte");
    const auto encoded = Utf8Text::fromValidUtf8(decoded->utf8().toPercentEncoding());
    if (encoded.byteCount() > decoded->byteCount() && encoded.byteCount() <= ContentDetectors::sizeLimit)
        require(isResult(ContentDetectors::urlDecoded(encoded), decoded->utf8()), "encoded again it says the same");
}
