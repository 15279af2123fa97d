#pragma once

class QObject;

namespace Clipboard {

/// Called while something is painted: reports `name` under the logging category `tessaly.timing` once that frame is on
/// the screen. Costs nothing unless the category is switched on.
void reportFrame(QObject* painted, const char* name);

} // namespace Clipboard
