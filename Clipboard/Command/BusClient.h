#pragma once

#include "BusNames.h"

#include <QDBusConnection>
#include <QString>
#include <QVariant>

#include <chrono>
#include <variant>

namespace Clipboard::Command {

/// What a command ends with (docs/command-line.md).
enum class ExitCode { done = 0, failed = 1, usage = 2, unreachable = 3, notRunning = 4 };

/// Why a command came to nothing: a sentence for standard error, and what to end with.
struct Failure
{
    ExitCode code = ExitCode::failed;
    QString text;
};

/// What was answered, or why nothing was.
using Answer = std::variant<QVariantList, Failure>;

/// The running program, asked over the session bus.
class BusClient final
{
public:
    BusClient();

    /// Calls a method and waits for the answer, no longer than `limit`.
    [[nodiscard]] Answer call(const QString& method, const QVariantList& arguments = {},
                              std::chrono::milliseconds limit = Bus::answerLimit) const;
    [[nodiscard]] const QDBusConnection& bus() const { return m_bus; }

private:
    QDBusConnection m_bus;
};

} // namespace Clipboard::Command
