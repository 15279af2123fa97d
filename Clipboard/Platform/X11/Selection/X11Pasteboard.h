#pragma once

#include "SnapshotPasteboard.h"

#include <memory>

namespace Clipboard {

/// The CLIPBOARD selection.
class X11Pasteboard final : public SnapshotPasteboard
{
public:
    /// Null when the display cannot be reached or lacks XFixes. An empty name means $DISPLAY.
    [[nodiscard]] static std::unique_ptr<X11Pasteboard> create(const QByteArray& display = {});

    void leave() override;

private:
    X11Pasteboard() = default;
};

} // namespace Clipboard
