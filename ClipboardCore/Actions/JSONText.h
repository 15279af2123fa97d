#pragma once

#include "Support/Utf8Text.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace ClipboardCore {

/// A JSON object or array as it is going to be written: members in order, numbers still as their digits.
class JSONText final
{
public:
    /// Containers nested deeper than this are an attack on the stack, not data.
    static constexpr int deepestNesting = 512;

    /// Reads all of `utf8`, an object or an array with nothing but white space around it. The caller bounds the size.
    [[nodiscard]] static std::optional<JSONText> read(QByteArrayView utf8);

    [[nodiscard]] bool isObject() const { return m_nodes.front().kind == Kind::object; }
    [[nodiscard]] Utf8Text minified() const;
    /// Nothing when the indentation makes it larger than `limit` bytes.
    [[nodiscard]] std::optional<Utf8Text> pretty(qsizetype limit) const;

private:
    class Reader;
    class Writer;

    enum class Kind : quint8 {
        object,        // its children are keys
        array,         // its children are values
        plainString,   // what stands between the quotes can be written as it is
        escapedString, // its bytes are the text itself, a lone surrogate in three bytes like any other code point
        scalar,        // a number, true, false or null
    };
    struct Node
    {
        Kind kind = Kind::scalar;
        quint32 start = 0; // in m_bytes
        quint32 length = 0;
        quint32 child = 0; // the first child; a key's is its value; 0 is none, since the first node is nobody's child
        quint32 next = 0;  // the next child of the same parent
    };

    [[nodiscard]] QByteArrayView bytes(const Node& node) const
    {
        return QByteArrayView(m_bytes).sliced(node.start, node.length);
    }

    QByteArray m_bytes;
    std::vector<Node> m_nodes;
};

namespace ContentDetectors {

/// `text` trimmed and read, when it is an object or an array of at most `sizeLimit` bytes.
[[nodiscard]] std::optional<JSONText> jsonObject(const Utf8Text& text);

} // namespace ContentDetectors

} // namespace ClipboardCore
