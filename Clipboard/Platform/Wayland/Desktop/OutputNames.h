#pragma once

#include "WaylandConnection.h"

#include <QString>

#include <map>

struct wl_output;

namespace Clipboard::Wayland {

/// What the session's outputs are called, which is the same on every connection. Main thread.
class OutputNames final
{
public:
    /// The connection has to outlive it. Outputs that come later are bound as well.
    explicit OutputNames(WaylandConnection& connection);
    ~OutputNames();
    OutputNames(const OutputNames&) = delete;
    OutputNames& operator=(const OutputNames&) = delete;

    /// Empty where the compositor gives outputs no names, and for none.
    [[nodiscard]] QString of(wl_output* output) const;

private:
    void add(wl_output* output);

    std::map<wl_output*, QString> m_names;
};

} // namespace Clipboard::Wayland
