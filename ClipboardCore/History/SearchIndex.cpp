#include "History/SearchIndex.h"

namespace ClipboardCore {

struct SearchIndex::Private
{
    QList<ClipItem> items;
    std::function<void()> ready;
};

SearchIndex::SearchIndex()
    : d(std::make_unique<Private>())
{
}

SearchIndex::~SearchIndex() = default;

void SearchIndex::setItems(const QList<ClipItem>& items)
{
    d->items = items;
}

void SearchIndex::prepare()
{
}

void SearchIndex::onReady(std::function<void()> callback)
{
    d->ready = std::move(callback);
}

QList<qsizetype> SearchIndex::match(const QString& query)
{
    const QByteArray needle = folded(query.toUtf8());
    QList<qsizetype> found;
    for (qsizetype i = 0; i < d->items.size(); ++i) {
        const ClipItem& item = d->items[i];
        if (folded(item.content.utf8()).contains(needle) ||
            (item.sourceApp && folded(item.sourceApp->toUtf8()).contains(needle)))
            found.append(i);
    }
    return found;
}

QByteArray SearchIndex::folded(const QByteArray& utf8)
{
    QString text = QString::fromUtf8(utf8).normalized(QString::NormalizationForm_D);
    text.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return text.toCaseFolded().normalized(QString::NormalizationForm_C).toUtf8();
}

} // namespace ClipboardCore
