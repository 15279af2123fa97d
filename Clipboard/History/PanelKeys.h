#pragma once

#include "Focus/FocusKey.h"
#include "Focus/KeyEvent.h"

#include <optional>

namespace Clipboard {

class HistoryViewModel;

/// What the panel's keys mean while the command sheet is closed, and where arrows lead. It keeps nothing of its own:
/// it reads the state and has it changed. Main thread only.
class PanelKeys final
{
public:
    explicit PanelKeys(HistoryViewModel& state)
        : m_state(state)
    {
    }

    /// True when the key was used up; false when the text field or the window should have it.
    bool handleKey(const ClipboardCore::KeyEvent& event);
    /// From the list, moves the selection or leaves it for a control; from a control, to the nearest element.
    void routeArrow(ClipboardCore::FocusMove move);
    /// Moves the focus to the nearest element in that direction, from `origin` or else from the selected row.
    void spatialHop(ClipboardCore::FocusMove move, std::optional<ClipboardCore::FocusKey> origin);
    /// Whether Left and Right leave the search field: when it is empty, or the caret has nowhere to go.
    [[nodiscard]] bool searchCaretAllowsHop(ClipboardCore::FocusMove move) const;

private:
    bool handleCommandKey(const ClipboardCore::KeyEvent& event);
    bool handleDelete(const ClipboardCore::KeyEvent& event);
    bool handleEscape();
    bool handleSideArrow(ClipboardCore::FocusMove move);
    bool scrollPreview(const ClipboardCore::KeyEvent& event);

    HistoryViewModel& m_state;
};

} // namespace Clipboard
