#include "Fuzzer.h"
#include "History/JournalForm.h"
#include "SodiumBytes.h"
#include "SodiumSeal.h"

#include <QBuffer>

#include <algorithm>

using namespace Clipboard;
using ClipboardCore::JournalForm;

namespace {

const QByteArray context = "history";

const std::shared_ptr<const SodiumSeal>& theSeal()
{
    static const auto seal = SodiumSeal::make(QByteArray(SodiumSeal::keySize, 'k'));
    return seal;
}

std::optional<QByteArray> opened(const QByteArray& bytes, const QByteArray& as = context)
{
    auto device = std::make_unique<QBuffer>();
    device->setData(bytes);
    device->open(QIODevice::ReadOnly);
    return ClipboardCore::opened(*theSeal(), std::move(device), as);
}

/// How a sealed file is changed: the first bytes of the input.
struct Damage
{
    char kind;
    qsizetype place;
    char value;
};

/// Chunks are moved and left out as a whole, since each of them would open by itself.
QByteArray damaged(QByteArray bytes, const Damage& damage)
{
    constexpr qsizetype start = Sodium::fileBeginning.size() + crypto_secretstream_xchacha20poly1305_HEADERBYTES;
    constexpr qsizetype chunk = Sodium::chunkSize + Sodium::chunkOverhead;
    const qsizetype at = damage.place % bytes.size();
    const qsizetype ofChunk = start + at / chunk * chunk;
    switch (damage.kind) {
    case 'x':
        bytes[at] = char(bytes[at] ^ damage.value);
        return bytes;
    case 'c':
        return bytes.first(at);
    case 'l':
        return bytes + QByteArray(at % chunk, damage.value);
    case 'i':
        return bytes.insert(at, damage.value);
    case 'o':
        return bytes.remove(ofChunk, chunk);
    case 't':
        return bytes.insert(ofChunk, bytes.mid(ofChunk, chunk));
    case 'm':
        return bytes.first(start) + bytes.mid(ofChunk) + bytes.mid(start, ofChunk - start);
    default:
        return bytes;
    }
}

void checkFile(const QByteArray& plain, const Damage& damage)
{
    QByteArray sealed;
    const auto stream = theSeal()->sealing(context, [&sealed](QByteArrayView piece) { sealed += piece; });
    stream->append(plain);
    stream->finish();
    Fuzzer::require(opened(sealed) == plain, "what was sealed opens");
    Fuzzer::require(!opened(sealed, "another"), "but not as something else");
    const QByteArray changed = damaged(sealed, damage);
    Fuzzer::require(changed == sealed || !opened(changed), "what was changed does not open");
}

/// Records by themselves, and bound to their place in a journal.
void checkRecords(const QByteArray& plain, const Damage& damage)
{
    const JournalForm form(theSeal());
    qint64 offset = form.header().size();
    for (const QByteArray& line : plain.split('\n').first(std::min<qsizetype>(plain.count('\n') + 1, 4))) {
        const QByteArray written = form.written(line + '\n', offset);
        const QByteArrayView stands = QByteArrayView(written).chopped(1);
        Fuzzer::require(form.read(stands, offset) == line, "a line can be read where it stands");
        Fuzzer::require(!form.read(stands, offset + 1), "and nowhere else");
        QByteArray changed = stands.toByteArray();
        const qsizetype at = damage.place % changed.size();
        changed[at] = char(changed[at] ^ damage.value);
        const auto isSame = QByteArray::fromBase64(changed) == QByteArray::fromBase64(stands.toByteArray());
        Fuzzer::require(isSame || !form.read(changed, offset), "a line that was changed cannot be read");
        offset += written.size();
    }
}

} // namespace

/// The first six bytes say what is changed and how often the rest is repeated; the rest is the content.
void Fuzzer::run(QByteArrayView input)
{
    std::ignore = opened(input.toByteArray());
    std::ignore = opened(Sodium::fileBeginning.toByteArray() + input.toByteArray());
    std::ignore = JournalForm::of(input, theSeal()).header();
    std::ignore = theSeal()->openRecord(input, context);
    constexpr qsizetype head = 6;
    constexpr unsigned mostRepetitions = 40;
    if (input.size() < head)
        return;
    const auto byte = [&input](qsizetype i) { return static_cast<unsigned char>(input[i]); };
    const Damage damage{input[0], byte(1) << 16 | byte(2) << 8 | byte(3), input[4]};
    const QByteArray plain = input.sliced(head).toByteArray();
    checkFile(plain.repeated(byte(5) % mostRepetitions), damage);
    checkRecords(plain, damage);
}
