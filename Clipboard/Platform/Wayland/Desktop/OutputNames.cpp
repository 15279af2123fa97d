#include "OutputNames.h"

namespace Clipboard::Wayland {

namespace {

constexpr uint32_t outputVersion = 4; // the first with names

} // namespace

OutputNames::OutputNames(WaylandConnection& connection)
{
    connection.bindEach(wl_output_interface, outputVersion,
                        [this](void* output) { add(static_cast<wl_output*>(output)); });
}

OutputNames::~OutputNames()
{
    for (const auto& [output, name] : m_names)
        wl_output_destroy(output);
}

void OutputNames::add(wl_output* output)
{
    static constexpr auto ignore = [](void*, wl_output*, auto...) {};
    static constexpr wl_output_listener listener{
        ignore,
        ignore,
        ignore,
        ignore,
        [](void* self, wl_output* of, const char* name) {
            static_cast<OutputNames*>(self)->m_names[of] = QString::fromUtf8(name);
        },
        ignore,
    };
    m_names[output] = QString();
    wl_output_add_listener(output, &listener, this);
}

QString OutputNames::of(wl_output* output) const
{
    const auto found = m_names.find(output);
    return found == m_names.end() ? QString() : found->second;
}

} // namespace Clipboard::Wayland
