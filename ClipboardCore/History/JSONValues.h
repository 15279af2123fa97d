#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

#include <simdjson.h>

namespace ClipboardCore {

[[nodiscard]] inline QByteArrayView bytes(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

/// Reads values of one document and checks all of them: the parser checks only what is asked for.
class JSONValues final
{
public:
    using Value = simdjson::ondemand::value;

    explicit JSONValues(const simdjson::ondemand::parser& parser)
        : m_parser(parser)
    {
    }

    /// Valid until the next text is read; nothing when the value is no string, or one that is not Unicode.
    [[nodiscard]] std::optional<QByteArrayView> text(Value value);
    /// False when the value is neither a string nor null, which is no text.
    [[nodiscard]] bool readOptional(Value value, std::optional<QString>& text);
    /// True when `value` is valid throughout.
    [[nodiscard]] static bool isValid(Value value, int depth = 0);

private:
    const simdjson::ondemand::parser& m_parser;
    QByteArray m_scratch; // for unescaping; the same bytes each time, so that they stay in the cache
};

} // namespace ClipboardCore
