#pragma once

#include <QSize>
#include <QString>

namespace Clipboard::Testing {

class VirtualSession;

/// What makes a Wayland session of a virtual one: the compositor sway with a screen that nobody sees.
namespace SwayCompositor {

/// Why no such session can be had on this machine; empty when one can.
[[nodiscard]] QString missing();
/// Starts it and names it to the programs of the session. Why it did not come up; empty when it did.
[[nodiscard]] QString start(VirtualSession& session, QSize size);
/// Has the compositor run the program on Super+Shift+V, as a person would configure it: no program can bind a key.
void bindKey(VirtualSession& session, const QString& program);

} // namespace SwayCompositor

} // namespace Clipboard::Testing
