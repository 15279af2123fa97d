#pragma once

#include "History/ClipType.h"
#include "Support/Utf8Text.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace ClipboardCore {

/// One entry of the clipboard history: a plain value.
struct ClipItem
{
    QUuid id;
    ClipType type = ClipType::text;
    /// The copied text exactly as it came, or the absolute path of the picture file or of the copied file.
    Utf8Text content;
    std::optional<QString> sourceApp;
    std::optional<QString> bundleID;
    /// Time of the latest capture: seconds since 2001-01-01 00:00:00 UTC.
    double createdAt = 0;
    bool isPinned = false;
    /// How many more files were copied along with this one. Not one of the seven fields: FurtherFiles keeps it.
    int furtherFiles = 0;

    /// All seven fields equal: texts by canonical equivalence, dates exactly.
    friend bool operator==(const ClipItem& a, const ClipItem& b);

    /// A short, quoted, one-line form for notices: at most 32 characters between “ and ”.
    [[nodiscard]] QString snippet() const;
};

/// Now, in the unit of ClipItem::createdAt.
[[nodiscard]] double currentTime();

} // namespace ClipboardCore
