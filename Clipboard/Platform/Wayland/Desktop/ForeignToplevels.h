#pragma once

#include "Toplevels.h"

#include <map>
#include <memory>

struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace Clipboard::Wayland {

/// As sway and others of its family tell.
class ForeignToplevels final : public Toplevels
{
public:
    /// Null when the compositor cannot be reached, or does not tell.
    [[nodiscard]] static std::shared_ptr<ForeignToplevels> follow();
    ~ForeignToplevels() override;

private:
    using Handle = zwlr_foreign_toplevel_handle_v1;

    using Toplevels::Toplevels;
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void apply(Handle* handle);
    void end(Handle* handle);

    zwlr_foreign_toplevel_manager_v1* m_manager = nullptr;
    std::map<Handle*, bool> m_willBeActive; // as of the next "done"
};

} // namespace Clipboard::Wayland
