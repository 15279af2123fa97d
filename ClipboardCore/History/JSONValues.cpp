#include "History/JSONValues.h"

#include "Support/Utf8.h"

namespace ClipboardCore {

namespace JSON = simdjson::ondemand;
using simdjson::SUCCESS;

namespace {

// Entries are flat; only what stands under unknown keys may be nested.
constexpr int deepestNesting = 512;

/// False also for what only begins like null, which the parser calls an error.
bool isNull(JSON::value value)
{
    bool answer = false;
    return value.is_null().get(answer) == SUCCESS && answer;
}

} // namespace

bool JSONValues::isValid(Value value, int depth)
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

std::optional<QByteArrayView> JSONValues::text(Value value)
{
    // The token runs up to what follows the string, so it is at least as long as the text.
    const auto token = value.raw_json_token();
    JSON::raw_json_string raw;
    if (value.get_raw_json_string().get(raw) != SUCCESS)
        return std::nullopt;
    const auto needed = static_cast<qsizetype>(token.size()) + qsizetype{simdjson::SIMDJSON_PADDING};
    if (m_scratch.size() < needed)
        m_scratch = QByteArray(needed, Qt::Uninitialized);
    auto* end = reinterpret_cast<uint8_t*>(m_scratch.data());
    std::string_view unescaped;
    // An escaped surrogate without its partner passes the parser, and makes no text.
    if (m_parser.unescape(raw, end).get(unescaped) != SUCCESS || !simdjson::validate_utf8(unescaped))
        return std::nullopt;
    return bytes(unescaped);
}

bool JSONValues::readOptional(Value value, std::optional<QString>& text)
{
    text.reset();
    if (isNull(value))
        return true;
    if (const auto utf8 = this->text(value))
        text = Utf8::toString(*utf8);
    return text.has_value();
}

} // namespace ClipboardCore
