#include "DataControlEngine.h"

#include <utility>

namespace Clipboard::Wayland {

namespace {

std::unique_ptr<ClipboardDispatcher> connect(const DataControlEngine::Options& options, const std::any& remains)
{
    return DataControlDispatcher::open(options.display, options.selections, options.onChange,
                                       std::any_cast<DataControlDispatcher::Remains>(&remains));
}

} // namespace

std::unique_ptr<DataControlEngine> DataControlEngine::start(const Options& options)
{
    auto dispatcher = connect(options, {});
    if (!dispatcher)
        return nullptr;
    return std::unique_ptr<DataControlEngine>(new DataControlEngine(std::move(dispatcher), options));
}

DataControlEngine::DataControlEngine(std::unique_ptr<ClipboardDispatcher> dispatcher, const Options& options)
    : ClipboardEngine(
          std::move(dispatcher), [options](const std::any& remains) { return connect(options, remains); },
          options.onConnected)
{
}

} // namespace Clipboard::Wayland
