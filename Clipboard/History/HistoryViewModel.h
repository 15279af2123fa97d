#pragma once

#include "CommandSheetState.h"
#include "EntryActions.h"
#include "Focus/KeyEvent.h"
#include "PanelKeys.h"
#include "Pasteboard.h"
#include "RemovedEntries.h"
#include "Support/ToastText.h"

#include <QThreadPool>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

class PasteService;

enum class PreviewScroll { lineUp, lineDown, pageUp, pageDown };

/// The state of the history panel and every command on an entry. Views read it, call it and redraw on its signals. An
/// entry given to a command may be one of those in items() or visible(). Main thread only.
///
/// It is one object, of parts that read alone: what is listed and selected (PanelState), the command sheet's state
/// (CommandSheetState), what the keys mean (PanelKeys), finding and running smart actions (EntryActions), what can be
/// brought back (RemovedEntries).
class HistoryViewModel final : public CommandSheetState
{
    Q_OBJECT
public:
    struct Services
    {
        Pasteboard& pasteboard;
        PasteService& pasteService;
        std::function<void(const ClipboardCore::ToastText& text)> toast;
        /// The catalogue of smart actions. Called on any thread.
        EntryActions::Catalogue smartActions;
        /// Carries out what a smart action asks for.
        std::function<void(const ClipboardCore::SmartActionEffect&, HistoryViewModel&)> perform;
        /// Shows a notice until the next one: of something that has yet to end.
        std::function<void(const ClipboardCore::ToastText& text)> progress;
    };

    HistoryViewModel(ClipboardCore::JSONHistoryStore& store, Services services, QObject* parent = nullptr);
    ~HistoryViewModel() override;

    // Plain members, set by the composition root.
    std::function<void()> onRequestClose;
    std::function<void()> markOwnChange;
    std::function<void(const ClipboardCore::ClipItem&, const QImage&)> onAnnotate;
    std::function<void()> onPreferences;
    /// The panel opens with the newest copy selected instead of the first row.
    bool selectsNewest = false;

    /// Takes the entries over from the store; to be called after every change of it.
    void refresh();
    /// Resets search, filter, command sheet and focus, and selects that entry, or else the first.
    void panelWillShow(std::optional<QUuid> selecting);
    /// Nothing that was removed can be brought back from now on. For the panel's closing and the program's end.
    void forgetRemoved();

    // Commands on an entry. When its file has vanished, an entry that is not pinned goes, and the user is told.
    void paste(const ClipboardCore::ClipItem& item);
    void copy(const ClipboardCore::ClipItem& item);
    void togglePin(const ClipboardCore::ClipItem& item);
    /// Removes it. Its picture file stays until the removal can no longer be taken back.
    void remove(const ClipboardCore::ClipItem& item);
    /// Removes every entry that is not pinned, in the same way.
    void clearHistory();
    /// The same with those that are.
    void clearEverything();
    /// Takes the last removal back that forgetRemoved() has not forgotten. False when there is none.
    bool undoRemoval();
    /// Decodes the picture off the main thread, then calls onAnnotate. Ignores entries of other types.
    void annotate(const ClipboardCore::ClipItem& item);
    /// Adds an entry that nobody copied; answers the id of the one that holds its content now.
    std::optional<QUuid> record(const ClipboardCore::ClipItem& item);
    /// Adds the picture file that was made of `from`; answers the id of its entry.
    std::optional<QUuid> addAnnotateResult(const QString& path, const ClipboardCore::ClipItem& from);

    /// Copies a text that was marked in the panel, as part of that entry, and adds it to the history.
    void copyMarked(const QString& text, const std::optional<ClipboardCore::ClipItem>& from);
    /// The text on the pasteboard, at once and cut to what a text field takes; empty when there is none.
    [[nodiscard]] QString copiedText() const;

    // Smart actions.
    [[nodiscard]] QList<ClipboardCore::SmartAction> smartActions() override;
    [[nodiscard]] bool areSmartActionsFound() const override { return m_actions.areFound(); }
    /// Runs it off the main thread, then has its effect carried out and shows its notice.
    void runSmartAction(const ClipboardCore::SmartAction& action) override;
    /// The same with an entry that need not be selected.
    void runSmartAction(const ClipboardCore::SmartAction& action, const std::optional<QUuid>& entry);
    /// What can be done with an entry; to be asked on any thread but the main one.
    [[nodiscard]] const EntryActions::Catalogue& actionCatalogue() const { return m_services.smartActions; }
    /// Whether the selected entry's action of that label is running, or its effect still to be answered.
    [[nodiscard]] bool isUnderWay(const QString& label) const;
    /// The action whose effect is being carried out just now. An effect that is answered later holds it until then.
    [[nodiscard]] const ActionUnderWay& actionUnderWay() const { return m_performing; }

    // Keyboard and focus.
    /// True when the key was used up; false when the text field or the window should have it.
    bool handleKey(const ClipboardCore::KeyEvent& event);
    void activate(const ClipboardCore::FocusKey& key);
    void activateFocused();

signals:
    /// The selected entry's actions are found, or one of them has begun or ended.
    void smartActionsChanged();
    /// The preview is to scroll.
    void previewScrolled(Clipboard::PreviewScroll by);

private:
    void activateButton(ClipboardCore::ItemAction action);
    [[nodiscard]] bool writeToPasteboard(const ClipboardCore::ClipItem& item);
    void bump(const ClipboardCore::ClipItem& item);
    void add(const ClipboardCore::ClipItem& item);
    void clear(bool keepingPinned);
    void take(const ClipboardCore::ClipItem& item);
    void saveAndRefresh();
    void handleMissingFile(const ClipboardCore::ClipItem& item);
    void carryOut(const ClipboardCore::SmartActionResult& result, const std::optional<QUuid>& entry,
                  ActionUnderWay underWay);

    ClipboardCore::JSONHistoryStore& m_store;
    Services m_services;
    PanelKeys m_keys;
    EntryActions m_actions;
    ActionUnderWay m_performing;
    QThreadPool m_pictures;
    RemovedEntries m_removed;
};

} // namespace Clipboard
