#pragma once

#include "OutputNames.h"
#include "Toplevels.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

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
        std::vector<wl_output*> outputs; // that it is on, in the order in which it came there
        bool willBeActive = false;       // as of the next "done"
    };

    using Handle = zwlr_foreign_toplevel_handle_v1;

    using Toplevels::Toplevels;
    [[nodiscard]] bool bind();
    void add(Handle* handle);
    void apply(Handle* handle);
    void end(Handle* handle);
    [[nodiscard]] QString outputOf(Window window) const override;

    zwlr_foreign_toplevel_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    std::optional<OutputNames> m_outputs;
    std::map<Handle*, State> m_states;
};

} // namespace Clipboard::Wayland
