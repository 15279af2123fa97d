#pragma once

#include <QSet>
#include <QString>

/// Which copies must not be recorded: those that the copying program marked as none of the history's business
/// (http://nspasteboard.org).
namespace ClipboardCore::CaptureExclusion {

/// Secrets, short-lived content, and content that nobody copied deliberately.
[[nodiscard]] const QSet<QString>& markerTypes();

/// True when at least one of `types` is a marker type.
[[nodiscard]] bool excludes(const QSet<QString>& types);

} // namespace ClipboardCore::CaptureExclusion
