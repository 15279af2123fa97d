#include "PanelState.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

PanelState::PanelState(QObject* parent)
    : QObject(parent)
{
    m_index.onReady([this] {
        recomputeVisible();
        ensureSelection();
    });
}

void PanelState::setItems(const QList<ClipItem>& items)
{
    m_items = items;
    emit itemsChanged();
    m_index.setItems(m_items);

    m_counts.clear();
    for (const ClipItem& item : std::as_const(m_items))
        ++m_counts[item.type];
    emit countsChanged();

    recomputeVisible();
    ensureSelection();
}

void PanelState::recomputeVisible()
{
    if (m_query.isEmpty() && !m_filter) {
        m_visible = m_items;
    } else {
        m_visible.clear();
        const QList<qsizetype> matches = m_index.match(m_query);
        for (const qsizetype position : matches) {
            const ClipItem& item = m_items.at(position);
            if (!m_filter || item.type == *m_filter)
                m_visible.append(item);
        }
    }
    emit visibleChanged();
}

void PanelState::ensureSelection()
{
    if (m_visible.isEmpty())
        setSelectedID(std::nullopt);
    else if (visibleIndex(m_selectedID) < 0)
        setSelectedID(m_visible.first().id);
}

qsizetype PanelState::visibleIndex(const std::optional<QUuid>& id) const
{
    if (!id)
        return -1;
    const auto found = std::ranges::find(m_visible, *id, &ClipItem::id);
    return found == m_visible.cend() ? -1 : found - m_visible.cbegin();
}

std::optional<ClipItem> PanelState::selectedItem() const
{
    assertMainThread();
    const qsizetype index = visibleIndex(m_selectedID);
    if (index < 0)
        return std::nullopt;
    return m_visible.at(index);
}

void PanelState::setQuery(const QString& query)
{
    assertMainThread();
    m_query = query;
    emit queryChanged();
    recomputeVisible();
    ensureSelection();
    setFocus(std::nullopt);
}

void PanelState::setFilter(std::optional<ClipType> filter)
{
    assertMainThread();
    m_filter = filter;
    emit filterChanged();
    recomputeVisible();
    ensureSelection();
    setFocus(std::nullopt);
}

void PanelState::setSelectedID(std::optional<QUuid> id)
{
    assertMainThread();
    m_selectedID = id;
    emit selectedIDChanged();
    setQrPreview({});
    setFocus(std::nullopt);
}

void PanelState::selectFirst()
{
    setSelectedID(m_visible.isEmpty() ? std::nullopt : std::optional(m_visible.first().id));
}

void PanelState::selectLast()
{
    setSelectedID(m_visible.isEmpty() ? std::nullopt : std::optional(m_visible.last().id));
}

void PanelState::moveSelection(int delta)
{
    if (m_visible.isEmpty())
        return;
    const qsizetype count = m_visible.size();
    const qsizetype index = std::max<qsizetype>(visibleIndex(m_selectedID), 0);
    setSelectedID(m_visible.at((index + delta + count) % count).id);
}

void PanelState::setFocus(const PanelFocusTarget& focus)
{
    assertMainThread();
    m_focus = focus;
    emit focusChanged();
}

void PanelState::renewFocusToken()
{
    assertMainThread();
    m_focusToken = QUuid::createUuid();
    emit focusTokenChanged();
}

void PanelState::setQrPreview(const QImage& image)
{
    assertMainThread();
    m_qrPreview = image;
    emit qrPreviewChanged();
}

void PanelState::setNotice(const QString& notice)
{
    assertMainThread();
    m_notice = notice;
    emit noticeChanged();
}

void PanelState::assertMainThread() const
{
    Q_ASSERT(QThread::currentThread() == thread());
}

} // namespace Clipboard
