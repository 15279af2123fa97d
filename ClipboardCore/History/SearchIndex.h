#pragma once

#include "History/ClipItem.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace ClipboardCore {

/// Finds the entries in which a text occurs, ignoring case and diacritics, without locale.
///
/// The folded form of each entry is made once and kept while the entry is in the list; large texts are folded on a
/// background thread, and until theirs is ready such an entry does not match. A query that extends the last one over
/// the same list searches only what that one found. Main thread only.
class SearchIndex final
{
public:
    SearchIndex();
    ~SearchIndex();
    Q_DISABLE_COPY_MOVE(SearchIndex)

    /// The entries to search from now on. Cheap: entries already known by id keep their folded text.
    void setItems(const QList<ClipItem>& items);
    /// Folds whatever is not yet folded in the background, so that the first query finds it done.
    void prepare();
    /// Called on the caller's thread after a background fold completed that an earlier match() had to leave out.
    void onReady(std::function<void()> callback);

    /// Positions in the item list, ascending, of the entries whose content or source application contains `query`.
    /// An empty query matches everything. One of which folding leaves nothing, say of marks alone, is looked for as it
    /// is, byte for byte.
    [[nodiscard]] QList<qsizetype> match(const QString& query);
    /// True when the last match() had to leave out entries that are still being folded.
    [[nodiscard]] bool isIncomplete() const;

    /// What match() finds, for one query and without an index. Folds whatever it has to at once, on any thread.
    [[nodiscard]] static QList<qsizetype> search(const QList<ClipItem>& items, const QString& query);

    /// The form in which texts are compared: canonical decomposition without diacritics, case folded.
    [[nodiscard]] static QByteArray folded(const QByteArray& utf8);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore
