#pragma once

#include "History/ClipItem.h"

#include <QColor>
#include <QString>

/// The texts and tints under which entries are shown. Main thread only.
namespace Clipboard {

struct ClipTypeMeta
{
    QString label; // as on filter chips, badges and in the spoken label
    QColor tint;
};

[[nodiscard]] ClipTypeMeta meta(ClipboardCore::ClipType type);

/// The small word for a type on a row.
[[nodiscard]] QString badge(ClipboardCore::ClipType type);

/// The title line of a list row. At most 200 characters, but for links and colours, which are shown whole.
[[nodiscard]] QString rowTitle(const ClipboardCore::ClipItem& item);

/// What a screen reader says for a row: type, title, source, age and whether it is pinned. `now` is in the unit of
/// ClipItem::createdAt.
[[nodiscard]] QString accessibilityLabel(const ClipboardCore::ClipItem& item, double now);

/// "just now", "5m ago", "yesterday".
[[nodiscard]] QString ageLabel(const ClipboardCore::ClipItem& item, double now);

} // namespace Clipboard
