#include "History/HistoryCoding.h"

#include <simdjson.h>

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace ClipboardCore::HistoryCoding {

namespace {

using simdjson::dom::element;

// No valid history is deeper than 2; unknown keys may hold more.
constexpr size_t deepestNesting = 512;

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

std::optional<std::string_view> stringValue(element value)
{
    std::string_view text;
    return value.get(text) == simdjson::SUCCESS ? std::optional(text) : std::nullopt;
}

/// One entry in the reading: which of the required keys have been seen with a right value.
class EntryReader
{
public:
    /// False when the value is wrong for its key. Of a repeated key the last value counts.
    bool read(std::string_view key, element value);
    [[nodiscard]] std::optional<ClipItem> item() const;

private:
    bool readText(element value, std::optional<QString>& field);

    ClipItem m_item;
    bool m_hasID = false;
    bool m_hasType = false;
    bool m_hasContent = false;
    bool m_hasCreatedAt = false;
    bool m_hasIsPinned = false;
};

bool EntryReader::read(std::string_view key, element value)
{
    const QByteArrayView name = bytes(key);
    if (name == Keys::id) {
        const auto text = stringValue(value);
        const auto id = text ? decodedID(bytes(*text)) : std::nullopt;
        m_item.id = id.value_or(QUuid());
        return m_hasID = id.has_value();
    }
    if (name == Keys::type) {
        const auto text = stringValue(value);
        const auto type = text ? clipTypeFromRawValue(QString::fromUtf8(bytes(*text))) : std::nullopt;
        m_item.type = type.value_or(ClipType::text);
        return m_hasType = type.has_value();
    }
    if (name == Keys::content) {
        const auto text = stringValue(value);
        if (text)
            m_item.content = Utf8Text::fromUtf8(bytes(*text).toByteArray());
        return m_hasContent = text.has_value();
    }
    if (name == Keys::sourceApp)
        return readText(value, m_item.sourceApp);
    if (name == Keys::bundleID)
        return readText(value, m_item.bundleID);
    if (name == Keys::createdAt)
        return m_hasCreatedAt = value.is_number() && value.get(m_item.createdAt) == simdjson::SUCCESS;
    if (name == Keys::isPinned)
        return m_hasIsPinned = value.get(m_item.isPinned) == simdjson::SUCCESS;
    return true;
}

bool EntryReader::readText(element value, std::optional<QString>& field)
{
    field.reset();
    if (value.is_null())
        return true;
    if (const auto text = stringValue(value))
        field = QString::fromUtf8(bytes(*text));
    return field.has_value();
}

std::optional<ClipItem> EntryReader::item() const
{
    if (m_hasID && m_hasType && m_hasContent && m_hasCreatedAt && m_hasIsPinned)
        return m_item;
    return std::nullopt;
}

std::optional<ClipItem> decodeEntry(element entry)
{
    simdjson::dom::object object;
    if (entry.get(object) != simdjson::SUCCESS)
        return std::nullopt;
    EntryReader reader;
    for (const auto& [key, value] : object)
        if (!reader.read(key, value))
            return std::nullopt;
    return reader.item();
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

std::optional<QList<ClipItem>> decode(const QByteArray& json)
{
    simdjson::dom::parser parser;
    if (parser.allocate(static_cast<size_t>(json.size()), deepestNesting) != simdjson::SUCCESS)
        return std::nullopt;
    element document;
    simdjson::dom::array array;
    if (parser.parse(json.constData(), static_cast<size_t>(json.size())).get(document) != simdjson::SUCCESS ||
        document.get(array) != simdjson::SUCCESS)
        return std::nullopt;

    QList<ClipItem> items;
    for (const element entry : array) {
        const auto item = decodeEntry(entry);
        if (!item)
            return std::nullopt;
        items.append(*item);
    }
    return items;
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
