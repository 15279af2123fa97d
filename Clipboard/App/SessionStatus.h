#pragma once

#include <QVariant>

namespace Clipboard {

struct Platform;
class ServiceNotices;

/// What works in this session, for the command `status`.
namespace SessionStatus {

/// A map for each service: its "name"; whether it "works"; and if not, the "reason" and the "advice", sentences for the
/// user. The hot key has its "holder", a word for the service that has it.
[[nodiscard]] QVariantList services(const Platform& platform, const ServiceNotices& notices,
                                    const QString& workerProblem);

} // namespace SessionStatus

} // namespace Clipboard
