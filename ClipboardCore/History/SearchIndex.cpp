#include "History/SearchIndex.h"

#include "History/SearchPattern.h"
#include "Support/SerialQueue.h"
#include "Support/TextFolding.h"

#include <QHash>
#include <QMetaObject>
#include <QObject>

#include <algorithm>
#include <numeric>
#include <utility>

namespace ClipboardCore {

namespace {

// Folding this much takes well under a millisecond in any script.
constexpr auto largestFoldedAtOnce = qsizetype(64) * 1024;

/// An entry's content as it is searched. The bytes of the entry itself, unless folding does more than lower-case
/// ASCII: the pattern sees to that.
struct SearchedText
{
    enum class State { unfolded, foldingInBackground, ready };

    QByteArray source;
    QByteArray text;
    State state = State::unfolded;
    // A match() had to do without it.
    bool wasLeftOut = false;
};
using SearchedTextRef = std::shared_ptr<SearchedText>;

QByteArray searchable(const QByteArray& source)
{
    return TextFolding::onlyFoldsASCII(source) ? source : TextFolding::folded(source);
}

void setFolded(SearchedText& entry, const QByteArray& text)
{
    entry.text = text;
    entry.state = SearchedText::State::ready;
}

QList<qsizetype> allPositions(qsizetype count)
{
    QList<qsizetype> positions(count);
    std::iota(positions.begin(), positions.end(), 0);
    return positions;
}

QList<qsizetype> matchVerbatim(const QList<ClipItem>& items, const QByteArray& query)
{
    const SearchPattern pattern(query);
    QList<qsizetype> found;
    for (qsizetype position = 0; position < items.size(); ++position) {
        const ClipItem& item = items.at(position);
        if (pattern.isIn(item.content.utf8()) || (item.sourceApp && pattern.isIn(item.sourceApp->toUtf8())))
            found.append(position);
    }
    return found;
}

} // namespace

struct SearchIndex::Private
{
    /// What an earlier query leaves to search for one that contains it.
    struct Narrowed
    {
        QByteArray query; // folded
        QList<qsizetype> candidates;
    };

    /// True when the entry can be searched now. What is small is folded first, what is large in the background.
    bool makeReady(const SearchedTextRef& entry);
    void foldInBackground(const QList<SearchedTextRef>& entries);

