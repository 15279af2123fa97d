#pragma once

#include "Actions/SmartActions.h"
#include "Focus/FocusKey.h"
#include "Focus/KeyEvent.h"
#include "History/ClipItem.h"
#include "History/SearchIndex.h"
#include "Pasteboard.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QRectF>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

class PasteService;

/// Where keyboard focus is: a control of the panel, or the list (no value), whose selected row then is the focused
/// element.
using PanelFocusTarget = std::optional<ClipboardCore::FocusKey>;

/// The state of the history panel and every command on an entry. Views read it, call it and redraw on its signals,
/// which are emitted synchronously on each assignment. An entry given to a command may be one of those in items() or
/// visible(). Main thread only.
class HistoryViewModel final : public QObject
{
    Q_OBJECT
public:
    /// The caret of the field editor: what decides whether Left and Right leave the search field.
    struct SearchCaret
    {
        qsizetype position = 0;
        qsizetype selectionLength = 0;
        qsizetype textLength = 0;
    };
    struct Services
    {
        Pasteboard& pasteboard;
        PasteService& pasteService;
        std::function<void(const QString& text)> toast;
        /// The catalogue of smart actions.
        std::function<QList<ClipboardCore::SmartAction>(const ClipboardCore::ClipItem&)> smartActions;
        /// Carries out what a smart action asks for.
        std::function<void(const ClipboardCore::SmartActionEffect&, HistoryViewModel&)> perform;
    };

    HistoryViewModel(ClipboardCore::JSONHistoryStore& store, Services services, QObject* parent = nullptr);
    ~HistoryViewModel() override;

    // Published state.
    [[nodiscard]] const QList<ClipboardCore::ClipItem>& items() const { return m_items; }
    [[nodiscard]] const QList<ClipboardCore::ClipItem>& visible() const { return m_visible; }
    /// Entries of each type in items(); a type without entries has no key.
    [[nodiscard]] const QMap<ClipboardCore::ClipType, int>& counts() const { return m_counts; }
    [[nodiscard]] const QString& query() const { return m_query; }
    [[nodiscard]] std::optional<ClipboardCore::ClipType> filter() const { return m_filter; }
    [[nodiscard]] std::optional<QUuid> selectedID() const { return m_selectedID; }
    [[nodiscard]] const QImage& qrPreview() const { return m_qrPreview; } // null for none
    [[nodiscard]] QUuid focusToken() const { return m_focusToken; }
    [[nodiscard]] const PanelFocusTarget& focus() const { return m_focus; }
    [[nodiscard]] bool cmdkOpen() const { return m_cmdkOpen; }
    [[nodiscard]] int cmdkIndex() const { return m_cmdkIndex; }
    [[nodiscard]] const QString& cmdkQuery() const { return m_cmdkQuery; }
    /// What the user has to know of the program itself; empty for nothing (ServiceNotices).
    [[nodiscard]] const QString& notice() const { return m_notice; }

    // Setters that views use; each brings the rest of the state in line.
    void setQuery(const QString& query);
    void setFilter(std::optional<ClipboardCore::ClipType> filter);
    void setSelectedID(std::optional<QUuid> id);
    void setQrPreview(const QImage& image);
    void setCmdkOpen(bool open);
    void setCmdkIndex(int index);
    void setCmdkQuery(const QString& query);
    void setNotice(const QString& notice);

    // Plain members, set by the composition root and the panel view.
    /// Frames of the focusable elements on screen, in panel coordinates.
    QHash<ClipboardCore::FocusKey, QRectF> frames;
    std::function<void()> onRequestClose;
    std::function<void()> markOwnChange;
    std::function<void(const ClipboardCore::ClipItem&, const QImage&)> onAnnotate;
    /// Nothing when no text field has the keyboard.
    std::function<std::optional<SearchCaret>()> searchCaret;

    /// The text on the pasteboard, at once and cut to what a text field takes; empty when there is none.
    [[nodiscard]] QString copiedText() const;

    // State maintenance.
    /// Takes the entries over from the store; to be called after every change of it.
    void refresh();
    /// Resets search, filter, command sheet and focus, and selects that entry, or else the first.
    void panelWillShow(std::optional<QUuid> selecting);
    [[nodiscard]] std::optional<ClipboardCore::ClipItem> selectedItem() const;
    void selectFirst();
    void selectLast();

