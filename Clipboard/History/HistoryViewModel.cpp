#include "HistoryViewModel.h"

#include "History/JSONHistoryStore.h"
#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "PasteService.h"
#include "PictureReading.h"

#include <QFileInfo>
#include <QThread>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace {

// What is pasted into a text field, in bytes: beyond any search or label, and laid out within a frame.
constexpr qsizetype longestTyped = 4096;

} // namespace

HistoryViewModel::HistoryViewModel(ClipboardCore::JSONHistoryStore& store, Services services, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_services(std::move(services))
{
    m_pool.setMaxThreadCount(1);
    m_index.onReady([this] {
        recomputeVisible();
        ensureSelection();
    });
    refresh();
}

HistoryViewModel::~HistoryViewModel()
{
    m_pool.waitForDone();
}

// ── State maintenance

void HistoryViewModel::refresh()
{
    assertMainThread();
    m_items = m_store.items();
    emit itemsChanged();
    m_index.setItems(m_items);

    m_counts.clear();
    for (const ClipItem& item : std::as_const(m_items))
        ++m_counts[item.type];
    emit countsChanged();

    recomputeVisible();
    ensureSelection();
}

void HistoryViewModel::recomputeVisible()
{
    if (m_query.isEmpty() && !m_filter) {
        m_visible = m_items;
    } else {
        m_visible.clear();
        const QList<qsizetype> matches = m_index.match(m_query);
        for (const qsizetype position : matches) {
            const ClipItem& item = m_items.at(position);
            if (!m_filter || item.type == *m_filter)
                m_visible.append(item);
        }
    }
    emit visibleChanged();
}

void HistoryViewModel::ensureSelection()
{
    if (m_visible.isEmpty())
        assignSelection(std::nullopt);
    else if (visibleIndex(m_selectedID) < 0)
        assignSelection(m_visible.first().id);
}

qsizetype HistoryViewModel::visibleIndex(const std::optional<QUuid>& id) const
{
    if (!id)
        return -1;
    const auto found = std::ranges::find(m_visible, *id, &ClipItem::id);
    return found == m_visible.cend() ? -1 : found - m_visible.cbegin();
}

void HistoryViewModel::assignSelection(std::optional<QUuid> id)
{
    m_selectedID = id;
    emit selectedIDChanged();
    setQrPreview({});
    assignFocus(std::nullopt);
}

void HistoryViewModel::assignFocus(const PanelFocusTarget& focus)
{
    m_focus = focus;
    emit focusChanged();
}

void HistoryViewModel::renewFocusToken()
{
    m_focusToken = QUuid::createUuid();
    emit focusTokenChanged();
}

QString HistoryViewModel::copiedText() const
{
    const std::optional<QByteArray> text = m_services.pasteboard.string();
    return text ? QString::fromUtf8(text->first(std::min(text->size(), longestTyped))) : QString();
}

std::optional<ClipItem> HistoryViewModel::selectedItem() const
{
    assertMainThread();
    const qsizetype index = visibleIndex(m_selectedID);
    if (index < 0)
        return std::nullopt;
    return m_visible.at(index);
}

void HistoryViewModel::setQuery(const QString& query)
{
    assertMainThread();
    m_query = query;
    emit queryChanged();
    recomputeVisible();
    ensureSelection();
    assignFocus(std::nullopt);
}

void HistoryViewModel::setFilter(std::optional<ClipType> filter)
{
    assertMainThread();
    m_filter = filter;
    emit filterChanged();
    recomputeVisible();
    ensureSelection();
    assignFocus(std::nullopt);
}

void HistoryViewModel::setSelectedID(std::optional<QUuid> id)
{
    assertMainThread();
    assignSelection(id);
}

void HistoryViewModel::setQrPreview(const QImage& image)
{
    assertMainThread();
    m_qrPreview = image;
    emit qrPreviewChanged();
}

void HistoryViewModel::setNotice(const QString& notice)
{
    assertMainThread();
    m_notice = notice;
    emit noticeChanged();
}

void HistoryViewModel::panelWillShow(std::optional<QUuid> selecting)
{
    assertMainThread();
    assignFocus(std::nullopt);
    setQuery({});
    setFilter(std::nullopt);
    setCmdkOpen(false);
    refresh();
    m_index.prepare();
    if (visibleIndex(selecting) >= 0)
        assignSelection(selecting);
    else
        selectFirst();
    renewFocusToken();
}

void HistoryViewModel::selectFirst()
{
    assertMainThread();
    assignSelection(m_visible.isEmpty() ? std::nullopt : std::optional(m_visible.first().id));
}

void HistoryViewModel::selectLast()
{
    assertMainThread();
    assignSelection(m_visible.isEmpty() ? std::nullopt : std::optional(m_visible.last().id));
}

// ── Commands on an entry
// `item` may live in m_items or m_visible and is gone once refresh() has run: whatever is needed later is copied first.

void HistoryViewModel::paste(const ClipItem& item)
{
    assertMainThread();
    if (!writeToPasteboard(item))
        return handleMissingFile(item);
    const QString snippet = item.snippet();
    bump(item);
    if (onRequestClose)
        onRequestClose();
    m_services.pasteService.pasteAfterClose(snippet);
}

void HistoryViewModel::copy(const ClipItem& item)
{
    assertMainThread();
    if (!writeToPasteboard(item))
        return handleMissingFile(item);
    const QString snippet = item.snippet();
    bump(item);
    m_services.toast(tr("Copied %1").arg(snippet));
}

bool HistoryViewModel::writeToPasteboard(const ClipItem& item)
{
    switch (item.type) {
    case ClipType::file: {
        const QString path = item.content.toString();
        if (!QFileInfo::exists(path))
            return false;
        m_services.pasteboard.setFile(QUrl::fromLocalFile(path));
        break;
    }
    case ClipType::image:
        if (!m_services.pasteboard.setPNGFile(item.content.toString()))
            return false;
        break;
    case ClipType::text:
    case ClipType::link:
    case ClipType::color:
    case ClipType::code:
        m_services.pasteboard.setString(item.content.utf8());
        break;
    }
    if (markOwnChange)
        markOwnChange();
    return true;
}

void HistoryViewModel::handleMissingFile(const ClipItem& item)
{
    if (item.isPinned) {
        m_services.toast(tr("File not found"));
        return;
    }
    remove(item);
    m_services.toast(tr("File no longer exists — removed from history"));
}

void HistoryViewModel::bump(const ClipItem& item)
{
    add({QUuid::createUuid(), item.type, item.content, item.sourceApp, item.bundleID, m_store.timeOfNewEntry(), false});
}

void HistoryViewModel::add(const ClipItem& item)
{
    saveAndRefresh(m_store.add(item));
}

void HistoryViewModel::saveAndRefresh(const QList<ClipItem>& removed)
{
    ImageBlobs::release(removed);
    m_store.saveAsync();
    refresh();
}

void HistoryViewModel::togglePin(const ClipItem& item)
{
    assertMainThread();
    const QUuid id = item.id;
    m_store.togglePin(id);
    saveAndRefresh({});
}

void HistoryViewModel::remove(const ClipItem& item)
{
    assertMainThread();
    const QUuid id = item.id;
    const qsizetype index = visibleIndex(id);
    if (m_selectedID == id && index >= 0) {
        std::optional<QUuid> next;
        if (index + 1 < m_visible.size())
            next = m_visible.at(index + 1).id;
        else if (index > 0)
            next = m_visible.at(index - 1).id;
        assignSelection(next);
    }
    const std::optional<ClipItem> removed = m_store.remove(id);
    saveAndRefresh(removed ? QList{*removed} : QList<ClipItem>());
}

void HistoryViewModel::clearHistory()
{
    assertMainThread();
    saveAndRefresh(m_store.removeAll(true));
}

void HistoryViewModel::annotate(const ClipItem& item)
{
    assertMainThread();
    if (item.type != ClipType::image)
        return;
    const auto read = [path = item.content.toString()] { return PictureReading::readFile(path); };
    runOffMainThread(m_pool, this, read, [this, item](const QImage& image) {
        if (!image.isNull()) {
            if (onAnnotate)
                onAnnotate(item, image);
            return;
        }
        // The user may have deleted or pinned it meanwhile.
        const auto current = std::ranges::find(m_items, item.id, &ClipItem::id);
        if (current != m_items.cend())
            handleMissingFile(*current);
    });
}

std::optional<QUuid> HistoryViewModel::addAnnotateResult(const QString& path, const ClipItem& from)
{
    assertMainThread();
    const ClipboardCore::Utf8Text content(path);
    add({QUuid::createUuid(), ClipType::image, content, from.sourceApp, from.bundleID, m_store.timeOfNewEntry(),
         false});
    const auto isResult = [&content](const ClipItem& item) {
        return item.type == ClipType::image && item.content == content;
    };
    const auto found = std::ranges::find_if(m_items, isResult);
    if (found == m_items.cend())
        return std::nullopt;
    return found->id;
}

void HistoryViewModel::assertMainThread() const
{
    Q_ASSERT(QThread::currentThread() == thread());
}

} // namespace Clipboard
