#include "EditorStream.h"
#include "Fuzzer.h"

#include <cstdint>

void Fuzzer::run(QByteArrayView input)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.data());
    const char* broken = EditorStream::firstBroken({bytes, static_cast<size_t>(input.size())});
    require(!broken, broken);
}
