#include "History/HistoryDisk.h"

#include "History/HistoryCoding.h"
#include "Support/AtomicFile.h"
#include "Support/Fingerprint.h"
#include "Support/PrivateFolder.h"
#include "Support/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace ClipboardCore {

using JournalCoding::FileState;

namespace {

// A file of this size is written in a few milliseconds; a larger one is left alone until the journal has grown to this
// part of it. So a small change never costs more than a few times its own size.
constexpr qint64 smallFile = qint64{1} << 20;
constexpr qint64 journalShare = 4;

constexpr auto unreadableSuffix = ".bad"_L1;

// What a history file that is not there amounts to.
constexpr const char* noFile = "[]";
constexpr const char* sealContext = "history";

// A history that another process saves meanwhile is read again; one that does nothing but save must not hold this one.
constexpr int mostReads = 100;

QString pathBeside(QString path, QLatin1String suffix)
{
    if (path.endsWith(".json"_L1))
        path.chop(5);
    return RegularFile::target(path + suffix);
}

bool isThere(const QString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0;
}

/// A picture's file goes before its entry does, so a program that was killed in between has an entry without one.
bool hasLostItsPicture(const ClipItem& item)
{
    return item.type == ClipType::image && !item.isPinned && !QFile::exists(item.content.toString());
}

qint64 sizeOf(const QList<ClipItem>& items)
{
    return std::accumulate(items.begin(), items.end(), qint64(0),
                           [](qint64 sum, const ClipItem& item) { return sum + item.content.byteCount(); });
}

QString freeNameFor(const QString& path)
{
    QString name = path + unreadableSuffix;
    for (int number = 1; isThere(name); ++number)
        name = path + unreadableSuffix + u'.' + QString::number(number);
    return name;
}

/// Sealed unless there is no seal.
FileState write(const QList<ClipItem>& items, const ContentSeal* seal, AtomicFile& file)
{
    FileState state;
    Fingerprint fingerprint;
    const auto sink = [&](QByteArrayView bytes) {
        file.append(bytes);
        fingerprint.add(bytes);
        state.size += bytes.size();
    };
    if (seal != nullptr) {
        const auto stream = seal->sealing(sealContext, sink);
        HistoryCoding::encode(items, [&stream](QByteArrayView bytes) { stream->append(bytes); });
        stream->finish();
    } else {
        HistoryCoding::encode(items, sink);
    }
    state.fingerprint = fingerprint.value();
    return state;
}

QList<QUuid> idsOf(const HistoryOperation& operation)
{
    struct Visitor
    {
        QList<QUuid> operator()(const HistoryOperation::Put& put) const { return {put.entry.id}; }
        QList<QUuid> operator()(const HistoryOperation::Touch& touch) const { return {touch.id}; }
        QList<QUuid> operator()(const HistoryOperation::Pin& pin) const { return {pin.id}; }
        QList<QUuid> operator()(const HistoryOperation::Remove& remove) const { return remove.ids; }
    };
    return std::visit(Visitor(), operation.change);
}

bool isRemoval(const HistoryOperation& operation)
{
    const auto* remove = std::get_if<HistoryOperation::Remove>(&operation.change);
    return remove != nullptr && !remove->isEviction;
}

} // namespace

HistoryDisk::HistoryDisk(const QString& path)
    : m_folder(QFileInfo(path).path())
    , m_path(RegularFile::target(path))
    , m_journalPath(pathBeside(m_path, ".journal"_L1))
    , m_journal(m_journalPath)
    , m_furtherFiles(pathBeside(m_path, ".files"_L1))
{
}

std::optional<EntryList> HistoryDisk::load()
{
    const std::lock_guard lock(m_mutex);
    auto [content, journal] = readFiles();
    m_isFileSealed = content && isSealed(*content);
    if (!m_sealing.seal && (m_isFileSealed || m_journal.isSealedOnDisk() || m_furtherFiles.isSealedOnDisk()))
        return std::nullopt;
    auto items = decodeFile(std::move(content));
    if (!items) {
        m_isUnreadableInPlace = true;
        m_unreadable = freeNameFor(m_path);
        return EntryList();
    }
    m_furtherFiles.load(m_sealing.seal.get(), *items);
    return withJournal(*items, journal);
}

/// The file with the journal that belongs to it. Who saves the history puts a new file in place before it takes away
/// from the journal what that file has, so a journal fits the file that is there before and after.
HistoryDisk::Contents HistoryDisk::readFiles()
{
    Contents contents{readFile(), m_journal.read()};
    for (int reads = 1; reads < mostReads && RegularFile::traceOf(m_path) != m_trace; ++reads)
        contents = {readFile(), m_journal.read()};
    return contents;
}

/// What is there; nothing when it cannot be read. A file that is not there is an empty history.
std::optional<QByteArray> HistoryDisk::readFile()
{
    Fingerprint fingerprint;
    std::optional<QByteArray> content;
    m_trace = RegularFile::traceOf(m_path);
    const int file = RegularFile::open(QFile::encodeName(m_path), O_RDONLY);
    if (file >= 0) {
        content = RegularFile::read(file, HistoryCoding::largestDocument, HistoryCoding::decodePadding,
                                    [&fingerprint](QByteArrayView bytes) { fingerprint.add(bytes); });
        ::close(file);
    } else if (errno == ENOENT || errno == ENOTDIR) {
        m_file = {0, fingerprint.value()};
        return noFile;
    }
    if (content)
        m_file = {content->size(), fingerprint.value()};
    return content;
}

std::optional<QList<ClipItem>> HistoryDisk::decodeFile(std::optional<QByteArray> content) const
{
    if (content && m_isFileSealed)
        content =
            opened(*m_sealing.seal, *std::exchange(content, std::nullopt), sealContext, HistoryCoding::decodePadding);
    return content ? HistoryCoding::decode(std::move(*content)) : std::nullopt;
}

EntryList HistoryDisk::withJournal(const QList<ClipItem>& items, const QByteArray& journal)
{
    EntryList entries(items);
    const QList<HistoryOperation> missing = m_journal.load(journal, m_file, m_sealing.seal, m_isFileSealed);
    for (const HistoryOperation& operation : missing)
        apply(operation, entries);
    if (!missing.isEmpty()) {
        QList<ClipItem> kept = entries.items();
        if (kept.removeIf(hasLostItsPicture) > 0)
            entries = EntryList(kept);
    }
    if (std::any_of(missing.begin(), missing.end(), isRemoval))
        m_lastRemoval = m_appended = 1;
    if (m_journal.isDamaged()) {
        m_damagedJournal = freeNameFor(m_journalPath);
        m_lastGap = m_appended = 1; // what could be read of it is in memory alone
    }
    m_items = entries.items();
    return entries;
}

void HistoryDisk::setSealing(const Sealing& sealing)
{
    const std::lock_guard lock(m_mutex);
    m_sealing = sealing;
    m_journal.setSeal(sealing.writing());
}

bool HistoryDisk::isAsWanted() const
{
    const std::lock_guard lock(m_mutex);
    return isInWantedForm();
}

bool HistoryDisk::isInWantedForm() const
{
    return (m_file.size == 0 || m_isFileSealed == m_sealing.isWanted) && m_journal.isAsWanted() &&
           m_furtherFiles.isAsWanted(m_sealing.isWanted);
}

std::optional<QString> HistoryDisk::unreadableFile() const
{
    const std::lock_guard lock(m_mutex);
    return m_unreadable ? m_unreadable : m_damagedJournal;
}

bool HistoryDisk::keepsUnreadableFile() const
{
    if (unreadableFile())
        return true;
    const auto isKept = [](const QFileInfo& file) {
        return !QDir(file.path())
                    .entryList({file.fileName() + unreadableSuffix + u'*'},
                               QDir::AllEntries | QDir::Hidden | QDir::System)
                    .isEmpty();
    };
    return isKept(QFileInfo(m_path)) || isKept(QFileInfo(m_journalPath));
}

/// Before anything is written. With the file goes the journal, which belongs to it.
std::optional<QString> HistoryDisk::keepUnreadable()
{
    if (!m_isUnreadableInPlace)
        return std::nullopt;
    const QByteArray kept = QFile::encodeName(*m_unreadable);
    if (rename(QFile::encodeName(m_path).constData(), kept.constData()) < 0 && errno != ENOENT)
        return "%1 (keep %2)"_L1.arg(qt_error_string(errno), m_path);
    const QString suffix = m_unreadable->sliced(m_path.size());
    rename(QFile::encodeName(m_journalPath).constData(), QFile::encodeName(m_journalPath + suffix).constData());
    m_isUnreadableInPlace = false;
    m_file = {0, Fingerprint().value()};
    m_trace = {};
    m_journal.restart(m_file);
    return std::nullopt;
}

