#include "PanelKeys.h"

#include "Focus/SpatialNav.h"
#include "HistoryViewModel.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::FocusKey;
using ClipboardCore::FocusMove;
using ClipboardCore::KeyCode;
using ClipboardCore::KeyEvent;

bool PanelKeys::handleKey(const KeyEvent& event)
{
    if (event.shift && !event.command && !event.option && scrollPreview(event))
        return true;
    const bool toTheEnd = event.command || event.option;
    switch (event.code) {
    case KeyCode::down:
        if (toTheEnd)
            m_state.selectLast();
        else
            routeArrow(FocusMove::down);
        return true;
    case KeyCode::up:
        if (toTheEnd)
            m_state.selectFirst();
        else
            routeArrow(FocusMove::up);
        return true;
    case KeyCode::home:
    case KeyCode::pageUp:
        m_state.selectFirst();
        return true;
    case KeyCode::end:
    case KeyCode::pageDown:
        m_state.selectLast();
        return true;
    case KeyCode::return_:
        m_state.activateFocused();
        return true;
    case KeyCode::escape:
        return handleEscape();
    case KeyCode::left:
        return handleSideArrow(FocusMove::left);
    case KeyCode::right:
        return handleSideArrow(FocusMove::right);
    case KeyCode::delete_:
    case KeyCode::forwardDelete:
        return handleDelete(event);
    default:
        return event.command && handleCommandKey(event);
    }
}

bool PanelKeys::scrollPreview(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::up:
        emit m_state.previewScrolled(PreviewScroll::lineUp);
        return true;
    case KeyCode::down:
        emit m_state.previewScrolled(PreviewScroll::lineDown);
        return true;
    case KeyCode::pageUp:
        emit m_state.previewScrolled(PreviewScroll::pageUp);
        return true;
    case KeyCode::pageDown:
        emit m_state.previewScrolled(PreviewScroll::pageDown);
        return true;
    default:
        return false;
    }
}

bool PanelKeys::handleCommandKey(const KeyEvent& event)
{
    const auto withSelected = [this](void (HistoryViewModel::*command)(const ClipItem&)) {
        if (const std::optional<ClipItem> item = m_state.selectedItem())
            (m_state.*command)(*item);
        return true;
    };
    switch (event.code) {
    case KeyCode::f:
        m_state.renewFocusToken();
        m_state.setFocus(std::nullopt);
        return true;
    case KeyCode::k:
        m_state.openCmdk();
        return true;
    case KeyCode::e:
        return withSelected(&HistoryViewModel::annotate);
    case KeyCode::p:
        return withSelected(&HistoryViewModel::togglePin);
    case KeyCode::z:
        // Before what was typed: that is quickly typed again, an entry is not.
        return !event.shift && m_state.undoRemoval();
    default:
        if (event.charactersIgnoringModifiers != QLatin1String(",") || !m_state.onPreferences)
            return false;
        m_state.onPreferences();
        return true;
    }
}

bool PanelKeys::handleDelete(const KeyEvent& event)
{
    // Where there is a text to edit, Control with either key deletes a word of it. Shift and Delete never mean that.
    const bool isForTheEntry =
        event.command ? m_state.query().isEmpty() : event.shift && event.code == KeyCode::forwardDelete;
    if (!isForTheEntry)
        return false;
    if (const std::optional<ClipItem> item = m_state.selectedItem())
        m_state.remove(*item);
    return true;
}

bool PanelKeys::handleEscape()
{
    if (m_state.focus()) {
        m_state.setFocus(std::nullopt);
        return true;
    }
    if (m_state.query().isEmpty())
        return false;
    m_state.setQuery({});
    return true;
}

bool PanelKeys::handleSideArrow(FocusMove move)
{
    if (!m_state.focus() && !searchCaretAllowsHop(move))
        return false;
    routeArrow(move);
    return true;
}

void PanelKeys::routeArrow(FocusMove move)
{
    if (const PanelFocusTarget focus = m_state.focus())
        return spatialHop(move, focus);
    switch (move) {
    case FocusMove::down:
        return m_state.moveSelection(1);
    case FocusMove::up:
        // From the first row upward lie the filter chips.
        if (m_state.visible().isEmpty() || m_state.selectedID() == m_state.visible().first().id)
            return spatialHop(move, std::nullopt);
        return m_state.moveSelection(-1);
    case FocusMove::right:
        // Every entry has an action: where they are still being found out, the chip is about to appear.
        if (m_state.frames.contains(FocusKey::action(0)) || !m_state.areSmartActionsFound())
            return m_state.setFocus(FocusKey::action(0));
        return spatialHop(move, std::nullopt);
    case FocusMove::left:
        return spatialHop(move, std::nullopt);
    }
}

void PanelKeys::spatialHop(FocusMove move, std::optional<FocusKey> origin)
{
    if (const auto selected = m_state.selectedID(); !origin && selected)
        origin = FocusKey::row(*selected);
    if (!origin)
        return;
    const auto& frames = m_state.frames;
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
        m_state.setFocus(*target);
    else if (row->id == m_state.selectedID())
        m_state.setFocus(std::nullopt);
    else
        m_state.setSelectedID(row->id);
}

bool PanelKeys::searchCaretAllowsHop(FocusMove move) const
{
    if (m_state.query().isEmpty() || !m_state.searchCaret)
        return true;
    const std::optional<PanelState::SearchCaret> caret = m_state.searchCaret();
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
