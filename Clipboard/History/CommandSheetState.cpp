#include "CommandSheetState.h"

#include "Focus/KeyEvent.h"
#include "SmartActionLabel.h"

#include <algorithm>

namespace Clipboard {

using ClipboardCore::KeyCode;
using ClipboardCore::KeyEvent;
using ClipboardCore::SmartAction;

namespace {

/// A decimal integer with an optional sign and nothing else.
std::optional<int> strictInteger(const QString& text)
{
    const QStringView digits = QStringView(text).mid(text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0);
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    bool fits = false;
    const int value = text.toInt(&fits);
    if (!fits || !std::ranges::all_of(digits, isDigit))
        return std::nullopt;
    return value;
}

} // namespace

CommandSheetState::CommandSheetState(QObject* parent)
    : PanelState(parent)
{
    connect(this, &PanelState::selectedIDChanged, this, &CommandSheetState::followSelection);
}

void CommandSheetState::setCmdkOpen(bool open)
{
    m_cmdkOpen = open;
    emit cmdkOpenChanged();
}

void CommandSheetState::setCmdkIndex(int index)
{
    m_cmdkIndex = index;
    emit cmdkIndexChanged();
}

void CommandSheetState::setCmdkQuery(const QString& query)
{
    m_cmdkQuery = query;
    emit cmdkQueryChanged();
}

QList<SmartAction> CommandSheetState::cmdkActions()
{
    QList<SmartAction> actions = smartActions();
    const QString wanted = m_cmdkQuery.toLower();
    // The label is the action's name in every language; what the user reads is what the user types.
    const auto matches = [&wanted](const SmartAction& action) {
        return action.label.toLower().contains(wanted) || shownActionLabel(action.label).toLower().contains(wanted);
    };
    actions.removeIf([&matches](const SmartAction& action) { return !matches(action); });
    return actions;
}

void CommandSheetState::openCmdk()
{
    if (!selectedItem())
        return;
    m_listed = selectedID();
    setCmdkIndex(0);
    setCmdkQuery({});
    setCmdkOpen(true);
}

void CommandSheetState::runCmdkAt(int index)
{
    const QList<SmartAction> actions = cmdkActions();
    if (index >= 0 && index < actions.size())
        runSmartAction(actions.at(index));
    setCmdkOpen(false);
}

void CommandSheetState::runCmdkOrdinal(int ordinal)
{
    if (ordinal >= 1 && ordinal <= cmdkActions().size())
        runCmdkAt(ordinal - 1);
}

void CommandSheetState::moveCmdk(int delta)
{
    const auto count = static_cast<int>(cmdkActions().size());
    if (count > 0)
        setCmdkIndex((m_cmdkIndex + delta + count) % count);
}

void CommandSheetState::followSelection()
{
    if (!m_cmdkOpen || m_listed == selectedID())
        return;
    m_listed = selectedID();
    if (m_listed)
        setCmdkIndex(0); // the highlight was on another entry's action
    else
        setCmdkOpen(false);
}

bool CommandSheetState::handleCommandSheetKey(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::return_:
        if (areSmartActionsFound()) // pressed too soon, it must not close the sheet and run nothing
            runCmdkAt(m_cmdkIndex);
        return true;
    case KeyCode::escape:
        if (m_cmdkQuery.isEmpty()) {
            setCmdkOpen(false);
        } else {
            setCmdkQuery({});
            setCmdkIndex(0);
        }
        return true;
    case KeyCode::up:
        moveCmdk(-1);
        return true;
    case KeyCode::down:
        moveCmdk(1);
        return true;
    default:
        break;
    }
    if (!event.command)
        return false;
    if (event.code == KeyCode::k) {
        setCmdkOpen(false); // as it was opened
        return true;
    }
    const std::optional<int> ordinal = strictInteger(event.charactersIgnoringModifiers);
    if (!ordinal || *ordinal < 1 || *ordinal > 9)
        return false;
    runCmdkOrdinal(*ordinal);
    return true;
}

} // namespace Clipboard
