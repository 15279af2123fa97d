#include "WaylandPasteboard.h"

#include "DataControlEngine.h"

namespace Clipboard {

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::create(const QByteArray& display)
{
    std::unique_ptr<WaylandPasteboard> pasteboard(new WaylandPasteboard);
    Wayland::DataControlEngine::Options options;
    options.display = display;
    static_cast<ContentReading::Options&>(options.selections.reading) = readingOptions();
    options.onChange = pasteboard->changeListener();
    options.onConnected = pasteboard->connectionListener();
    if (!pasteboard->setEngine(Wayland::DataControlEngine::start(options)))
        return nullptr;
    return pasteboard;
}

} // namespace Clipboard
