// The smart actions of the selected entry, and the command sheet that lists them.

#include "HistoryViewModel.h"

#include "SmartActionLabel.h"

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::SmartAction;
using ClipboardCore::SmartActionResult;

QList<SmartAction> HistoryViewModel::smartActions()
{
    assertMainThread();
    const std::optional<ClipItem> item = selectedItem();
    if (!item)
        return {};
    if (!m_actionsCache || m_actionsCache->id != item->id)
        m_actionsCache = CachedActions{item->id, m_services.smartActions(*item)};
    return m_actionsCache->actions;
}

void HistoryViewModel::runSmartAction(const SmartAction& action)
{
    assertMainThread();
    const SmartActionResult result = action.run();
    m_services.perform(result.effect, *this);
    m_services.toast(result.toast);
}

QList<SmartAction> HistoryViewModel::cmdkActions()
{
    assertMainThread();
    QList<SmartAction> actions = smartActions();
    const QString wanted = m_cmdkQuery.toLower();
    // What the user reads is what the user types.
    actions.removeIf(
        [&wanted](const SmartAction& action) { return !shownActionLabel(action.label).toLower().contains(wanted); });
    return actions;
}

void HistoryViewModel::setCmdkOpen(bool open)
{
    assertMainThread();
    m_cmdkOpen = open;
    emit cmdkOpenChanged();
}

void HistoryViewModel::setCmdkIndex(int index)
{
    assertMainThread();
    m_cmdkIndex = index;
    emit cmdkIndexChanged();
}

void HistoryViewModel::setCmdkQuery(const QString& query)
{
    assertMainThread();
    m_cmdkQuery = query;
    emit cmdkQueryChanged();
}

void HistoryViewModel::openCmdk()
{
    assertMainThread();
    if (!selectedItem())
        return;
    setCmdkIndex(0);
    setCmdkQuery({});
    setCmdkOpen(true);
}

void HistoryViewModel::runCmdkAt(int index)
{
    assertMainThread();
    const QList<SmartAction> actions = cmdkActions();
    if (index >= 0 && index < actions.size())
        runSmartAction(actions.at(index));
    setCmdkOpen(false);
}

void HistoryViewModel::runCmdkOrdinal(int ordinal)
{
    assertMainThread();
    const QList<SmartAction> actions = cmdkActions();
    if (ordinal < 1 || ordinal > actions.size())
        return;
    runSmartAction(actions.at(ordinal - 1));
    setCmdkOpen(false);
}

void HistoryViewModel::moveCmdk(int delta)
{
    assertMainThread();
    const auto count = static_cast<int>(cmdkActions().size());
    if (count > 0)
        setCmdkIndex((m_cmdkIndex + delta + count) % count);
}

} // namespace Clipboard
