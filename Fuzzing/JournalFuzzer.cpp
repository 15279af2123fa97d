#include "Fuzzer.h"
#include "History/EntryList.h"
#include "History/HistoryJournal.h"
#include "SodiumSeal.h"
#include "Support/Fingerprint.h"

#include <algorithm>

#include <sys/mman.h>
#include <unistd.h>

using namespace ClipboardCore;

namespace {

/// The lines that the operations make: two are the same when their lines are.
QByteArray lines(const QList<HistoryOperation>& operations)
{
    QByteArray bytes;
    for (const HistoryOperation& operation : operations)
        JournalCoding::encode(operation, "device", [&bytes](QByteArrayView piece) { bytes += piece; });
    return bytes;
}

EntryList replayed(const QList<HistoryOperation>& operations, EntryList entries = {})
{
    for (const HistoryOperation& operation : operations)
        apply(operation, entries);
    return entries;
}

void checkOrder(const QList<ClipItem>& items)
{
    const auto isBefore = [](const ClipItem& left, const ClipItem& right) {
        return left.isPinned != right.isPinned ? left.isPinned : left.createdAt > right.createdAt;
    };
    Fuzzer::require(std::is_sorted(items.begin(), items.end(), isBefore), "pinned entries are first, then the newest");
    for (qsizetype i = 0; i < items.size(); ++i)
        for (qsizetype j = 0; j < i; ++j)
            Fuzzer::require(items[i].id != items[j].id, "an id is that of one entry");
}

} // namespace

/// The input is a journal, of a history without a file.
void Fuzzer::run(QByteArrayView input)
{
    static const int memory = memfd_create("journal", MFD_CLOEXEC);
    static const auto seal = Clipboard::SodiumSeal::make(QByteArray(Clipboard::SodiumSeal::keySize, 'k'));
    const QString path = QStringLiteral("/proc/self/fd/%1").arg(memory);
    const auto size = static_cast<size_t>(input.size());
    require(ftruncate(memory, 0) == 0 && pwrite(memory, input.data(), size, 0) == input.size(), "there is a journal");

    const JournalCoding::FileState noFile{0, Fingerprint().value()};
    HistoryJournal journal(path);
    const QList<HistoryOperation> loaded = journal.load(journal.read(), noFile, seal);
    const EntryList entries = replayed(loaded);
    checkOrder(entries.items());
    require(replayed(loaded, entries).items() == entries.items(), "replayed once more, it is the same history");
    if (journal.isDamaged())
        return;
    const ClipItem item{QUuid::createUuid(), ClipType::text, Utf8Text::fromUtf8("next"), {}, {}, 1, false};
    const QList<HistoryOperation> next{{1, HistoryOperation::Put{item}}};
    require(journal.append(next), "whatever it held, it is written on");
    HistoryJournal later(path);
    require(lines(later.load(later.read(), noFile, seal)) == lines(loaded + next), "and what it held stays");
}
