#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto payload = ContentDetectors::jwtPayload(content);
    if (!payload)
        return;
    require(payload->utf8().startsWith('{'), "claims are an object");
    if (payload->byteCount() <= ContentDetectors::sizeLimit)
        require(isResult(ContentDetectors::prettyJSON(*payload), payload->utf8()), "claims are pretty JSON");
}
