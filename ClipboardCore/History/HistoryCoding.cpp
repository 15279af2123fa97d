#include "History/HistoryCoding.h"

#include "Support/Utf8.h"

#include <simdjson.h>

#include <algorithm>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace ClipboardCore::HistoryCoding {

namespace {

namespace JSON = simdjson::ondemand;
using simdjson::SUCCESS;

static_assert(decodePadding >= simdjson::SIMDJSON_PADDING);

// Entries are flat; only what stands under unknown keys may be nested.
constexpr int deepestNesting = 512;

namespace Keys {
constexpr auto id = "id"_L1;
constexpr auto type = "type"_L1;
constexpr auto content = "content"_L1;
constexpr auto sourceApp = "sourceApp"_L1;
constexpr auto bundleID = "bundleID"_L1;
constexpr auto createdAt = "createdAt"_L1;
constexpr auto isPinned = "isPinned"_L1;
} // namespace Keys

void encode(const ClipItem& item, JSONWriter& json)
{
    const auto string = [&json](QLatin1String key, QByteArrayView utf8) {
        json.key(key);
        json.string(utf8);
    };
    const QLatin1String type = rawValue(item.type);

    json.beginObject();
    string(Keys::id, encodedID(item.id));
    string(Keys::type, QByteArrayView(type.data(), type.size()));
    string(Keys::content, item.content.utf8());
    if (item.sourceApp)
        string(Keys::sourceApp, item.sourceApp->toUtf8());
    if (item.bundleID)
        string(Keys::bundleID, item.bundleID->toUtf8());
    json.key(Keys::createdAt);
    json.number(item.createdAt);
    json.key(Keys::isPinned);
    json.boolean(item.isPinned);
    json.endObject();
}

QByteArrayView bytes(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

/// False also for what only begins like null, which the parser calls an error.
bool isNull(JSON::value value)
{
    bool answer = false;
    return value.is_null().get(answer) == SUCCESS && answer;
}

/// True when `value` is valid throughout. The parser checks only what is asked for, so everything is.
bool isValid(JSON::value value, int depth = 0)
{
    JSON::json_type type{};
    if (depth > deepestNesting || value.type().get(type) != SUCCESS)
        return false;
    switch (type) {
    case JSON::json_type::array: {
        JSON::array array;
        if (value.get(array) != SUCCESS)
            return false;
        for (auto element : array)
            if (JSON::value inner; element.get(inner) != SUCCESS || !isValid(inner, depth + 1))
                return false;
        return true;
    }
    case JSON::json_type::object: {
        JSON::object object;
        if (value.get(object) != SUCCESS)
            return false;
        for (auto field : object)
            if (field.error() != SUCCESS || field.unescaped_key().error() != SUCCESS ||
                !isValid(field.value().value_unsafe(), depth + 1))
                return false;
        return true;
    }
    case JSON::json_type::number:
        return value.get_double().error() == SUCCESS;
    case JSON::json_type::string:
        return value.get_string().error() == SUCCESS;
    case JSON::json_type::boolean:
        return value.get_bool().error() == SUCCESS;
    case JSON::json_type::null:
        return isNull(value);
    }
    return false;
}

/// Reads entries, one after the other.
class EntryReader
{
public:
    explicit EntryReader(const JSON::parser& parser)
        : m_parser(parser)
    {
    }

    [[nodiscard]] std::optional<ClipItem> read(JSON::value entry);

private:
    enum Required : unsigned {
        hasID = 1,
        hasType = 2,
        hasContent = 4,
        hasCreatedAt = 8,
        hasIsPinned = 16,
        hasAll = 31
    };

    /// False when the value is wrong for its key. Of a repeated key the last value counts.
    bool readField(QByteArrayView key, JSON::value value);
    /// The text in m_text; nothing when the value is no string, or one that is not Unicode.
    bool readString(JSON::value value);
    bool readOptional(JSON::value value, std::optional<QString>& field);

    const JSON::parser& m_parser;
    QByteArray m_scratch; // for unescaping; the same bytes each time, so that they stay in the cache
    QByteArrayView m_text;
    ClipItem m_item;
    unsigned m_seen = 0;
};

std::optional<ClipItem> EntryReader::read(JSON::value entry)
{
    m_item = {};
    m_seen = 0;
    JSON::object object;
    if (entry.get(object) != SUCCESS)
        return std::nullopt;
    for (auto field : object) {
        std::string_view key;
        if (field.error() != SUCCESS || field.unescaped_key().get(key) != SUCCESS ||
            !readField(bytes(key), field.value().value_unsafe()))
            return std::nullopt;
    }
    return m_seen == Required::hasAll ? std::optional(m_item) : std::nullopt;
}

bool EntryReader::readField(QByteArrayView key, JSON::value value)
{
    if (key == Keys::sourceApp)
        return readOptional(value, m_item.sourceApp);
    if (key == Keys::bundleID)
        return readOptional(value, m_item.bundleID);
    if (key == Keys::createdAt) {
        m_seen |= Required::hasCreatedAt;
        return value.get_double().get(m_item.createdAt) == SUCCESS;
    }
    if (key == Keys::isPinned) {
        m_seen |= Required::hasIsPinned;
        return value.get_bool().get(m_item.isPinned) == SUCCESS;
    }
    if (key != Keys::id && key != Keys::type && key != Keys::content)
        return isValid(value);

    if (!readString(value))
        return false;
    if (key == Keys::content) {
        m_seen |= Required::hasContent;
        m_item.content = Utf8Text::fromValidUtf8(m_text.toByteArray());
        return true;
    }
    if (key == Keys::id) {
        m_seen |= Required::hasID;
        const auto id = decodedID(m_text);
        m_item.id = id.value_or(QUuid());
        return id.has_value();
    }
    m_seen |= Required::hasType;
    const auto type = clipTypeFromRawValue(Utf8::toString(m_text));
    m_item.type = type.value_or(ClipType::text);
    return type.has_value();
}

bool EntryReader::readString(JSON::value value)
{
    // The token runs up to what follows the string, so it is at least as long as the text.
    const auto token = value.raw_json_token();
    JSON::raw_json_string raw;
    if (value.get_raw_json_string().get(raw) != SUCCESS)
        return false;
    const auto needed = static_cast<qsizetype>(token.size()) + decodePadding;
    if (m_scratch.size() < needed)
        m_scratch = QByteArray(needed, Qt::Uninitialized);
    auto* end = reinterpret_cast<uint8_t*>(m_scratch.data());
    std::string_view text;
    // An escaped surrogate without its partner passes the parser, and makes no text.
    if (m_parser.unescape(raw, end).get(text) != SUCCESS || !simdjson::validate_utf8(text))
        return false;
    m_text = bytes(text);
    return true;
}

bool EntryReader::readOptional(JSON::value value, std::optional<QString>& field)
{
    field.reset();
    if (isNull(value))
        return true;
    if (readString(value))
        field = Utf8::toString(m_text);
    return field.has_value();
}

} // namespace

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
    EntryReader reader(parser);
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
