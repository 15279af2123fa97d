#include "Fuzzer.h"
#include "History/HistoryCoding.h"

using namespace ClipboardCore;

namespace {

QByteArray encoded(const QList<ClipItem>& items)
{
    QByteArray json;
    HistoryCoding::encode(items, [&json](QByteArrayView bytes) { json += bytes; });
    return json;
}

} // namespace

void Fuzzer::run(QByteArrayView input)
{
    const auto items = HistoryCoding::decode(input.toByteArray());
    if (!items)
        return;
    const QByteArray json = encoded(*items);
    const auto again = HistoryCoding::decode(json);
    require(again.has_value(), "what was written can be read");
    require(*again == *items, "what was written is what was read");
    require(encoded(*again) == json, "writing again changes nothing");
}
