#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"

#include <algorithm>

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto stripped = ContentDetectors::strippedTrackers(content);
    if (!stripped)
        return;
    require(!ContentDetectors::strippedTrackers(*stripped), "no tracker is left");
    require(stripped->byteCount() < content.byteCount(), "something is gone");
    const QByteArrayView before = content.utf8();
    auto at = before.begin();
    for (const char c : stripped->utf8()) {
        at = std::find(at, before.end(), c);
        require(at != before.end(), "what is left stands in its order");
        ++at;
    }
}
