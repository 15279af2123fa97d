#include "History/HistoryJournal.h"

#include "History/HistoryCoding.h"
#include "Support/Fingerprint.h"
#include "Support/RegularFile.h"

#include <QFile>
#include <QSysInfo>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ClipboardCore {

using JournalCoding::FileState;
using JournalCoding::Mark;

namespace {

/// The same for every run on this machine, and nothing that tells which machine it is.
const QByteArray& deviceID()
{
    static const QByteArray id = [] {
        constexpr QUuid space(0x5C1F7A0E, 0x9B34, 0x4E6D, 0xA2, 0x57, 0x0D, 0xC8, 0x61, 0xF3, 0x9A, 0x7B);
        const QByteArray machine = QSysInfo::machineUniqueId();
        return HistoryCoding::encodedID(machine.isEmpty() ? QUuid::createUuid() : QUuid::createUuidV5(space, machine));
    }();
    return id;
}

/// JSON has no other numbers.
bool isFinite(const HistoryOperation& operation)
{
    if (const auto* put = std::get_if<HistoryOperation::Put>(&operation.change))
        return std::isfinite(put->entry.createdAt);
    const auto* touch = std::get_if<HistoryOperation::Touch>(&operation.change);
    return touch == nullptr || std::isfinite(touch->createdAt);
}

/// Two processes must not write into each other's lines. Where there are no locks, the program's own must do.
bool isTaken(int file)
{
    return flock(file, LOCK_EX | LOCK_NB) < 0 && errno == EWOULDBLOCK;
}

} // namespace

HistoryJournal::HistoryJournal(const QString& path)
    : m_path(QFile::encodeName(path))
{
}

HistoryJournal::~HistoryJournal()
{
    close();
}

void HistoryJournal::close()
{
    if (m_file >= 0)
        ::close(std::exchange(m_file, -1));
}

QList<HistoryOperation> HistoryJournal::load(const FileState& file)
{
    m_base = file;
    const int journal = RegularFile::open(m_path, O_RDONLY);
    if (journal < 0)
        return {};
    const auto content =
        RegularFile::read(journal, HistoryCoding::largestDocument, HistoryCoding::decodePadding, [](QByteArrayView) {});
    ::close(journal);
    if (!content)
        return {};

    std::optional<qint64> from;
    QList<std::pair<qint64, HistoryOperation>> found;
    JournalCoding::Decoder decoder;
    qsizetype at = 0;
    for (qsizetype end = content->indexOf('\n'); end >= 0; end = content->indexOf('\n', at)) {
        const auto line = decoder.decode(QByteArrayView(*content).sliced(at, end - at));
        const auto* mark = line ? std::get_if<Mark>(&*line) : nullptr;
        const auto* operation = line ? std::get_if<HistoryOperation>(&*line) : nullptr;
        if (mark != nullptr && mark->file == file)
            from = at - mark->missing;
        else if (operation != nullptr)
            found.append({at, *operation});
        at = end + 1;
    }
    if (!from)
        return {}; // and the first append() overwrites it
    m_end = m_lastOperation = at;
    QList<HistoryOperation> missing;
    for (const auto& [start, operation] : std::as_const(found))
        if (start >= *from)
            missing.append(operation);
    return missing;
}

void HistoryJournal::restart()
{
    m_base = {0, Fingerprint().value()};
    close();
    m_end = m_lastOperation = 0;
}

bool HistoryJournal::open()
{
    struct stat status = {};
    if (m_file >= 0 && fstat(m_file, &status) == 0 && status.st_nlink == 0) {
        close(); // somebody removed it, and what it held
        m_end = m_lastOperation = 0;
        return false;
    }
    if (m_file >= 0)
        return true;
    m_file = RegularFile::open(m_path, O_RDWR | O_CREAT);
    if (m_file < 0)
        return false;
    if (isTaken(m_file) || fchmod(m_file, S_IRUSR | S_IWUSR) < 0 || ftruncate(m_file, m_end) < 0) {
        close();
        return false;
    }
    return true;
}

void HistoryJournal::write(QByteArrayView bytes)
{
    while (!m_hasFailed && !bytes.isEmpty()) {
        const ssize_t written = RegularFile::uninterrupted(
            [&] { return pwrite(m_file, bytes.data(), static_cast<size_t>(bytes.size()), m_end); });
        if (written <= 0) {
            m_hasFailed = true;
            return;
        }
        m_end += written;
        bytes = bytes.sliced(written);
    }
}

bool HistoryJournal::finishWriting(qint64 start)
{
    if (!std::exchange(m_hasFailed, false))
        return true;
    m_end = start;
    // Half a line would hide what is appended behind it; without a descriptor the next open() cuts it off.
    if (ftruncate(m_file, m_end) < 0)
        close();
    return false;
}

bool HistoryJournal::append(const QList<HistoryOperation>& operations)
{
    if (operations.isEmpty())
        return true;
    if (!open())
        return false;
    const qint64 start = m_end;
    if (m_end == 0)
        write(JournalCoding::encode(Mark{m_base, 0}));
    for (const HistoryOperation& operation : operations) {
        if (m_hasFailed)
            break;
        if (isFinite(operation))
            JournalCoding::encode(operation, deviceID(), [this](QByteArrayView bytes) { write(bytes); });
    }
    if (!finishWriting(start))
        return false;
    m_lastOperation = m_end;
    return std::all_of(operations.begin(), operations.end(), isFinite);
}

void HistoryJournal::announce(const FileState& file, qint64 from)
{
    if (!open())
        return;
    const qint64 start = m_end;
    if (m_end == 0)
        write(JournalCoding::encode(Mark{m_base, 0}));
    write(JournalCoding::encode(Mark{file, std::max(m_end - from, qint64(0))}));
    static_cast<void>(finishWriting(start));
}

void HistoryJournal::rebase(const FileState& file, qint64 from)
{
    m_base = file;
    if (m_lastOperation <= from) {
        if (m_file >= 0 && ftruncate(m_file, 0) < 0)
            return; // it fits the file as it is
        m_end = m_lastOperation = 0;
        return;
    }
    QByteArray content(m_end - from, Qt::Uninitialized);
    if (pread(m_file, content.data(), static_cast<size_t>(content.size()), from) == content.size())
        static_cast<void>(rewrite(JournalCoding::encode(Mark{file, 0}) + content));
}

/// On failure the old journal stays, which fits as well, and takes more room.
bool HistoryJournal::rewrite(const QByteArray& content)
{
    const QByteArray temporary = m_path + ".tmp";
    const qint64 dropped = m_end - content.size();
    const int old = std::exchange(m_file, RegularFile::open(temporary, O_RDWR | O_CREAT | O_TRUNC));
    const qint64 oldEnd = std::exchange(m_end, 0);
    if (m_file >= 0 && !isTaken(m_file))
        write(content);
    const bool isWritten = m_file >= 0 && !std::exchange(m_hasFailed, false) && m_end == content.size() &&
                           fdatasync(m_file) == 0 && std::rename(temporary.constData(), m_path.constData()) == 0;
    if (isWritten) {
        ::close(old);
        m_lastOperation -= dropped;
        return true;
    }
    close();
    unlink(temporary.constData());
    m_file = old;
    m_end = oldEnd;
    return false;
}

int HistoryJournal::duplicate() const
{
    return m_file < 0 ? -1 : fcntl(m_file, F_DUPFD_CLOEXEC, 0);
}

} // namespace ClipboardCore
