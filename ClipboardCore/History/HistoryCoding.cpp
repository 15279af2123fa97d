#include "History/HistoryCoding.h"

#include "History/EntryReader.h"

#include <algorithm>
#include <utility>

namespace ClipboardCore::HistoryCoding {

namespace JSON = simdjson::ondemand;
using simdjson::SUCCESS;

static_assert(decodePadding >= simdjson::SIMDJSON_PADDING);

void encode(const ClipItem& item, JSONWriter& json)
{
    const auto string = [&json](QLatin1String key, QByteArrayView utf8) {
        json.key(key);
        json.string(utf8);
    };
    const QLatin1String type = rawValue(item.type);

    json.beginObject();
    string(EntryKeys::id, encodedID(item.id));
    string(EntryKeys::type, QByteArrayView(type.data(), type.size()));
    string(EntryKeys::content, item.content.utf8());
    if (item.sourceApp)
        string(EntryKeys::sourceApp, item.sourceApp->toUtf8());
    if (item.bundleID)
        string(EntryKeys::bundleID, item.bundleID->toUtf8());
    json.key(EntryKeys::createdAt);
    json.number(item.createdAt);
    json.key(EntryKeys::isPinned);
    json.boolean(item.isPinned);
    json.endObject();
}

void encode(const QList<ClipItem>& items, const JSONWriter::Sink& sink)
{
    JSONWriter json(sink);
    json.beginArray();
    for (const ClipItem& item : items)
        encode(item, json);
    json.endArray();
    json.finish();
}

std::optional<QList<ClipItem>> decode(QByteArray json)
{
    if (json.size() > largestDocument)
        return std::nullopt;
    json.reserve(json.size() + decodePadding);
    JSON::parser parser;
    JSON::document document;
    JSON::array array;
    if (parser.iterate(json.constData(), static_cast<size_t>(json.size()), static_cast<size_t>(json.capacity()))
                .get(document) != SUCCESS ||
        document.get_array().get(array) != SUCCESS)
        return std::nullopt;

    QList<ClipItem> items;
    JSONValues values(parser);
    EntryReader reader(values);
    for (auto element : array) {
        JSON::value entry;
        if (element.get(entry) != SUCCESS)
            return std::nullopt;
        auto item = reader.read(entry);
        if (!item)
            return std::nullopt;
        items.append(std::move(*item));
    }
    // Being past the end is the one sign that nothing follows the array.
    const bool isWhole = document.current_location().error() == simdjson::OUT_OF_BOUNDS;
    return isWhole ? std::optional(items) : std::nullopt;
}

QByteArray encodedID(const QUuid& id)
{
    return id.toByteArray(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> decodedID(QByteArrayView text)
{
    constexpr QByteArrayView form = "00000000-0000-0000-0000-000000000000";
    const auto fits = [](char c, char model) {
        return model == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
    };
    if (text.size() != form.size() || !std::equal(text.begin(), text.end(), form.begin(), fits))
        return std::nullopt;
    return QUuid::fromString(QLatin1String(text.data(), text.size()));
}

} // namespace ClipboardCore::HistoryCoding
