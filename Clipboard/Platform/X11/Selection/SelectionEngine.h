#pragma once

#include "ClipboardEngine.h"
#include "SelectionDispatcher.h"

#include <functional>
#include <memory>

namespace Clipboard::X11 {

/// The engine of an X server's clipboard.
class SelectionEngine final : public ClipboardEngine
{
public:
    struct Options
    {
        QByteArray display; // empty: $DISPLAY
        SelectionDispatcher::Options selections;
        /// Hears every copy of another program, in order, on the engine's thread.
        std::function<void(const SelectionSnapshot&)> onChange;
        /// Hears on the engine's thread that the connection is lost (false) and that it is there again (true).
        std::function<void(bool)> onConnected = [](bool) {};
    };

    /// Every copy made after it returns is heard of. Null when the display cannot be reached or has no XFixes.
    [[nodiscard]] static std::unique_ptr<SelectionEngine> start(const Options& options);

private:
    SelectionEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, const Options& options);
};

} // namespace Clipboard::X11
