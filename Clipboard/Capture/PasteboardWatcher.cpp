#include "PasteboardWatcher.h"

#include "History/CaptureExclusion.h"
#include "History/CopiedFile.h"
#include "History/JSONHistoryStore.h"
#include "History/TypeDetector.h"
#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "Pasteboard.h"
#include "PictureTranscoder.h"
#include "Support/WhiteSpace.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <tuple>
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

// Pictures whose files cannot be written wait in memory, as many as a person copies before the notice is read.
constexpr qsizetype maxWaitingBytes = qsizetype{128} * 1024 * 1024;
// Each try converts them anew.
constexpr std::chrono::milliseconds firstWriteDelay{1000};
constexpr std::chrono::milliseconds longestWriteDelay{10000};

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
    , m_writeDelay(firstWriteDelay)
{
    m_texts.setMaxThreadCount(1);
    m_pictures.setMaxThreadCount(1);
    m_timer.setInterval(pollInterval);
    connect(&m_timer, &QTimer::timeout, this, &PasteboardWatcher::poll);
    m_writeAgain.setSingleShot(true);
    connect(&m_writeAgain, &QTimer::timeout, this, &PasteboardWatcher::writeWaiting);
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
    writeWaiting(); // for the last time, it may be
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
        return m_rules.allows(ClipType::file) ? store(makeFileItem(files, capture), capture) : skip(u"type"_s);

    std::optional<QByteArray> picture = m_pasteboard.pngData();
    if (!picture)
        picture = m_pasteboard.tiffData();
    if (picture)
        return m_rules.allows(ClipType::image) ? capturePicture({*picture, capture}) : skip(u"type"_s);

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
        std::ignore = convert(m_texts, utf8.size(), make, storeIfAny);
}

void PasteboardWatcher::capturePicture(const PictureCopy& copy)
{
    const auto write = [bytes = copy.bytes, dir = m_imagesDir, hurry = m_hurry.get_token()] {
        const std::optional<QString> path = ImageBlobs::write(bytes, dir, hurry);
        return std::pair(path, path || PictureTranscoder::toPNG(bytes, hurry));
    };
    const bool isTaken = convert(m_pictures, copy.bytes.size(), write, [this, copy](const auto& written) {
        finishPicture(copy, written.first, written.second);
    });
    if (!isTaken)
        endWait(copy);
}

void PasteboardWatcher::finishPicture(PictureCopy copy, const std::optional<QString>& path, bool isPicture)
{
    if (!path && isPicture)
        return wait(std::move(copy));
    endWait(copy);
    if (!path)
        return skip(u"unreadable"_s);
    // An equal picture's entry may have gone meanwhile, and the file that both share with it.
    if (copy.mayConvertAgain && !QFile::exists(*path)) {
        copy.mayConvertAgain = copy.isWaiting = false;
        return capturePicture(copy);
    }
    store(makeItem(ClipType::image, *path, copy.capture), copy.capture);
    if (onPicture)
        onPicture(*path);
}

/// The disk is full, or its folder cannot be written: it is kept until that is over.
void PasteboardWatcher::wait(PictureCopy copy)
{
    if (!copy.isWaiting) {
        if (m_waitingBytes + copy.bytes.size() > maxWaitingBytes)
            return skip(u"overload"_s);
        copy.isWaiting = true;
        m_waitingBytes += copy.bytes.size();
        if (m_waitingCount++ == 0 && onPicturesWaiting)
            onPicturesWaiting(true);
    }
    m_waiting.append(std::move(copy));
    if (!m_writeAgain.isActive())
        m_writeAgain.start(std::exchange(m_writeDelay, std::min(2 * m_writeDelay, longestWriteDelay)));
}

void PasteboardWatcher::endWait(const PictureCopy& copy)
{
    if (!copy.isWaiting)
        return;
    m_waitingBytes -= copy.bytes.size();
    m_writeDelay = firstWriteDelay;
    if (--m_waitingCount == 0 && onPicturesWaiting)
        onPicturesWaiting(false);
}

void PasteboardWatcher::writeWaiting()
{
    m_writeAgain.stop();
    for (const PictureCopy& copy : std::exchange(m_waiting, {}))
        capturePicture(copy);
}

template <typename Work, typename Done>
bool PasteboardWatcher::convert(QThreadPool& pool, qsizetype bytes, Work work, Done done)
{
    if (m_pendingBytes + bytes > maxPendingBytes) {
        skip(u"overload"_s);
        return false;
    }
    ++m_conversions;
    m_pendingBytes += bytes;
    runOffMainThread(pool, this, std::move(work), [this, bytes, done = std::move(done)](const auto& result) {
        --m_conversions;
        m_pendingBytes -= bytes;
        done(result);
    });
    return true;
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

ClipItem PasteboardWatcher::makeFileItem(const QList<QUrl>& files, const Capture& capture)
{
    ClipItem item = makeItem(ClipType::file, ClipboardCore::CopiedFile::content(files.first()), capture);
    item.furtherFiles = static_cast<int>(files.size() - 1);
    return item;
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
