#include "SelectionEngine.h"

#include <xcb/xfixes.h>

#include <utility>

namespace Clipboard::X11 {

namespace {

using Remains = SelectionDispatcher::Remains;

std::unique_ptr<ClipboardDispatcher> connect(const SelectionEngine::Options& options, const std::any& remains)
{
    auto connection = XcbConnection::open(options.display);
    if (!connection || !connection->hasExtension(&xcb_xfixes_id))
        return nullptr;
    const auto* left = std::any_cast<Remains>(&remains);
    return std::make_unique<SelectionDispatcher>(std::move(connection), options.selections, options.onChange,
                                                 left != nullptr ? std::optional(*left) : std::nullopt);
}

} // namespace

std::unique_ptr<SelectionEngine> SelectionEngine::start(const Options& options)
{
    auto dispatcher = connect(options, {});
    if (!dispatcher)
        return nullptr;
    return std::unique_ptr<SelectionEngine>(new SelectionEngine(std::move(dispatcher), options));
}

SelectionEngine::SelectionEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, const Options& options)
    : ClipboardEngine(
          std::move(dispatcher), [options](const std::any& remains) { return connect(options, remains); },
          options.onConnected)
{
}

} // namespace Clipboard::X11
