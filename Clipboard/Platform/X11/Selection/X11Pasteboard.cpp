#include "X11Pasteboard.h"

#include "SelectionEngine.h"
#include "TransferLimits.h"

namespace Clipboard {

std::unique_ptr<X11Pasteboard> X11Pasteboard::create(const QByteArray& display)
{
    std::unique_ptr<X11Pasteboard> pasteboard(new X11Pasteboard);
    X11::SelectionEngine::Options options;
    options.display = display;
    static_cast<ContentReading::Options&>(options.selections.reading) = readingOptions();
    options.onChange = pasteboard->changeListener();
    options.onConnected = pasteboard->connectionListener();
    if (!pasteboard->setEngine(X11::SelectionEngine::start(options)))
        return nullptr;
    return pasteboard;
}

void X11Pasteboard::leave()
{
    // The engine keeps limits of its own, unless the server hangs.
    engine()->handOver().wait_for(X11::successorTimeout + 2 * X11::handOverTimeout);
}

} // namespace Clipboard
