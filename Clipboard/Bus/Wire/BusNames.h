#pragma once

#include <QLatin1String>
#include <QStandardPaths>
#include <QString>

#include <chrono>

/// How the program is found on the session bus (docs/bus.md).
namespace Clipboard::Bus {

inline constexpr QLatin1String serviceName("com.tessaly.Tessaly");
inline constexpr QLatin1String objectPath("/com/tessaly/Tessaly");
inline constexpr QLatin1String interfaceName("com.tessaly.Tessaly");
/// Desktop Entry Specification 1.5, "D-Bus Activation".
inline constexpr QLatin1String applicationInterface("org.freedesktop.Application");

/// The folder that the running program keeps for itself by the file "lock" in it.
[[nodiscard]] inline QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Tessaly");
}

/// Larger contents travel as a file descriptor: the bus copies each message twice, and a daemon may refuse large ones.
inline constexpr qint64 largestInlineContent = qint64{64} * 1024;

/// A running program answers within milliseconds; a busy machine takes its time. Whoever asks looks at a terminal or an
/// empty screen meanwhile.
inline constexpr std::chrono::seconds answerLimit{5};
/// The same for what has to decode a large picture or look into a large text first.
inline constexpr std::chrono::seconds workLimit{60};

namespace Error {
inline constexpr QLatin1String noSuchEntry("com.tessaly.Tessaly.Error.NoSuchEntry");
inline constexpr QLatin1String noSuchAction("com.tessaly.Tessaly.Error.NoSuchAction");
inline constexpr QLatin1String noSuchType("com.tessaly.Tessaly.Error.NoSuchType");
inline constexpr QLatin1String fileGone("com.tessaly.Tessaly.Error.FileGone");
inline constexpr QLatin1String badContent("com.tessaly.Tessaly.Error.BadContent");
} // namespace Error

} // namespace Clipboard::Bus
