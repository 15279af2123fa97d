#pragma once

#include "Focus/FocusKey.h"
#include "History/ClipItem.h"
#include "History/SearchIndex.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QRectF>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace Clipboard {

/// Where keyboard focus is: a control of the panel, or the list (no value), whose selected row then is the focused
/// element.
using PanelFocusTarget = std::optional<ClipboardCore::FocusKey>;

/// The part of the panel's state that is not the command sheet's: which entries there are, which of them are listed,
/// selected and focused. Each assignment notifies synchronously, also one of the same value. Main thread only.
class PanelState : public QObject
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

    explicit PanelState(QObject* parent);

    [[nodiscard]] const QList<ClipboardCore::ClipItem>& items() const { return m_items; }
    [[nodiscard]] const QList<ClipboardCore::ClipItem>& visible() const { return m_visible; }
    /// Entries of each type in items(); a type without entries has no key.
    [[nodiscard]] const QMap<ClipboardCore::ClipType, int>& counts() const { return m_counts; }
    [[nodiscard]] const QString& query() const { return m_query; }
    /// Large entries are still being made ready for the search: visible() may grow yet.
    [[nodiscard]] bool isSearching() const { return !m_query.isEmpty() && m_index.isIncomplete(); }
    [[nodiscard]] std::optional<ClipboardCore::ClipType> filter() const { return m_filter; }
    [[nodiscard]] std::optional<QUuid> selectedID() const { return m_selectedID; }
    [[nodiscard]] std::optional<ClipboardCore::ClipItem> selectedItem() const;
    [[nodiscard]] const QImage& qrPreview() const { return m_qrPreview; } // null for none
    [[nodiscard]] QUuid focusToken() const { return m_focusToken; }
    [[nodiscard]] const PanelFocusTarget& focus() const { return m_focus; }
    /// What the user has to know of the program itself; empty for nothing (ServiceNotices).
    [[nodiscard]] const QString& notice() const { return m_notice; }

    // Setters that views and keys use; each brings the rest of the state in line.
    void setQuery(const QString& query);
    void setFilter(std::optional<ClipboardCore::ClipType> filter);
    void setSelectedID(std::optional<QUuid> id);
    void selectFirst();
    void selectLast();
    /// Moves the selection, from either end to the other; without one the first row counts as selected.
    void moveSelection(int delta);
    void setFocus(const PanelFocusTarget& focus);
    /// Asks the view to put the keyboard back into the search field.
    void renewFocusToken();
    void setQrPreview(const QImage& image);
    void setNotice(const QString& notice);

    /// What the empty panel says beside; set by the composition root.
    QString welcome;

    // Plain members, set by the panel view.
    /// Frames of the focusable elements on screen, in panel coordinates.
    QHash<ClipboardCore::FocusKey, QRectF> frames;
    /// Nothing when no text field has the keyboard.
    std::function<std::optional<SearchCaret>()> searchCaret;

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
    void noticeChanged();

protected:
    void setItems(const QList<ClipboardCore::ClipItem>& items);
    /// Has whatever a search needs made ready in the background.
    void prepareSearch() { m_index.prepare(); }
    /// -1 for an entry that is not visible.
    [[nodiscard]] qsizetype visibleIndex(const std::optional<QUuid>& id) const;
    void assertMainThread() const;

private:
    void recomputeVisible();
    void ensureSelection();

    ClipboardCore::SearchIndex m_index;
    QList<ClipboardCore::ClipItem> m_items;
    QList<ClipboardCore::ClipItem> m_visible;
    QMap<ClipboardCore::ClipType, int> m_counts;
    QString m_query;
    std::optional<ClipboardCore::ClipType> m_filter;
    std::optional<QUuid> m_selectedID;
    QImage m_qrPreview;
    QUuid m_focusToken = QUuid::createUuid();
    PanelFocusTarget m_focus;
    QString m_notice;
};

} // namespace Clipboard
