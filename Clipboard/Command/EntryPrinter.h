#pragma once

#include "BusEntry.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

/// Entries as the terminal and scripts get them (docs/command-line.md): stable, and harmless to a terminal.
namespace Clipboard::Command {

/// The index, the id's first eight characters, the type, "*" for pinned or "-", and the preview, between tabs. A
/// terminal gets colours, and no more than fits into its line.
[[nodiscard]] QString entryLine(const Bus::BusEntry& entry);
[[nodiscard]] QJsonObject entryObject(const Bus::BusEntry& entry);

/// The word of such a line that names its entry: the id. Of any other line the first word.
[[nodiscard]] QString nameInLine(const QString& line);

/// On one line. What a terminal would act on is escaped, beyond what JSON asks for.
[[nodiscard]] QString compactJSON(const QJsonObject& object);
[[nodiscard]] QString compactJSON(const QJsonArray& array);

} // namespace Clipboard::Command
