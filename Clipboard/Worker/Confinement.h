#pragma once

namespace Clipboard {

/// Takes from this process what it will not need while it reads what strangers made: more memory and time than its task
/// can cost, other programs, a dump of its memory, a life after its parent's. What the system does not offer is left
/// out.
void confineThisProcess();

} // namespace Clipboard
