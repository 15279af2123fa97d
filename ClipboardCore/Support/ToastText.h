#pragma once

#include <QString>

namespace ClipboardCore {

/// What a short notice says: what was done or is under way, or what could not be done. A text alone is the former, and
/// where only the text counts it is the text.
struct ToastText
{
    enum class Kind { done, failure };

    ToastText(const QString& what, Kind outcome = Kind::done) // NOLINT(google-explicit-constructor)
        : text(what)
        , kind(outcome)
    {
    }
    [[nodiscard]] static ToastText failure(const QString& what) { return {what, Kind::failure}; }
    operator const QString&() const { return text; } // NOLINT(google-explicit-constructor)
    bool operator==(const ToastText&) const = default;

    QString text;
    Kind kind;
};

} // namespace ClipboardCore
