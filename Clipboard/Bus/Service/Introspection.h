#pragma once

#include <QString>

namespace Clipboard::Bus {

/// The interfaces of the program's object, as the D-Bus Specification wants them described ("Introspection Data
/// Format").
[[nodiscard]] QString introspection();

} // namespace Clipboard::Bus
