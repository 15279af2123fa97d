#pragma once

#include "ClipboardEngine.h"
#include "DataControlDispatcher.h"

#include <functional>
#include <memory>

namespace Clipboard::Wayland {

/// The engine of a Wayland compositor's clipboard.
class DataControlEngine final : public ClipboardEngine
{
public:
    struct Options
    {
        QByteArray display; // empty: $WAYLAND_DISPLAY
        DataControlDispatcher::Options selections;
        /// Hears every copy of another program, in order, on the engine's thread.
        std::function<void(const SelectionSnapshot&)> onChange;
        /// Hears on the engine's thread that the connection is lost (false) and that it is there again (true).
        std::function<void(bool)> onConnected = [](bool) {};
    };

    /// Every copy made after it returns is heard of. Null when the compositor cannot be reached or has no data control.
    [[nodiscard]] static std::unique_ptr<DataControlEngine> start(const Options& options);

private:
    DataControlEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, const Options& options);
};

} // namespace Clipboard::Wayland
