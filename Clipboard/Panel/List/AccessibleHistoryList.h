#pragma once

#include <QAccessibleWidget>
#include <QHash>
#include <QUuid>

namespace Clipboard {

class HistoryList;

/// The list of entries as assistive technologies see it: one child a row, which keeps its identity for as long as its
/// entry is listed.
class AccessibleHistoryList final : public QAccessibleWidget
{
public:
    explicit AccessibleHistoryList(HistoryList* list);
    ~AccessibleHistoryList() override;

    /// Tells the toolkit whom to ask about the list. Any number of times.
    static void install();

    /// The row of a listed entry; null when it is not listed.
    [[nodiscard]] QAccessibleInterface* row(const QUuid& entry) const;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;

private:
    [[nodiscard]] HistoryList* list() const;
    void forgetRowsThatAreGone() const;

    mutable QHash<QUuid, QAccessible::Id> m_rows; // made when first asked for
};

} // namespace Clipboard
