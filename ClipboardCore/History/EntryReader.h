#pragma once

#include "History/ClipItem.h"
#include "History/JSONValues.h"

#include <QLatin1String>

namespace ClipboardCore {

/// The keys of an entry in the history file (docs/history-format.md).
namespace EntryKeys {
inline constexpr QLatin1String id{"id"};
inline constexpr QLatin1String type{"type"};
inline constexpr QLatin1String content{"content"};
inline constexpr QLatin1String sourceApp{"sourceApp"};
inline constexpr QLatin1String bundleID{"bundleID"};
inline constexpr QLatin1String createdAt{"createdAt"};
inline constexpr QLatin1String isPinned{"isPinned"};
} // namespace EntryKeys

/// Reads entries, one after the other.
class EntryReader final
{
public:
    using Value = JSONValues::Value;

    explicit EntryReader(JSONValues& values)
        : m_values(values)
    {
    }

    /// Nothing when anything in the entry is wrong.
    [[nodiscard]] std::optional<ClipItem> read(Value entry);

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
    bool readField(QByteArrayView key, Value value);
    bool readText(QByteArrayView key, Value value);

    JSONValues& m_values;
    ClipItem m_item;
    unsigned m_seen = 0;
};

} // namespace ClipboardCore
