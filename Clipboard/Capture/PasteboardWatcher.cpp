#include "PasteboardWatcher.h"

#include "History/CaptureExclusion.h"
#include "History/CopiedFile.h"
#include "History/JSONHistoryStore.h"
#include "History/TypeDetector.h"
#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "Pasteboard.h"
#include "Support/WhiteSpace.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::Utf8Text;

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

constexpr std::chrono::milliseconds pollInterval{300};

// Checking and classifying a text grows with it: up to this size it takes less than a millisecond.
constexpr qsizetype maxInlineTextBytes = qsizetype{1024} * 1024;

// What waits for its conversion. Nobody copies that much in a second; a program that does so in a loop must not take
// the machine's memory.
constexpr qsizetype maxPendingBytes = qsizetype{512} * 1024 * 1024;

/// Under which name a copy counts that asks not to be recorded.
QString markOf(const QSet<QString>& types)
{
    if (types.contains(u"org.nspasteboard.ConcealedType"_s))
        return u"secret"_s;
    return types.contains(u"org.nspasteboard.TransientType"_s) ? u"transient"_s : u"generated"_s;
}

} // namespace

PasteboardWatcher::PasteboardWatcher(Pasteboard& pasteboard, const Workspace& workspace,
                                     ClipboardCore::JSONHistoryStore& store, QString imagesDir, QObject* parent)
    : QObject(parent)
    , m_pasteboard(pasteboard)
    , m_workspace(workspace)
    , m_store(store)
    , m_imagesDir(std::move(imagesDir))
    , m_lastChangeCount(pasteboard.changeCount())
{
    m_texts.setMaxThreadCount(1);
    m_pictures.setMaxThreadCount(1);
    m_timer.setInterval(pollInterval);
    connect(&m_timer, &QTimer::timeout, this, &PasteboardWatcher::poll);
}

PasteboardWatcher::~PasteboardWatcher()
{
    m_texts.clear();
    m_pictures.clear();
    m_hurry.request_stop();
    m_texts.waitForDone();
    m_pictures.waitForDone();
}

void PasteboardWatcher::start()
{
    connect(&m_pasteboard, &Pasteboard::changed, this, &PasteboardWatcher::poll);
    if (!m_pasteboard.notifiesChanges())
        m_timer.start();
    qCDebug(timing, "watching");
}

void PasteboardWatcher::markOwnChange()
{
    m_lastChangeCount = m_pasteboard.changeCount();
}

void PasteboardWatcher::finishPending(const Limits& limits)
{
    const QDeadlineTimer lastReading(limits.reading);
    m_pasteboard.settle(limits.reading);
    const QDeadlineTimer lastConversion(limits.converting);
    while (m_conversions > 0) {
        waitForConversions(lastConversion);
        // They may have taken long enough for another copy.
        if (!lastConversion.hasExpired())
            m_pasteboard.settle(std::chrono::milliseconds(lastReading.remainingTime()));
    }
    m_hurry = {};
}

void PasteboardWatcher::waitForConversions(const QDeadlineTimer& deadline)
{
    for (QThreadPool* pool : {&m_texts, &m_pictures}) {
        if (pool->waitForDone(static_cast<int>(deadline.remainingTime())))
            continue;
        m_hurry.request_stop();
        pool->waitForDone();
    }
    QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
}

void PasteboardWatcher::poll()
{
    if (m_pasteboard.changeCount() == m_lastChangeCount)
        return;
    m_lastChangeCount = m_pasteboard.changeCount();
    if (m_pasteboard.isTakenBack())
        return forgetTakenBack();
    const QSet<QString> types = m_pasteboard.types();
    if (m_isPaused)
        return skip(u"paused"_s);
    if (ClipboardCore::CaptureExclusion::excludes(types))
        return skip(markOf(types));
    const Capture seen = captureNow();
    if (!m_rules.allowsFrom(seen.bundleID))
        return skip(u"application"_s);
    if (m_forgetWithin)
        m_lastCopy = {seen.change, QDeadlineTimer(*m_forgetWithin)};
    capture(types, seen);
}

void PasteboardWatcher::capture(const QSet<QString>& types, const Capture& capture)
{
    if (const QList<QUrl> files = m_pasteboard.fileURLs(); !files.isEmpty())
        return m_rules.allows(ClipType::file)
                   ? store(makeItem(ClipType::file, ClipboardCore::CopiedFile::content(files.first()), capture),
                           capture)
                   : skip(u"type"_s);

    std::optional<QByteArray> picture = m_pasteboard.pngData();
    if (!picture)
        picture = m_pasteboard.tiffData();
    if (picture)
        return m_rules.allows(ClipType::image) ? capturePicture(*picture, capture, true) : skip(u"type"_s);

    if (const std::optional<QByteArray> text = m_pasteboard.string())
        captureText(*text, capture);
    else if (!types.isEmpty()) // it was not cleared
        skip(u"unreadable"_s);
}