    QList<ClipItem> items;
    QList<SearchedTextRef> entries; // one for each of `items`
    bool isIncomplete = false;
    std::optional<Narrowed> narrowed;
    std::function<void()> ready;
    // Receives what the background thread made, on the thread of the index.
    QObject receiver;
    // Last, so that its thread ends before what it uses does.
    SerialQueue background{"search-folding"};
};

bool SearchIndex::Private::makeReady(const SearchedTextRef& entry)
{
    if (entry->state == SearchedText::State::ready)
        return true;
    if (entry->source.size() <= largestFoldedAtOnce) {
        setFolded(*entry, searchable(entry->source));
        return true;
    }
    entry->wasLeftOut = true;
    if (entry->state == SearchedText::State::unfolded)
        foldInBackground({entry});
    return false;
}

void SearchIndex::Private::foldInBackground(const QList<SearchedTextRef>& folding)
{
    struct Job
    {
        std::weak_ptr<SearchedText> entry; // gone when the entry left the history meanwhile
        QByteArray text;
    };
    QList<Job> jobs;
    for (const SearchedTextRef& entry : folding) {
        entry->state = SearchedText::State::foldingInBackground;
        jobs.append({entry, entry->source});
    }
    background.async([this, jobs]() mutable {
        for (Job& job : jobs)
            if (!job.entry.expired())
                job.text = searchable(job.text);
        QMetaObject::invokeMethod(
            &receiver,
            [this, jobs] {
                bool wasMissed = false;
                for (const Job& job : jobs) {
                    if (const SearchedTextRef entry = job.entry.lock()) {
                        setFolded(*entry, job.text);
                        wasMissed |= std::exchange(entry->wasLeftOut, false);
                    }
                }
                if (wasMissed && ready)
                    ready();
            },
            Qt::QueuedConnection);
    });
}

SearchIndex::SearchIndex()
    : d(std::make_unique<Private>())
{
}

SearchIndex::~SearchIndex() = default;

void SearchIndex::setItems(const QList<ClipItem>& items)
{
    if (d->items.isSharedWith(items))
        return;
    // Known by where the bytes are: they are shared and never change while an entry holds them.
    QHash<const char*, SearchedTextRef> known;
    known.reserve(d->entries.size());
    for (const SearchedTextRef& entry : std::as_const(d->entries))
        known.insert(entry->source.constData(), entry);

    QList<SearchedTextRef> entries;
    entries.reserve(items.size());
    for (const ClipItem& item : items) {
        const QByteArray& source = item.content.utf8();
        SearchedTextRef entry = known.value(source.constData());
        if (!entry || entry->source.size() != source.size())
            entry = std::make_shared<SearchedText>(SearchedText{source, {}, SearchedText::State::unfolded, false});
        entries.append(std::move(entry));
    }
    d->items = items;
    d->entries = std::move(entries);
    d->narrowed.reset();
}

void SearchIndex::prepare()
{
    QList<SearchedTextRef> small;
    for (const SearchedTextRef& entry : std::as_const(d->entries)) {
        if (entry->state != SearchedText::State::unfolded)
            continue;
        if (entry->source.size() <= largestFoldedAtOnce)
            small.append(entry);
        else
            d->foldInBackground({entry});
    }
    if (!small.isEmpty())
        d->foldInBackground(small);
}

void SearchIndex::onReady(std::function<void()> callback)
{
    d->ready = std::move(callback);
}

QList<qsizetype> SearchIndex::match(const QString& query)
{
    const SearchPattern pattern(folded(query.toUtf8()));
    d->isIncomplete = false;
    if (query.isEmpty())
        return allPositions(d->items.size());
    if (pattern.folded().isEmpty())
        return matchVerbatim(d->items, query.toUtf8());

    const bool extendsLast = d->narrowed && pattern.folded().contains(d->narrowed->query);
    const auto candidates = extendsLast ? d->narrowed->candidates : allPositions(d->items.size());
    QHash<QString, bool> apps; // few different ones
    const auto isInApp = [&](const QString& app) {
        const auto known = apps.constFind(app);
        return known != apps.cend() ? *known : *apps.insert(app, pattern.isIn(folded(app.toUtf8())));
    };

    QList<qsizetype> found;
    QList<qsizetype> remaining; // those found and those that cannot be searched yet
    for (const qsizetype position : candidates) {
        const SearchedTextRef& entry = d->entries[position];
        const std::optional<QString>& app = d->items[position].sourceApp;
        const bool isReady = d->makeReady(entry);
        const bool isFound = (isReady && pattern.isIn(entry->text)) || (app && isInApp(*app));
        if (isFound)
            found.append(position);
        if (isFound || !isReady)
            remaining.append(position);
        d->isIncomplete |= !isReady && !isFound;
    }
    d->narrowed = Private::Narrowed{pattern.folded(), remaining};
    return found;
}

bool SearchIndex::isIncomplete() const
{
    return d->isIncomplete;
}

QList<qsizetype> SearchIndex::search(const QList<ClipItem>& items, const QString& query)
{
    const SearchPattern pattern(folded(query.toUtf8()));
    if (query.isEmpty())
        return allPositions(items.size());
    if (pattern.folded().isEmpty())
        return matchVerbatim(items, query.toUtf8());
    QList<qsizetype> found;
    for (qsizetype position = 0; position < items.size(); ++position) {
        const ClipItem& item = items.at(position);
        if (pattern.isIn(searchable(item.content.utf8())) ||
            (item.sourceApp && pattern.isIn(folded(item.sourceApp->toUtf8()))))
            found.append(position);
    }
    return found;
}

QByteArray SearchIndex::folded(const QByteArray& utf8)
{
    return TextFolding::folded(utf8);
}

} // namespace ClipboardCore
