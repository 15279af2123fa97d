#include "AccessibleHistoryList.h"

#include "AccessibleHistoryRow.h"
#include "HistoryList.h"
#include "HistoryListModel.h"
#include "HistoryViewModel.h"

namespace Clipboard {

namespace {

QAccessibleInterface* makeList(const QString& /*className*/, QObject* object)
{
    auto* list = qobject_cast<HistoryList*>(object);
    return list != nullptr ? new AccessibleHistoryList(list) : nullptr;
}

} // namespace

void AccessibleHistoryList::install()
{
    QAccessible::installFactory(makeList); // a second time changes nothing
}

AccessibleHistoryList::AccessibleHistoryList(HistoryList* list)
    : QAccessibleWidget(list, QAccessible::List)
{
}

AccessibleHistoryList::~AccessibleHistoryList()
{
    for (const QAccessible::Id id : std::as_const(m_rows))
        QAccessible::deleteAccessibleInterface(id);
}

HistoryList* AccessibleHistoryList::list() const
{
    return static_cast<HistoryList*>(widget());
}

QAccessibleInterface* AccessibleHistoryList::row(const QUuid& entry) const
{
    if (!list()->entries().row(entry))
        return nullptr;
    const auto known = m_rows.constFind(entry);
    if (known != m_rows.cend())
        return QAccessible::accessibleInterface(*known);
    if (m_rows.size() >= list()->entries().rowCount())
        forgetRowsThatAreGone();
    auto* made = new AccessibleHistoryRow(*list(), entry);
    m_rows.insert(entry, QAccessible::registerAccessibleInterface(made));
    return made;
}

void AccessibleHistoryList::forgetRowsThatAreGone() const
{
    m_rows.removeIf([this](const auto& entry) {
        if (list()->entries().row(entry.key()))
            return false;
        QAccessible::deleteAccessibleInterface(entry.value());
        return true;
    });
}

int AccessibleHistoryList::childCount() const
{
    return list()->entries().rowCount();
}

QAccessibleInterface* AccessibleHistoryList::child(int index) const
{
    return index >= 0 && index < childCount() ? row(list()->entries().item(index).id) : nullptr;
}

QAccessibleInterface* AccessibleHistoryList::childAt(int x, int y) const
{
    return child(list()->indexAt(list()->viewport()->mapFromGlobal(QPoint(x, y))).row());
}

int AccessibleHistoryList::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* row = dynamic_cast<const AccessibleHistoryRow*>(child);
    return row != nullptr ? row->index().value_or(-1) : -1;
}

QAccessibleInterface* AccessibleHistoryList::focusChild() const
{
    const auto selected = list()->viewModel().selectedID();
    return selected && list()->hasPanelFocus() ? row(*selected) : nullptr;
}

} // namespace Clipboard
