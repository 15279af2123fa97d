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

constexpr const char* temporarySuffix = ".tmp";

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

bool HistoryJournal::isSealedOnDisk() const
{
    const int journal = RegularFile::open(m_path, O_RDONLY);
    if (journal < 0)
        return false;
    QByteArray beginning(sealedBeginning.size(), '\0');
    const ssize_t count = pread(journal, beginning.data(), static_cast<size_t>(beginning.size()), 0);
    ::close(journal);
    return count == beginning.size() && ClipboardCore::isSealed(beginning);
}

QByteArray HistoryJournal::read() const
{
    const int journal = RegularFile::open(m_path, O_RDONLY);
    if (journal < 0)
        return {};
    auto content =
        RegularFile::read(journal, HistoryCoding::largestDocument, HistoryCoding::decodePadding, [](QByteArrayView) {});
    ::close(journal);
    return std::move(content).value_or(QByteArray());
}

QList<HistoryOperation> HistoryJournal::load(const QByteArray& content, const FileState& file,
                                             const std::shared_ptr<const ContentSeal>& seal, bool isFileSealed)
{
    m_base = file;
    if (content.isEmpty())
        return {};

    m_form = JournalForm::of(content, seal);
    std::optional<qint64> from;
    QList<std::pair<qint64, HistoryOperation>> found;
    JournalCoding::Decoder decoder;
    qsizetype at = m_form.header().size();
    for (qsizetype end = content.indexOf('\n', at); end >= 0; end = content.indexOf('\n', at)) {
        const auto line = decode(decoder, QByteArrayView(content).sliced(at, end - at), at);
        const auto* mark = line ? std::get_if<Mark>(&*line) : nullptr;
        const auto* operation = line ? std::get_if<HistoryOperation>(&*line) : nullptr;
        if (mark != nullptr && mark->file == file)
            from = at - mark->missing;
        else if (operation != nullptr)
            found.append({at, *operation});
        at = end + 1;
    }
    if (!from) {
        m_isDamaged = m_isDamaged || (isFileSealed && !m_form.isSealed() && at > 0);
        return {}; // and the first append() overwrites it
    }
    m_end = m_lastOperation = at;
    QList<HistoryOperation> missing;
    for (const auto& [start, operation] : std::as_const(found))
        if (start >= *from)
            missing.append(operation);
    return missing;
}

std::optional<JournalCoding::Decoder::Line> HistoryJournal::decode(JournalCoding::Decoder& decoder, QByteArrayView line,
                                                                   qint64 offset)
{
    if (!m_form.isSealed())
        return decoder.decode(line);
    const auto plain = m_form.read(line, offset);
    m_isDamaged = m_isDamaged || !plain;
    return plain ? decoder.decode(*plain) : std::nullopt;
}

void HistoryJournal::setSeal(std::shared_ptr<const ContentSeal> seal)
{
    if ((m_seal == nullptr) == (seal == nullptr))
        return;
    m_seal = std::move(seal);
    unlink((m_path + temporarySuffix).constData()); // of a process that was killed, and in the other form
}

void HistoryJournal::restart(const FileState& file)
{
    m_base = file;
    m_isDamaged = false;
    close();
    m_end = m_lastOperation = 0;
}

bool HistoryJournal::open()
{
    if (m_file >= 0 && !RegularFile::isNamed(m_file, m_path)) {
        close(); // somebody removed it or its folder, or put another one there
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

/// What a journal has in front of everything else.
void HistoryJournal::begin()
{
    if (m_end > 0)
        return;
    m_form = JournalForm(m_seal);
    write(m_form.header());
    writeLine(JournalCoding::encode(Mark{m_base, 0}));
}

void HistoryJournal::writeLine(QByteArrayView line)
{
    write(m_form.isSealed() ? m_form.written(line, m_end) : line);
}

void HistoryJournal::writeOperation(const HistoryOperation& operation)
{
    if (!m_form.isSealed())
        return JournalCoding::encode(operation, deviceID(), [this](QByteArrayView bytes) { write(bytes); });
    QByteArray line;
    JournalCoding::encode(operation, deviceID(), [&line](QByteArrayView bytes) { line += bytes; });
    writeLine(line);
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
    begin();
    for (const HistoryOperation& operation : operations) {
        if (m_hasFailed)
            break;
        if (isFinite(operation))
            writeOperation(operation);
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
    begin();
    writeLine(JournalCoding::encode(Mark{file, std::max(m_end - from, qint64(0))}));
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
    QByteArray carried(m_end - from, Qt::Uninitialized);
    if (pread(m_file, carried.data(), static_cast<size_t>(carried.size()), from) == carried.size())
        static_cast<void>(rewrite(carried, from));
}

/// Lines of a journal in `form`, where they stood at `from`. Marks count the bytes of lines as they stood there; the
/// one at the beginning says the same.
void HistoryJournal::carry(const QByteArray& lines, const JournalForm& form, qint64 from)
{
    if (!form.isSealed() && !m_form.isSealed())
        return write(lines);
    qsizetype at = 0;
    for (qsizetype end = lines.indexOf('\n'); end >= 0 && !m_hasFailed; end = lines.indexOf('\n', at)) {
        const QByteArrayView line = QByteArrayView(lines).sliced(at, end - at);
        const auto plain = form.isSealed() ? form.read(line, from + at) : line.toByteArray();
        m_hasFailed = m_hasFailed || !plain;
        if (plain && !JournalCoding::isMark(*plain))
            writeLine(*plain + '\n');
        at = end + 1;
    }
}

/// On failure the old journal stays, which fits as well, and takes more room.
bool HistoryJournal::rewrite(const QByteArray& carried, qint64 from)
{
    const QByteArray temporary = m_path + temporarySuffix;
    const JournalForm oldForm = m_form;
    const int old = std::exchange(m_file, RegularFile::open(temporary, O_RDWR | O_CREAT | O_TRUNC));
    const qint64 oldEnd = std::exchange(m_end, 0);
    if (m_file >= 0 && !isTaken(m_file)) {
        begin();
        carry(carried, oldForm, from);
    }
    const bool isWritten = m_file >= 0 && !std::exchange(m_hasFailed, false) && m_end > 0 && fdatasync(m_file) == 0 &&
                           std::rename(temporary.constData(), m_path.constData()) == 0;
    if (isWritten) {
        ::close(old);
        m_lastOperation = m_end;
        return true;
    }
    close();
    unlink(temporary.constData());
    m_file = old;
    m_end = oldEnd;
    m_form = oldForm;
    return false;
}

int HistoryJournal::duplicate() const
{
    return m_file < 0 ? -1 : fcntl(m_file, F_DUPFD_CLOEXEC, 0);
}

} // namespace ClipboardCore
