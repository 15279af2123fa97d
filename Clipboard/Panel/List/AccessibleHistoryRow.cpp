#include "AccessibleHistoryRow.h"

#include "HistoryList.h"
#include "HistoryListModel.h"
#include "HistoryViewModel.h"

#include <QWindow>

namespace Clipboard {

AccessibleHistoryRow::AccessibleHistoryRow(HistoryList& list, const QUuid& entry)
    : m_list(list)
    , m_entry(entry)
{
}

std::optional<int> AccessibleHistoryRow::index() const
{
    return m_list.entries().row(m_entry);
}

QAccessibleInterface* AccessibleHistoryRow::parent() const
{
    return QAccessible::queryAccessibleInterface(&m_list);
}

QWindow* AccessibleHistoryRow::window() const
{
    return m_list.window()->windowHandle();
}

QRect AccessibleHistoryRow::rect() const
{
    const auto row = index();
    if (!row)
        return {};
    const QRect place = m_list.visualRect(m_list.entries().index(*row));
    return {m_list.viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::State AccessibleHistoryRow::state() const
{
    QAccessible::State state;
    const auto row = index();
    if (!row) {
        state.invalid = true;
        return state;
    }
    state.selectable = true;
    state.focusable = true;
    state.selected = m_list.viewModel().selectedID() == m_entry;
    state.focused = state.selected && m_list.hasPanelFocus();
    state.invisible = !m_list.isVisible();
    state.offscreen = !m_list.viewport()->rect().intersects(m_list.visualRect(m_list.entries().index(*row)));
    return state;
}

QString AccessibleHistoryRow::text(QAccessible::Text kind) const
{
    const auto row = index();
    if (!row || (kind != QAccessible::Name && kind != QAccessible::Description))
        return {};
    const auto role = kind == QAccessible::Name ? Qt::AccessibleTextRole : Qt::AccessibleDescriptionRole;
    return m_list.entries().index(*row).data(role).toString();
}

void* AccessibleHistoryRow::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList AccessibleHistoryRow::actionNames() const
{
    return {pressAction(), setFocusAction()};
}

void AccessibleHistoryRow::doAction(const QString& name)
{
    const auto row = index();
    if (!row || !m_list.isVisible())
        return;
    if (name == setFocusAction()) {
        m_list.viewModel().setSelectedID(m_entry);
    } else if (name == pressAction()) {
        const ClipboardCore::ClipItem item = m_list.entries().item(*row);
        m_list.viewModel().paste(item);
    }
}

} // namespace Clipboard
