#include "HistoryViewModel.h"

#include "History/CopiedFile.h"
#include "History/JSONHistoryStore.h"
#include "History/TypeDetector.h"
#include "OffMainThread.h"
#include "PasteService.h"
#include "PictureReading.h"
#include "Support/WhiteSpace.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;
using ClipboardCore::ItemAction;
using ClipboardCore::SmartAction;
using ClipboardCore::SmartActionResult;
using ClipboardCore::ToastText;
using ClipboardCore::Utf8Text;
namespace CopiedFile = ClipboardCore::CopiedFile;

namespace {

// What is pasted into a text field, in bytes: beyond any search or label, and laid out within a frame.
constexpr qsizetype longestTyped = 4096;

} // namespace

HistoryViewModel::HistoryViewModel(ClipboardCore::JSONHistoryStore& store, Services services, QObject* parent)
    : CommandSheetState(parent)
    , m_store(store)
    , m_services(std::move(services))
    , m_keys(*this)
    , m_actions(m_services.smartActions)
    , m_removed(store)
{
    m_pictures.setMaxThreadCount(1);
    connect(&m_actions, &EntryActions::found, this, &HistoryViewModel::smartActionsChanged);
    connect(&m_actions, &EntryActions::underWayChanged, this, &HistoryViewModel::smartActionsChanged);
    refresh();
}

HistoryViewModel::~HistoryViewModel()
{
    m_pictures.waitForDone();
}

void HistoryViewModel::refresh()
{
    assertMainThread();
    setItems(m_store.items());
}

void HistoryViewModel::panelWillShow(std::optional<QUuid> selecting)
{
    assertMainThread();
    setFocus(std::nullopt);
    setQuery({});
    setFilter(std::nullopt);
    setCmdkOpen(false);
    refresh();
    prepareSearch();
    if (visibleIndex(selecting) >= 0)
        setSelectedID(selecting);
    else if (selectsNewest && !visible().isEmpty())
        setSelectedID(std::ranges::max_element(visible(), {}, &ClipItem::createdAt)->id);
    else
        selectFirst();
    renewFocusToken();
}

// ── Commands on an entry
// `item` may live in items() or visible() and is gone once refresh() has run: whatever is needed later is copied first.

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
    case ClipType::file:
        if (!CopiedFile::status(item.content.utf8()))
            return false;
        m_services.pasteboard.setFile(CopiedFile::url(item.content.utf8()));
        break;
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
        m_services.toast(ToastText::failure(tr("File not found")));
        return;
    }
    take(item);
    m_services.toast(ToastText::failure(tr("File no longer exists — removed from history")));
}

void HistoryViewModel::bump(const ClipItem& item)
{
    ClipItem again = item;
    again.id = QUuid::createUuid();
    again.createdAt = m_store.timeOfNewEntry();
    again.isPinned = false;
    add(again);
}

void HistoryViewModel::add(const ClipItem& item)
{
    m_removed.release(m_store.add(item));
    saveAndRefresh();
}

void HistoryViewModel::saveAndRefresh()
{
    m_store.saveAsync();
    refresh();
}

void HistoryViewModel::togglePin(const ClipItem& item)
{
    assertMainThread();
    const QUuid id = item.id;
    m_store.togglePin(id);
    saveAndRefresh();
}

void HistoryViewModel::remove(const ClipItem& item)
{
    assertMainThread();
    const QString snippet = item.snippet();
    take(item);
    m_services.toast(tr("Deleted %1 — ⌘Z brings it back").arg(snippet));
}

void HistoryViewModel::take(const ClipItem& item)
{
    const QUuid id = item.id;
    const qsizetype index = visibleIndex(id);
    if (selectedID() == id && index >= 0) {
        std::optional<QUuid> next;
        if (index + 1 < visible().size())
            next = visible().at(index + 1).id;
        else if (index > 0)
            next = visible().at(index - 1).id;
        setSelectedID(next);
    }
    if (const std::optional<ClipItem> removed = m_store.remove(id))
        m_removed.keep({*removed});
    saveAndRefresh();
}

void HistoryViewModel::clearHistory()
{
    clear(true);
}

void HistoryViewModel::clearEverything()
{
    clear(false);
}

void HistoryViewModel::clear(bool keepingPinned)
{
    assertMainThread();
    const QList<ClipItem> removed = m_store.removeAll(keepingPinned);
    if (!removed.isEmpty()) {
        m_removed.keep(removed);
        m_services.toast(tr("History cleared — ⌘Z in the panel brings it back"));
    }
    saveAndRefresh();
}

bool HistoryViewModel::undoRemoval()
{
    assertMainThread();
    if (m_removed.isEmpty())
        return false;
    const QList<ClipItem> entries = m_removed.takeLast();
    m_removed.release(m_store.restore(entries));
    saveAndRefresh();
    if (visibleIndex(entries.first().id) >= 0)
        setSelectedID(entries.first().id);
    m_services.toast(entries.size() == 1 ? tr("Brought back %1").arg(entries.first().snippet())
                                         : tr("Brought back what was cleared"));
    return true;
}