    // Commands on an entry. When its file has vanished, an entry that is not pinned goes, and the user is told.
    void paste(const ClipboardCore::ClipItem& item);
    void copy(const ClipboardCore::ClipItem& item);
    void togglePin(const ClipboardCore::ClipItem& item);
    void remove(const ClipboardCore::ClipItem& item);
    /// Removes every entry that is not pinned.
    void clearHistory();
    /// Decodes the picture off the main thread, then calls onAnnotate. Ignores entries of other types.
    void annotate(const ClipboardCore::ClipItem& item);
    /// Adds the picture file that was made of `from`; answers the id of its entry.
    std::optional<QUuid> addAnnotateResult(const QString& path, const ClipboardCore::ClipItem& from);

    // Smart actions and the command sheet.
    [[nodiscard]] QList<ClipboardCore::SmartAction> smartActions();
    void runSmartAction(const ClipboardCore::SmartAction& action);
    [[nodiscard]] QList<ClipboardCore::SmartAction> cmdkActions();
    void openCmdk();
    void runCmdkAt(int index);
    void runCmdkOrdinal(int ordinal);
    void moveCmdk(int delta);

    // Keyboard and focus.
    /// True when the key was used up; false when the text field or the window should have it.
    bool handleKey(const ClipboardCore::KeyEvent& event);
    void activate(const ClipboardCore::FocusKey& key);
    void activateFocused();
    void routeArrow(ClipboardCore::FocusMove move);
    /// Moves the focus to the nearest element in that direction, from `origin` or else from the selected row.
    void spatialHop(ClipboardCore::FocusMove move, std::optional<ClipboardCore::FocusKey> origin);
    /// Whether Left and Right leave the search field: when it is empty, or the caret has nowhere to go.
    [[nodiscard]] bool searchCaretAllowsHop(ClipboardCore::FocusMove move) const;

signals:
    void itemsChanged();
    void visibleChanged();
    void countsChanged();
    void queryChanged();
    void filterChanged();
    void selectedIDChanged();
    void qrPreviewChanged();
    void focusTokenChanged();
    void focusChanged();
    void cmdkOpenChanged();
    void cmdkIndexChanged();
    void cmdkQueryChanged();
    void noticeChanged();

private:
    void assignSelection(std::optional<QUuid> id);
    void assignFocus(const PanelFocusTarget& focus);
    void renewFocusToken();
    void recomputeVisible();
    void ensureSelection();
    void moveSelection(int delta);
    [[nodiscard]] qsizetype visibleIndex(const std::optional<QUuid>& id) const;

    bool handlePanelKey(const ClipboardCore::KeyEvent& event);
    bool handleCommandKey(const ClipboardCore::KeyEvent& event);
    bool handleEscape();
    bool handleSideArrow(ClipboardCore::FocusMove move);
    bool handleCommandSheetKey(const ClipboardCore::KeyEvent& event);
    void activateButton(ClipboardCore::ItemAction action);

    [[nodiscard]] bool writeToPasteboard(const ClipboardCore::ClipItem& item);
    void bump(const ClipboardCore::ClipItem& item);
    void add(const ClipboardCore::ClipItem& item);
    void saveAndRefresh(const QList<ClipboardCore::ClipItem>& removed);
    void handleMissingFile(const ClipboardCore::ClipItem& item);
    void assertMainThread() const;

    ClipboardCore::JSONHistoryStore& m_store;
    Services m_services;
    ClipboardCore::SearchIndex m_index;
    struct CachedActions
    {
        QUuid id;
        QList<ClipboardCore::SmartAction> actions;
    };
    std::optional<CachedActions> m_actionsCache; // asked for on every redraw
    QThreadPool m_pool;

    QList<ClipboardCore::ClipItem> m_items;
    QList<ClipboardCore::ClipItem> m_visible;
    QMap<ClipboardCore::ClipType, int> m_counts;
    QString m_query;
    std::optional<ClipboardCore::ClipType> m_filter;
    std::optional<QUuid> m_selectedID;
    QImage m_qrPreview;
    QUuid m_focusToken = QUuid::createUuid();
    PanelFocusTarget m_focus;
    bool m_cmdkOpen = false;
    int m_cmdkIndex = 0;
    QString m_cmdkQuery;
    QString m_notice;
};

} // namespace Clipboard
