#pragma once

#include "DataControl.h"
#include "OutgoingPipes.h"
#include "SelectionForms.h"

#include <functional>

namespace Clipboard::Wayland {

/// Content of ours that is offered as a selection, for as long as the compositor wants it.
class OfferSource final
{
public:
    /// Offers the forms, and `mark` as a type by which we know our own offer when it is announced to us, too. Who asks
    /// is answered through `pipes`. `onCancelled` hears when another content has taken its place, and may destroy this.
    OfferSource(ext_data_control_manager_v1* manager, SelectionForms forms, const QByteArray& mark,
                OutgoingPipes& pipes, std::function<void()> onCancelled);
    OfferSource(const OfferSource&) = delete;
    OfferSource& operator=(const OfferSource&) = delete;

    [[nodiscard]] ext_data_control_source_v1* get() const { return m_source.get(); }
    [[nodiscard]] const SelectionForms& forms() const { return m_forms; }

private:
    static void send(void* self, ext_data_control_source_v1* source, const char* type, int descriptor);
    static void cancelled(void* self, ext_data_control_source_v1* source);

    DataControlSource m_source;
    SelectionForms m_forms;
    OutgoingPipes& m_pipes;
    std::function<void()> m_onCancelled;
};

} // namespace Clipboard::Wayland
