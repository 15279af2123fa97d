#pragma once

#include "Actions/SmartActions.h"
#include "PanelState.h"

#include <QList>
#include <QString>

#include <optional>

namespace ClipboardCore {
struct KeyEvent;
}

namespace Clipboard {

/// The part of the panel's state that is the command sheet's: whether it is open, what is typed into its filter, which
/// row is highlighted, and what its keys mean. It follows the selection. Main thread only.
class CommandSheetState : public PanelState
{
    Q_OBJECT
public:
    explicit CommandSheetState(QObject* parent);

    [[nodiscard]] bool cmdkOpen() const { return m_cmdkOpen; }
    [[nodiscard]] int cmdkIndex() const { return m_cmdkIndex; }
    [[nodiscard]] const QString& cmdkQuery() const { return m_cmdkQuery; }
    void setCmdkOpen(bool open);
    void setCmdkIndex(int index);
    void setCmdkQuery(const QString& query);

    /// The selected entry's actions whose label holds the filter, as the catalogue has it or as it is shown.
    [[nodiscard]] QList<ClipboardCore::SmartAction> cmdkActions();
    /// Opens it afresh; not without a selected entry.
    void openCmdk();
    /// Runs that action, if there is one, and closes the sheet.
    void runCmdkAt(int index);
    /// Runs the action of that number, from 1, and closes the sheet; does nothing when there is none.
    void runCmdkOrdinal(int ordinal);
    /// Moves the highlight, from either end to the other.
    void moveCmdk(int delta);

    /// What can be done with the selected entry; nothing for as long as that is being found out.
    [[nodiscard]] virtual QList<ClipboardCore::SmartAction> smartActions() = 0;
    [[nodiscard]] virtual bool areSmartActionsFound() const = 0;
    virtual void runSmartAction(const ClipboardCore::SmartAction& action) = 0;

signals:
    void cmdkOpenChanged();
    void cmdkIndexChanged();
    void cmdkQueryChanged();

protected:
    /// True when the key was used up.
    bool handleCommandSheetKey(const ClipboardCore::KeyEvent& event);

private:
    void followSelection();

    std::optional<QUuid> m_listed; // whose actions are listed
    bool m_cmdkOpen = false;
    int m_cmdkIndex = 0;
    QString m_cmdkQuery;
};

} // namespace Clipboard