void HistoryViewModel::forgetRemoved()
{
    assertMainThread();
    m_removed.forget();
}

void HistoryViewModel::annotate(const ClipItem& item)
{
    assertMainThread();
    if (item.type != ClipType::image)
        return;
    const auto read = [path = item.content.toString()] { return PictureReading::readFile(path); };
    runOffMainThread(m_pictures, this, read, [this, item](const QImage& image) {
        if (!image.isNull()) {
            if (onAnnotate)
                onAnnotate(item, image);
            return;
        }
        // The user may have deleted or pinned it meanwhile.
        const auto current = std::ranges::find(items(), item.id, &ClipItem::id);
        if (current != items().cend())
            handleMissingFile(*current);
    });
}

std::optional<QUuid> HistoryViewModel::record(const ClipItem& item)
{
    assertMainThread();
    add(item);
    const auto holdsIt = [&item](const ClipItem& entry) {
        return entry.type == item.type && entry.content == item.content;
    };
    const auto found = std::ranges::find_if(items(), holdsIt);
    if (found == items().cend())
        return std::nullopt;
    return found->id;
}

std::optional<QUuid> HistoryViewModel::addAnnotateResult(const QString& path, const ClipItem& from)
{
    return record({QUuid::createUuid(), ClipType::image, Utf8Text(path), from.sourceApp, from.bundleID,
                   m_store.timeOfNewEntry(), false});
}

void HistoryViewModel::copyMarked(const QString& text, const std::optional<ClipItem>& from)
{
    assertMainThread();
    const Utf8Text content(text);
    m_services.pasteboard.setString(content.utf8());
    // The pasteboard is silent about our own writes, and an entry that is copied is in the history already. This is a
    // text that nobody has copied before, so it is recorded as the watcher would record it: nothing copied is lost.
    if (markOwnChange)
        markOwnChange();
    if (ClipboardCore::WhiteSpace::isBlank(content.utf8()))
        return;
    ClipItem item{QUuid::createUuid(),
                  ClipboardCore::TypeDetector::classify(content),
                  content,
                  {},
                  {},
                  m_store.timeOfNewEntry(),
                  false};
    if (from) {
        item.sourceApp = from->sourceApp;
        item.bundleID = from->bundleID;
    }
    add(item);
    m_services.toast(tr("Copied %1").arg(item.snippet()));
}

QString HistoryViewModel::copiedText() const
{
    const std::optional<QByteArray> text = m_services.pasteboard.string();
    return text ? QString::fromUtf8(text->first(std::min(text->size(), longestTyped))) : QString();
}

// ── Smart actions

QList<SmartAction> HistoryViewModel::smartActions()
{
    assertMainThread();
    const std::optional<ClipItem> item = selectedItem();
    return item ? m_actions.of(*item) : QList<SmartAction>();
}

void HistoryViewModel::runSmartAction(const SmartAction& action)
{
    runSmartAction(action, selectedID());
}

void HistoryViewModel::runSmartAction(const SmartAction& action, const std::optional<QUuid>& entry)
{
    assertMainThread();
    // It goes on when its entry is deleted or the panel closed meanwhile: the user has asked for it.
    m_actions.run(action, entry.value_or(QUuid()),
                  [this, entry](const SmartActionResult& result, ActionUnderWay underWay) {
                      carryOut(result, entry, std::move(underWay));
                  });
}

void HistoryViewModel::carryOut(const SmartActionResult& result, const std::optional<QUuid>& entry,
                                ActionUnderWay underWay)
{
    const std::weak_ptr<const void> pending = underWay;
    m_performing = std::move(underWay);
    m_services.perform(result.effect, *this);
    m_performing.reset();
    if (selectedID() != entry)
        setQrPreview({}); // a code is shown with the entry that it was made of
    // What is yet to be answered will say so itself.
    if (pending.expired())
        m_services.toast(result.toast);
    else
        m_services.progress(result.toast);
}

bool HistoryViewModel::isUnderWay(const QString& label) const
{
    return selectedID() && m_actions.isUnderWay(*selectedID(), label);
}

// ── Keyboard and focus

bool HistoryViewModel::handleKey(const ClipboardCore::KeyEvent& event)
{
    assertMainThread();
    return cmdkOpen() ? handleCommandSheetKey(event) : m_keys.handleKey(event);
}

void HistoryViewModel::activate(const FocusKey& key)
{
    assertMainThread();
    if (const auto* chip = key.as<FocusKey::Chip>())
        setFilter(chip->type);
    else if (const auto* row = key.as<FocusKey::Row>())
        setSelectedID(row->id);
    else if (const auto* button = key.as<FocusKey::Button>())
        activateButton(button->action);
    else if (const auto* action = key.as<FocusKey::Action>()) {
        const QList<SmartAction> actions = smartActions();
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
    if (const PanelFocusTarget focused = focus())
        activate(*focused);
    else if (const std::optional<ClipItem> item = selectedItem())
        paste(*item);
}

} // namespace Clipboard