PasteboardWatcher::Capture PasteboardWatcher::captureNow() const
{
    const auto source = m_workspace.frontmostApplication().value_or(Workspace::Application{});
    return {source.name, source.bundleID, m_store.timeOfNewEntry(), m_lastChangeCount};
}

void PasteboardWatcher::captureText(const QByteArray& utf8, const Capture& capture)
{
    const auto make = [utf8, capture, rules = m_rules] { return makeTextItem(utf8, capture, rules); };
    const auto storeIfAny = [this, capture](const Outcome& outcome) {
        if (outcome.item)
            store(*outcome.item, capture);
        else
            skip(outcome.reason);
    };
    if (utf8.size() <= maxInlineTextBytes && !m_rules.hasPatterns())
        storeIfAny(make());
    else
        convert(m_texts, utf8.size(), make, storeIfAny);
}

void PasteboardWatcher::capturePicture(const QByteArray& picture, const Capture& capture, bool mayRetry)
{
    const auto write = [picture, dir = m_imagesDir, hurry = m_hurry.get_token()] {
        return ImageBlobs::write(picture, dir, hurry);
    };
    const auto done = [this, picture, capture, mayRetry](const std::optional<QString>& path) {
        if (!path)
            return skip(u"unreadable"_s);
        // An equal picture's entry may have gone meanwhile, and the file that both share with it.
        if (mayRetry && !QFile::exists(*path))
            return capturePicture(picture, capture, false);
        store(makeItem(ClipType::image, *path, capture), capture);
        if (onPicture)
            onPicture(*path);
    };
    convert(m_pictures, picture.size(), write, done);
}

template <typename Work, typename Done>
void PasteboardWatcher::convert(QThreadPool& pool, qsizetype bytes, Work work, Done done)
{
    if (m_pendingBytes + bytes > maxPendingBytes)
        return skip(u"overload"_s);
    ++m_conversions;
    m_pendingBytes += bytes;
    runOffMainThread(pool, this, std::move(work), [this, bytes, done = std::move(done)](const auto& result) {
        --m_conversions;
        m_pendingBytes -= bytes;
        done(result);
    });
}

/// Nobody else copied in between: then it was the last copy that went.
void PasteboardWatcher::forgetTakenBack()
{
    if (m_lastCopy.change + 1 != m_lastChangeCount || m_lastCopy.patience.hasExpired())
        return;
    m_takenBack = m_lastCopy.change; // it may still be converted
    if (m_lastCopy.entry)
        forget(*std::exchange(m_lastCopy.entry, {}));
}

void PasteboardWatcher::forget(const ClipItem& item)
{
    const auto isSame = [&item](const ClipItem& kept) {
        return kept.type == item.type && kept.content == item.content && !kept.isPinned;
    };
    const auto found = std::ranges::find_if(m_store.items(), isSame);
    if (found == m_store.items().end())
        return;
    skip(u"cleared"_s);
    const QUuid id = found->id;
    if (const auto removed = m_store.remove(id))
        ImageBlobs::release({*removed});
    m_store.saveAsync();
    if (onChange)
        onChange();
}

void PasteboardWatcher::store(const ClipItem& item, const Capture& capture)
{
    ImageBlobs::release(m_store.add(item));
    m_store.saveAsync();
    qCDebug(timing, "captured %lld", static_cast<long long>(QDateTime::currentMSecsSinceEpoch()));
    if (onChange)
        onChange();
    if (capture.change == m_takenBack)
        forget(item);
    else if (capture.change == m_lastCopy.change)
        m_lastCopy.entry = item;
}

ClipItem PasteboardWatcher::makeItem(ClipType type, const Utf8Text& content, const Capture& capture)
{
    return {QUuid::createUuid(), type, content, capture.sourceApp, capture.bundleID, capture.time, false};
}

PasteboardWatcher::Outcome PasteboardWatcher::makeTextItem(const QByteArray& utf8, const Capture& capture,
                                                           const RecordingRules& rules)
{
    const Utf8Text text = Utf8Text::fromUtf8(utf8);
    if (ClipboardCore::WhiteSpace::isBlank(text.utf8()))
        return {{}, u"blank"_s};
    const ClipType type = ClipboardCore::TypeDetector::classify(text);
    if (!rules.allows(type))
        return {{}, u"type"_s};
    if (rules.hasPatterns() && rules.matches(text.toString()))
        return {{}, u"pattern"_s};
    return {makeItem(type, text, capture), {}};
}

} // namespace Clipboard
