#include "Fuzzer.h"

#include <cstdio>
#include <cstdlib>

using namespace ClipboardCore;

namespace Fuzzer {

void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", property);
    std::abort();
}

Utf8Text text(QByteArrayView input)
{
    return Utf8Text::fromUtf8(input.toByteArray());
}

bool isResult(const std::optional<Utf8Text>& result, QByteArrayView bytes)
{
    return result && result->utf8() == bytes;
}

} // namespace Fuzzer

/// What libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    Fuzzer::run(QByteArrayView(data, static_cast<qsizetype>(size)));
    return 0;
}
