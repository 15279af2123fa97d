// The keyboard and focus side of the panel's state.

#include "HistoryViewModel.h"

#include "Focus/SpatialNav.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::FocusKey;
using ClipboardCore::FocusMove;
using ClipboardCore::ItemAction;
using ClipboardCore::KeyCode;
using ClipboardCore::KeyEvent;

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

bool HistoryViewModel::handleKey(const KeyEvent& event)
{
    assertMainThread();
    return m_cmdkOpen ? handleCommandSheetKey(event) : handlePanelKey(event);
}

bool HistoryViewModel::handlePanelKey(const KeyEvent& event)
{
    const bool toTheEnd = event.command || event.option;
    switch (event.code) {
    case KeyCode::down:
        if (toTheEnd)
            selectLast();
        else
            routeArrow(FocusMove::down);
        return true;
    case KeyCode::up:
        if (toTheEnd)
            selectFirst();
        else
            routeArrow(FocusMove::up);
        return true;
    case KeyCode::home:
    case KeyCode::pageUp:
        selectFirst();
        return true;
    case KeyCode::end:
    case KeyCode::pageDown:
        selectLast();
        return true;
    case KeyCode::return_:
        activateFocused();
        return true;
    case KeyCode::escape:
        return handleEscape();
    case KeyCode::left:
        return handleSideArrow(FocusMove::left);
    case KeyCode::right:
        return handleSideArrow(FocusMove::right);
    default:
        return event.command && handleCommandKey(event);
    }
}

bool HistoryViewModel::handleCommandKey(const KeyEvent& event)
{
    const auto withSelected = [this](void (HistoryViewModel::*command)(const ClipItem&)) {
        if (const std::optional<ClipItem> item = selectedItem())
            (this->*command)(*item);
        return true;
    };
    switch (event.code) {
    case KeyCode::f:
        renewFocusToken();
        assignFocus(std::nullopt);
        return true;
    case KeyCode::k:
        openCmdk();
        return true;
    case KeyCode::e:
        return withSelected(&HistoryViewModel::annotate);
    case KeyCode::p:
        return withSelected(&HistoryViewModel::togglePin);
    case KeyCode::delete_:
        return withSelected(&HistoryViewModel::remove);
    default:
        return false;
    }
}

bool HistoryViewModel::handleEscape()
{
    if (m_focus) {
        assignFocus(std::nullopt);
        return true;
    }
    if (m_query.isEmpty())
        return false;
    setQuery({});
    return true;
}

bool HistoryViewModel::handleSideArrow(FocusMove move)
{
    if (!m_focus && !searchCaretAllowsHop(move))
        return false;
    routeArrow(move);
    return true;
}

bool HistoryViewModel::handleCommandSheetKey(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::return_:
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
    const std::optional<int> ordinal = strictInteger(event.charactersIgnoringModifiers);
    if (!ordinal || *ordinal < 1 || *ordinal > 9)
        return false;
    runCmdkOrdinal(*ordinal);
    return true;
}

void HistoryViewModel::activate(const FocusKey& key)
{
    assertMainThread();
    if (const auto* chip = key.as<FocusKey::Chip>())
        setFilter(chip->type);
    else if (const auto* row = key.as<FocusKey::Row>())
        assignSelection(row->id);
    else if (const auto* button = key.as<FocusKey::Button>())
        activateButton(button->action);
    else if (const auto* action = key.as<FocusKey::Action>()) {
        const QList<ClipboardCore::SmartAction> actions = smartActions();
        if (action->index >= 0 && action->index < actions.size())
            runSmartAction(actions.at(action->index));
    }
}

void HistoryViewModel::activateButton(ItemAction action)
{
    const std::optional<ClipItem> item = selectedItem();
    if (!item)
        return;
    switch (action) {
    case ItemAction::paste:
        return paste(*item);
    case ItemAction::copy:
        return copy(*item);
    case ItemAction::annotate:
        return annotate(*item);
    case ItemAction::pin:
        return togglePin(*item);
    case ItemAction::delete_:
        return remove(*item);
    }
}

void HistoryViewModel::activateFocused()
{
    assertMainThread();
    if (m_focus)
        activate(FocusKey(*m_focus)); // a copy: activating resets the focus
    else if (const std::optional<ClipItem> item = selectedItem())
        paste(*item);
}

void HistoryViewModel::moveSelection(int delta)
{
    if (m_visible.isEmpty())
        return;
    const qsizetype count = m_visible.size();
    // Without a selection the first row counts as selected.
    const qsizetype index = std::max<qsizetype>(visibleIndex(m_selectedID), 0);
    assignSelection(m_visible.at((index + delta + count) % count).id);
}

void HistoryViewModel::routeArrow(FocusMove move)
{
    assertMainThread();
    if (m_focus)
        return spatialHop(move, m_focus);
    switch (move) {
    case FocusMove::down:
        return moveSelection(1);
    case FocusMove::up:
        // From the first row upward lie the filter chips.
        if (m_visible.isEmpty() || visibleIndex(m_selectedID) == 0)
            return spatialHop(move, std::nullopt);
        return moveSelection(-1);
    case FocusMove::right:
        if (frames.contains(FocusKey::action(0)))
            return assignFocus(FocusKey::action(0));
        return spatialHop(move, std::nullopt);
    case FocusMove::left:
        return spatialHop(move, std::nullopt);
    }
}

void HistoryViewModel::spatialHop(FocusMove move, std::optional<FocusKey> origin)
{
    assertMainThread();
    if (!origin && m_selectedID)
        origin = FocusKey::row(*m_selectedID);
    if (!origin)
        return;
    const auto originFrame = frames.constFind(*origin);
    if (originFrame == frames.cend())
        return;

    using Candidate = ClipboardCore::BandedCandidate<FocusKey, ClipboardCore::FocusBand>;
    QList<Candidate> candidates;
    for (auto frame = frames.cbegin(); frame != frames.cend(); ++frame) {
        if (frame.key() != *origin)
            candidates.append({frame.key(), frame.key().band(), *frame});
    }
    // The first of equally near elements wins: in reading order, not in that of a hash.
    std::ranges::sort(candidates, [](const Candidate& a, const Candidate& b) {
        return std::pair(a.rect.top(), a.rect.left()) < std::pair(b.rect.top(), b.rect.left());
    });
    const std::optional<FocusKey> target =
        ClipboardCore::SpatialNav::nearest(*originFrame, origin->band(), move, candidates);
    if (!target)
        return;
    const auto* row = target->as<FocusKey::Row>();
    if (!row)
        assignFocus(*target);
    else if (row->id == m_selectedID)
        assignFocus(std::nullopt);
    else
        assignSelection(row->id);
}

bool HistoryViewModel::searchCaretAllowsHop(FocusMove move) const
{
    assertMainThread();
    if (m_query.isEmpty() || !searchCaret)
        return true;
    const std::optional<SearchCaret> caret = searchCaret();
    if (!caret)
        return true;
    if (caret->selectionLength != 0)
        return false;
    switch (move) {
    case FocusMove::right:
        return caret->position == caret->textLength;
    case FocusMove::left:
        return caret->position == 0;
    case FocusMove::up:
    case FocusMove::down:
        return true;
    }
    Q_UNREACHABLE();
}

} // namespace Clipboard
