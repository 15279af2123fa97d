#include "OfferSource.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace Clipboard::Wayland {

OfferSource::OfferSource(ext_data_control_manager_v1* manager, SelectionForms forms, const QByteArray& mark,
                         OutgoingPipes& pipes, std::function<void()> onCancelled)
    : m_source(ext_data_control_manager_v1_create_data_source(manager))
    , m_forms(std::move(forms))
    , m_pipes(pipes)
    , m_onCancelled(std::move(onCancelled))
{
    static constexpr ext_data_control_source_v1_listener listener{&send, &cancelled};
    ext_data_control_source_v1_add_listener(m_source.get(), &listener, this);
    for (const SelectionForm& form : m_forms)
        ext_data_control_source_v1_offer(m_source.get(), form.target.constData());
    ext_data_control_source_v1_offer(m_source.get(), mark.constData());
}

void OfferSource::send(void* self, ext_data_control_source_v1* /*source*/, const char* type, int descriptor)
{
    const auto& source = *static_cast<OfferSource*>(self);
    const auto form = std::ranges::find(source.m_forms, QByteArray(type), &SelectionForm::target);
    const auto bytes = form == source.m_forms.end() ? std::nullopt : form->bytes();
    if (bytes)
        source.m_pipes.add(descriptor, *bytes);
    else
        ::close(descriptor);
}

void OfferSource::cancelled(void* self, ext_data_control_source_v1* /*source*/)
{
    // A copy: it may destroy what holds it.
    const auto onCancelled = static_cast<OfferSource*>(self)->m_onCancelled;
    onCancelled();
}

} // namespace Clipboard::Wayland
