#include "Actions/JSONText.h"

#include "Actions/JSONTokens.h"
#include "Support/JSONWriter.h"
#include "Support/Utf8.h"

#include <QtEndian>

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace ClipboardCore {

namespace {

namespace JSON = simdjson::ondemand;
using simdjson::SUCCESS;

bool isScalar(JSON::json_type type, std::string_view text)
{
    switch (type) {
    case JSON::json_type::number:
        return JSONTokens::isNumber(text);
    case JSON::json_type::boolean:
        return text == "true" || text == "false";
    case JSON::json_type::null:
        return text == "null";
    default:
        return false;
    }
}

} // namespace

/// Turns a document into nodes. The parser finds the tokens and checks strings for control characters and their ends;
/// what it leaves until a value is asked for (numbers, words, escapes) is checked here.
class JSONText::Reader
{
public:
    explicit Reader(QByteArrayView utf8);

    [[nodiscard]] std::optional<JSONText> read();

private:
    /// Each appends a node and those below it; false when the value is malformed or too deep.
    bool readValue(JSON::value value, int depth);
    bool readArray(JSON::value value, int depth);
    bool readObject(JSON::value value, int depth);
    bool readString(const char* start);

    quint32 append(Kind kind, const char* start = nullptr, const char* end = nullptr);
    void sortMembers(quint32 object);

    JSONText m_result;
    char* m_begin = nullptr;
    qsizetype m_size = 0;

    struct Member
    {
        quint64 beginning = 0; // the first bytes of the key, comparable as a number: decides nearly always
        quint32 node = 0;
    };
    std::vector<Member> m_members; // for sortMembers(), kept for its memory
};

JSONText::Reader::Reader(QByteArrayView utf8)
    : m_size(utf8.size())
{
    QByteArray& bytes = m_result.m_bytes;
    bytes = QByteArray(m_size + qsizetype(simdjson::SIMDJSON_PADDING), '\0');
    m_begin = bytes.data();
    std::copy(utf8.begin(), utf8.end(), m_begin);
    // No value takes less than a sign and a comma.
    m_result.m_nodes.reserve(static_cast<size_t>(m_size / 2 + 1));
}

std::optional<JSONText> JSONText::Reader::read()
{
    JSON::parser parser;
    JSON::document document;
    JSON::value value;
    const auto capacity = static_cast<size_t>(m_result.m_bytes.size());
    if (parser.iterate(m_begin, static_cast<size_t>(m_size), capacity).get(document) != SUCCESS ||
        document.get_value().get(value) != SUCCESS || !readValue(value, 0))
        return std::nullopt;
    // Being past the end is the one sign that nothing follows.
    if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
        return std::nullopt;
    return std::move(m_result);
}

quint32 JSONText::Reader::append(Kind kind, const char* start, const char* end)
{
    auto& nodes = m_result.m_nodes;
    const auto at = start ? static_cast<quint32>(start - m_begin) : 0;
    nodes.push_back({kind, at, static_cast<quint32>(end - start), 0, 0});
    return static_cast<quint32>(nodes.size() - 1);
}

bool JSONText::Reader::readValue(JSON::value value, int depth)
{
    JSON::json_type type{};
    if (value.type().get(type) != SUCCESS)
        return false;
    if (type == JSON::json_type::array)
        return readArray(value, depth + 1);
    if (type == JSON::json_type::object)
        return readObject(value, depth + 1);
    if (type == JSON::json_type::string) {
        // Taken from the parser, which passes over an untaken one as over a key when a colon follows.
        JSON::raw_json_string string;
        return value.get_raw_json_string().get(string) == SUCCESS && readString(string.raw());
    }
    std::string_view token = value.raw_json_token();
    // White space up to the next token belongs to this one.
    while (!token.empty() &&
           (token.back() == ' ' || token.back() == '\n' || token.back() == '\t' || token.back() == '\r'))
        token.remove_suffix(1);
    append(Kind::scalar, token.data(), token.data() + token.size());
    return isScalar(type, token);
}

bool JSONText::Reader::readArray(JSON::value value, int depth)
{
    JSON::array array;
    if (depth > deepestNesting || value.get(array) != SUCCESS)
        return false;
    const quint32 parent = append(Kind::array);
    auto& nodes = m_result.m_nodes;
    quint32 last = 0;
    for (auto element : array) {
        const auto child = static_cast<quint32>(nodes.size());
        JSON::value inner;
        if (element.get(inner) != SUCCESS || !readValue(inner, depth))
            return false;
        (last == 0 ? nodes[parent].child : nodes[last].next) = child;
        last = child;
    }
    return true;
}

bool JSONText::Reader::readObject(JSON::value value, int depth)
{
    JSON::object object;
    if (depth > deepestNesting || value.get(object) != SUCCESS)
        return false;
    const quint32 parent = append(Kind::object);
    auto& nodes = m_result.m_nodes;
    quint32 last = 0;
    for (auto field : object) {
        const auto key = static_cast<quint32>(nodes.size());
        if (field.error() != SUCCESS || !readString(field.key().value_unsafe().raw()) ||
            !readValue(field.value().value_unsafe(), depth))
            return false;
        nodes[key].child = key + 1;
        (last == 0 ? nodes[parent].child : nodes[last].next) = key;
        last = key;
    }
    sortMembers(parent);
    return true;
}

bool JSONText::Reader::readString(const char* start)
{
    // The parser has seen the closing quote.
    const char* end = start;
    bool isPlain = true;
    while (*end != '"') {
        isPlain = isPlain && *end != '\\';
        end += *end == '\\' ? 2 : 1;
    }
    if (isPlain) {
        append(Kind::plainString, start, end);
        return true;
    }
    const char* newEnd = JSONTokens::unescape(m_begin + (start - m_begin), end);
    append(Kind::escapedString, start, newEnd ? newEnd : start);
    return newEnd != nullptr;
}

void JSONText::Reader::sortMembers(quint32 object)
{
    auto& nodes = m_result.m_nodes;
    m_members.clear();
    for (quint32 node = nodes[object].child; node != 0; node = nodes[node].next) {
        const QByteArrayView key = m_result.bytes(nodes[node]);
        std::array<char, sizeof(quint64)> beginning{};
        std::memcpy(beginning.data(), key.data(), std::min(beginning.size(), static_cast<size_t>(key.size())));
        m_members.push_back({qFromBigEndian<quint64>(beginning.data()), node});
    }
    const auto comesBefore = [&](const Member& a, const Member& b) {
        if (a.beginning != b.beginning)
            return a.beginning < b.beginning;
        const int order = m_result.bytes(nodes[a.node]).compare(m_result.bytes(nodes[b.node]));
        // Nodes are numbered in the order of the text.
        return order != 0 ? order < 0 : a.node < b.node;
    };
    if (std::is_sorted(m_members.begin(), m_members.end(), comesBefore))
        return;
    std::sort(m_members.begin(), m_members.end(), comesBefore);
    quint32* link = &nodes[object].child;
    for (const Member& member : m_members) {
        *link = member.node;
        link = &nodes[member.node].next;
    }
    *link = 0;
}

class JSONText::Writer
{
public:
    /// A limit of 0 asks for the compact form.
    Writer(const JSONText& text, qsizetype prettyLimit)
        : m_text(text)
        , m_prettyLimit(prettyLimit)
        , m_out(text.m_bytes.size() * (prettyLimit > 0 ? 2 : 1), Qt::Uninitialized)
    {
    }

    [[nodiscard]] std::optional<Utf8Text> written();

private:
    [[nodiscard]] bool isPretty() const { return m_prettyLimit > 0; }
    /// Each is false when the limit is passed.
    bool writeValue(const Node& node, int depth);
    bool writeContainer(const Node& node, int depth);
    bool beginLine(int depth);
    void writeString(const Node& node);
    void writeEscaped(QByteArrayView text);

    void put(QByteArrayView bytes) { std::copy(bytes.begin(), bytes.end(), room(bytes.size())); }
    void put(char byte) { *room(1) = byte; }
    /// Where the next `count` bytes go. Most tokens are short: this is most of the work.
    char* room(qsizetype count)
    {
        if (m_size + count > m_out.size())
            m_out.resize(2 * (m_size + count));
        m_size += count;
        return m_out.data() + m_size - count;
    }

    const JSONText& m_text;
    qsizetype m_prettyLimit;
    QByteArray m_out;
    qsizetype m_size = 0;
};

std::optional<Utf8Text> JSONText::Writer::written()
{
    if (!writeValue(m_text.m_nodes.front(), 0))
        return std::nullopt;
    m_out.resize(m_size);
    m_out.squeeze();
    return Utf8Text::fromValidUtf8(m_out);
}

bool JSONText::Writer::writeValue(const Node& node, int depth)
{
    switch (node.kind) {
    case Kind::object:
    case Kind::array:
        return writeContainer(node, depth);
    case Kind::plainString:
    case Kind::escapedString:
        writeString(node);
        return true;
    case Kind::scalar:
        put(m_text.bytes(node));
        return true;
    }
    Q_UNREACHABLE();
}

bool JSONText::Writer::writeContainer(const Node& node, int depth)
{
    const bool isObject = node.kind == Kind::object;
    put(isObject ? '{' : '[');
    for (quint32 next = node.child; next != 0;) {
        const Node& child = m_text.m_nodes[next];
        if (!beginLine(depth + 1))
            return false;
        if (isObject) {
            writeString(child);
            put(isPretty() ? QByteArrayView(": ") : QByteArrayView(":"));
        }
        if (!writeValue(isObject ? m_text.m_nodes[child.child] : child, depth + 1))
            return false;
        next = child.next;
        if (next != 0)
            put(',');
    }
    if (node.child != 0 && !beginLine(depth))
        return false;
    put(isObject ? '}' : ']');
    return true;
}

bool JSONText::Writer::beginLine(int depth)
{
    if (!isPretty())
        return true;
    constexpr qsizetype indentWidth = 2;
    if (m_size + indentWidth * depth > m_prettyLimit)
        return false;
    char* line = room(1 + indentWidth * depth);
    *line = '\n';
    std::fill_n(line + 1, indentWidth * depth, ' ');
    return true;
}

void JSONText::Writer::writeString(const Node& node)
{
    put('"');
    if (node.kind == Kind::plainString)
        put(m_text.bytes(node));
    else
        writeEscaped(m_text.bytes(node));
    put('"');
}

void JSONText::Writer::writeEscaped(QByteArrayView text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte == 0xED && static_cast<unsigned char>(text[at + 1]) >= 0xA0) {
            put("\\u");
            put(QByteArray::number(Utf8::decode(text, at).value, 16));
            at += 2;
        } else if (byte < 0x20 || byte == '"' || byte == '\\') {
            JSONWriter::escape(text.sliced(at, 1), [this](QByteArrayView escaped) { put(escaped); });
        } else {
            put(text[at]);
        }
    }
}

std::optional<JSONText> JSONText::read(QByteArrayView utf8)
{
    return Reader(utf8).read();
}

Utf8Text JSONText::minified() const
{
    return *Writer(*this, 0).written();
}

std::optional<Utf8Text> JSONText::pretty(qsizetype limit) const
{
    return Writer(*this, limit).written();
}

} // namespace ClipboardCore