/// Once the file holds all that could be read of it.
void HistoryDisk::keepDamagedJournal()
{
    rename(QFile::encodeName(m_journalPath).constData(), QFile::encodeName(*m_damagedJournal).constData());
    m_journal.restart(m_file);
}

void HistoryDisk::append(const QList<HistoryOperation>& operations, const QList<ClipItem>& items)
{
    const std::lock_guard lock(m_mutex);
    ++m_appended;
    m_items = items;
    if (keepUnreadable() || m_journal.isDamaged() || !m_journal.append(operations)) {
        m_lastGap = m_appended;
        for (const HistoryOperation& operation : operations)
            for (const QUuid& id : idsOf(operation))
                m_unwritten[id] = {m_appended, operation.time};
    } else if (!m_unwritten.isEmpty() && appendUnwritten()) {
        m_lastGap = m_saved;
    }
    if (std::any_of(operations.begin(), operations.end(), isRemoval))
        m_lastRemoval = m_appended;
}

/// A disk that was full has room again: what became of those entries is as good as each step of it.
bool HistoryDisk::appendUnwritten()
{
    QHash<QUuid, Unwritten> gone = m_unwritten;
    QList<HistoryOperation> operations;
    for (qsizetype i = m_items.size(); i-- > 0;) { // the last that is put stands in front
        if (const auto found = gone.constFind(m_items[i].id); found != gone.cend()) {
            operations.append({found->time, HistoryOperation::Put{m_items[i]}});
            gone.erase(found);
        }
    }
    for (auto entry = gone.cbegin(); entry != gone.cend(); ++entry)
        operations.append({entry->time, HistoryOperation::Remove{{entry.key()}}});
    if (!m_journal.append(operations))
        return false;
    m_unwritten.clear();
    return true;
}

void HistoryDisk::flushJournal()
{
    int file = -1;
    {
        const std::lock_guard lock(m_mutex);
        file = m_journal.duplicate();
    }
    if (file < 0)
        return;
    RegularFile::uninterrupted([file] { return fdatasync(file); });
    ::close(file);
    RegularFile::syncFolder(m_journalPath); // it may be new
}

bool HistoryDisk::isSaveDue() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastGap > m_saved || sizeOf(m_items) <= smallFile || m_journal.end() > m_file.size / journalShare ||
           !isInWantedForm() || RegularFile::traceOf(m_path) != m_trace; // the journal says nothing to it
}

bool HistoryDisk::isFileGone() const
{
    const std::lock_guard lock(m_mutex);
    return m_trace != RegularFile::Trace() && !isThere(m_path);
}

bool HistoryDisk::isCatchingUpDue() const
{
    const std::lock_guard lock(m_mutex);
    return !isInWantedForm() || m_lastGap > m_saved ||
           m_journal.end() > std::max(smallFile, m_file.size / journalShare);
}

bool HistoryDisk::isForgettingDue() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastRemoval > m_saved;
}

std::optional<QString> HistoryDisk::save(const std::optional<QList<ClipItem>>& items)
{
    std::unique_lock lock(m_mutex);
    m_items = items.value_or(m_items);
    const QList<ClipItem> saved = m_items;
    if (!std::all_of(saved.begin(), saved.end(), [](const ClipItem& item) { return std::isfinite(item.createdAt); }))
        return u"An entry's time is not a number"_s;
    if (auto failure = keepUnreadable())
        return failure;
    const qint64 end = m_journal.end();
    const quint64 appended = m_appended;
    const Sealing sealing = m_sealing;
    lock.unlock();

    createPrivateFolder(m_folder);                       // somebody may have removed it
    m_furtherFiles.save(saved, sealing.writing().get()); // first: what the journal says of them goes with it
    AtomicFile file(m_path);
    const FileState state = write(saved, sealing.writing().get(), file);
    if (!file.hasFailed()) {
        lock.lock();
        if (!m_journal.isDamaged())
            m_journal.announce(state, end);
        lock.unlock();
        flushJournal();
    }
    if (auto failure = file.commit())
        return failure;

    lock.lock();
    m_file = state;
    m_trace = RegularFile::traceOf(m_path);
    m_isFileSealed = sealing.isWanted;
    if (m_journal.isDamaged())
        keepDamagedJournal();
    else
        m_journal.rebase(state, end);
    m_saved = appended;
    m_unwritten.removeIf([appended](const auto& entry) { return entry.value().batch <= appended; });
    return std::nullopt;
}

} // namespace ClipboardCore
