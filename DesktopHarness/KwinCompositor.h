#pragma once

#include <QSize>
#include <QString>

namespace Clipboard::Testing {

class VirtualSession;

/// What makes a session of Plasma's compositor of a virtual one: kwin with a screen that nobody sees.
namespace KwinCompositor {

/// Why no such session can be had on this machine; empty when one can.
[[nodiscard]] QString missing();
/// Starts it and names it to the programs of the session. Why it did not come up; empty when it did.
[[nodiscard]] QString start(VirtualSession& session, QSize size);

} // namespace KwinCompositor

} // namespace Clipboard::Testing
