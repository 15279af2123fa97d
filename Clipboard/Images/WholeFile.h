#pragma once

#include <QByteArray>
#include <QString>

namespace Clipboard {

/// Writes a picture file under a temporary name first, so that the final name never stands for half a picture, whatever
/// happens meanwhile. The temporary name ends like a picture's: one that a crash leaves behind is swept as an orphan.
/// False when it cannot be written. The file is readable by its owner alone, and sealed when that is wanted.
bool writeWhole(const QString& target, const QByteArray& content);

/// Brings a file into the form that is wanted, unless it has that form or goes meanwhile. One that cannot be read stays
/// as it is.
void rewriteAsWanted(const QString& path);

} // namespace Clipboard
