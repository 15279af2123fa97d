#include "DeflatedPixels.h"
#include "Fuzzer.h"

#include <QtEndian>

#include <zlib.h>

using namespace Clipboard;

namespace {

const QByteArray signature = "\x89PNG\r\n\x1a\n";

QByteArray chunk(const QByteArray& type, QByteArrayView data)
{
    const auto number = [](quint32 value) {
        const quint32 big = qToBigEndian(value);
        return QByteArray(reinterpret_cast<const char*>(&big), sizeof big);
    };
    const QByteArray summed = type + data.toByteArray();
    const auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), static_cast<size_t>(summed.size()));
    return number(static_cast<quint32>(data.size())) + summed + number(static_cast<quint32>(sum));
}

QByteArray inPieces(QByteArrayView deflated, qsizetype pieceBytes)
{
    QByteArray chunks;
    for (qsizetype at = 0; at < deflated.size(); at += pieceBytes)
        chunks += chunk("IDAT", deflated.sliced(at, qMin(pieceBytes, deflated.size() - at)));
    return chunks;
}

/// What the library says of the whole at once.
bool holds(const QByteArray& deflated, const DeflatedPixels::Rows& rows)
{
    const qsizetype wanted = rows.count * (rows.bytes + 1);
    QByteArray pixels(wanted + 1, Qt::Uninitialized);
    auto size = static_cast<uLongf>(pixels.size());
    auto used = static_cast<uLong>(deflated.size());
    if (uncompress2(reinterpret_cast<Bytef*>(pixels.data()), &size, reinterpret_cast<const Bytef*>(deflated.data()),
                    &used) != Z_OK)
        return false;
    for (qsizetype row = 0; row < wanted; row += rows.bytes + 1) {
        if (static_cast<unsigned char>(pixels.at(row)) > 4)
            return false;
    }
    return size == static_cast<uLongf>(wanted) && used == static_cast<uLong>(deflated.size());
}

} // namespace

/// The first bytes are whether the rest is deflated already, how many rows of how many bytes are wanted, what is added
/// behind it, and how long the pieces are.
void Fuzzer::run(QByteArrayView input)
{
    constexpr qsizetype head = 5;
    if (input.size() < head)
        return;
    const auto byte = [&input](qsizetype i) { return static_cast<unsigned char>(input[i]); };
    const DeflatedPixels::Rows rows{byte(1) + 1, byte(2) + 1};
    std::ignore = DeflatedPixels::sound(input, rows);
    const QByteArray rest = input.sliced(head).toByteArray();
    constexpr qsizetype lengthOfQt = 4;
    const QByteArray deflated =
        (input[0] == 'd' ? rest : qCompress(rest).mid(lengthOfQt)) + QByteArray(byte(3) % 3, 'x');
    const QByteArray chunks = inPieces(deflated, byte(4) + 1);
    const QByteArray before = signature + chunk("IHDR", "size");
    const QByteArray png = before + chunks + chunk("IEND", {});
    const auto kept = DeflatedPixels::sound(png, rows);
    require(kept.has_value() == holds(deflated, rows), "sound is what holds these rows and nothing else");
    require(!kept || *kept == chunks, "it is the chunks as they stand");
    require(!DeflatedPixels::sound(png.first(before.size() + chunks.size() / 2), rows), "half of it is not sound");
}
