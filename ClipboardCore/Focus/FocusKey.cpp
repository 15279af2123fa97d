#include "Focus/FocusKey.h"

namespace ClipboardCore {

FocusBand FocusKey::band() const
{
    if (as<Chip>())
        return FocusBand::header;
    return as<Row>() ? FocusBand::list : FocusBand::preview;
}

size_t qHash(const FocusKey& key, size_t seed) noexcept
{
    const auto hash = [&key, seed](auto payload) { return qHashMulti(seed, key.m_value.index(), payload); };
    if (const auto* chip = key.as<FocusKey::Chip>())
        return hash(chip->type ? static_cast<int>(*chip->type) : -1);
    if (const auto* row = key.as<FocusKey::Row>())
        return hash(row->id);
    if (const auto* button = key.as<FocusKey::Button>())
        return hash(static_cast<int>(button->action));
    if (const auto* action = key.as<FocusKey::Action>())
        return hash(action->index);
    return seed;
}

} // namespace ClipboardCore
