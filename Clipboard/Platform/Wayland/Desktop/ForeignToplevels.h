#pragma once

#include "Toplevels.h"

#include <map>
#include <memory>

struct wl_seat;
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

    bool activateOurs(const QString& title) override;

private:
    struct State
    {
        QString title;
        bool willBeActive = false; // as of the next "done"
    };

    using Handle = zwlr_foreign_toplevel_handle_v1;

    using Toplevels::Toplevels;
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void apply(Handle* handle);
    void end(Handle* handle);

    zwlr_foreign_toplevel_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    std::map<Handle*, State> m_states;
};

} // namespace Clipboard::Wayland
