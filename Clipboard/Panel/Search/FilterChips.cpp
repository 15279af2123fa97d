#include "FilterChips.h"

#include "FilterChip.h"
#include "HistoryViewModel.h"

using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

namespace Clipboard {

namespace {

constexpr int usualPadding = 8;
constexpr int leastPadding = 3;

} // namespace

FilterChips::FilterChips(HistoryViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    QList<std::optional<ClipType>> types{std::nullopt};
    types.append(
        QList<std::optional<ClipType>>(ClipboardCore::allClipTypes.begin(), ClipboardCore::allClipTypes.end()));
    for (const auto& type : types) {
        auto* chip = new FilterChip(type, this);
        // A click on the current filter leaves it on: the view model decides what is checked.
        connect(chip, &QAbstractButton::clicked, this, [this, type] {
            m_viewModel.setFilter(type);
            sync();
        });
        m_chips.append(chip);
    }
}

void FilterChips::sync()
{
    for (FilterChip* chip : std::as_const(m_chips)) {
        const auto type = chip->type();
        chip->setCount(type ? m_viewModel.counts().value(*type) : static_cast<int>(m_viewModel.items().size()));
        chip->setChecked(m_viewModel.filter() == type);
        chip->setRing(m_viewModel.focus() == FocusKey::chip(type));
    }
    layOut();
}

int FilterChips::neededWidth() const
{
    int width = static_cast<int>(m_chips.size() - 1) * Theme::spacing;
    for (const FilterChip* chip : m_chips)
        width += chip->controlSize().width();
    return width;
}

void FilterChips::layOut()
{
    const int room = width() - 2 * Theme::margin;
    for (int padding = usualPadding; padding >= leastPadding; --padding) {
        for (FilterChip* chip : std::as_const(m_chips))
            chip->setPadding(padding);
        if (neededWidth() <= room)
            break;
    }
    int x = Theme::margin;
    for (FilterChip* chip : std::as_const(m_chips)) {
        const int width = chip->controlSize().width();
        chip->setControlGeometry({x, Theme::ringOutset, width, Theme::chipHeight});
        x += width + Theme::spacing;
    }
}

void FilterChips::resizeEvent(QResizeEvent* event)
{
    layOut();
    QWidget::resizeEvent(event);
}

void FilterChips::addFrames(QHash<FocusKey, QRectF>& frames, const QWidget* ancestor) const
{
    for (const FilterChip* chip : m_chips)
        frames.insert(FocusKey::chip(chip->type()), chip->controlRectIn(ancestor));
}

} // namespace Clipboard
