#include "History/EntryReader.h"

#include "History/HistoryCoding.h"
#include "Support/Utf8.h"

#include <string_view>

namespace ClipboardCore {

using simdjson::SUCCESS;

std::optional<ClipItem> EntryReader::read(Value entry)
{
    m_item = {};
    m_seen = 0;
    simdjson::ondemand::object object;
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

bool EntryReader::readField(QByteArrayView key, Value value)
{
    if (key == EntryKeys::sourceApp)
        return m_values.readOptional(value, m_item.sourceApp);
    if (key == EntryKeys::bundleID)
        return m_values.readOptional(value, m_item.bundleID);
    if (key == EntryKeys::createdAt) {
        m_seen |= Required::hasCreatedAt;
        return value.get_double().get(m_item.createdAt) == SUCCESS;
    }
    if (key == EntryKeys::isPinned) {
        m_seen |= Required::hasIsPinned;
        return value.get_bool().get(m_item.isPinned) == SUCCESS;
    }
    if (key == EntryKeys::id || key == EntryKeys::type || key == EntryKeys::content)
        return readText(key, value);
    return JSONValues::isValid(value);
}

bool EntryReader::readText(QByteArrayView key, Value value)
{
    const auto text = m_values.text(value);
    if (!text)
        return false;
    if (key == EntryKeys::content) {
        m_seen |= Required::hasContent;
        m_item.content = Utf8Text::fromValidUtf8(text->toByteArray());
        return true;
    }
    if (key == EntryKeys::id) {
        m_seen |= Required::hasID;
        const auto id = HistoryCoding::decodedID(*text);
        m_item.id = id.value_or(QUuid());
        return id.has_value();
    }
    m_seen |= Required::hasType;
    const auto type = clipTypeFromRawValue(Utf8::toString(*text));
    m_item.type = type.value_or(ClipType::text);
    return type.has_value();
}

} // namespace ClipboardCore
