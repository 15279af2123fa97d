#pragma once

#include <QAccessibleInterface>
#include <QUuid>

#include <optional>

namespace Clipboard {

class HistoryList;

/// One entry as assistive technologies see it: said in one label, selected by giving it the focus, pasted by pressing.
class AccessibleHistoryRow final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    /// The list must outlive it.
    AccessibleHistoryRow(HistoryList& list, const QUuid& entry);

    [[nodiscard]] std::optional<int> index() const;

    /// Also when the entry is not listed now: it may come back, and its row is asked until it is forgotten.
    [[nodiscard]] bool isValid() const override { return true; }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    HistoryList& m_list;
    QUuid m_entry;
};

} // namespace Clipboard
