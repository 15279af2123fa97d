#pragma once

#include <QByteArrayView>

#include <array>

namespace ClipboardCore {

/// A 64-bit number that tells contents of a file apart, at the speed of reading them from memory; no protection against
/// anyone who wants two to be alike. How it is made is part of docs/history-format.md.
class Fingerprint final
{
public:
    /// Piece by piece, in any cut.
    void add(QByteArrayView bytes);
    /// Of everything added so far.
    [[nodiscard]] quint64 value() const;

private:
    static constexpr qsizetype wordSize = sizeof(quint64);
    static constexpr size_t laneCount = 4; // so that a multiplication need not wait for the one before
    static constexpr qsizetype blockSize = laneCount * wordSize;
    using Lanes = std::array<quint64, laneCount>;

    static void addBlock(Lanes& lanes, const char* block);

    Lanes m_lanes{1, 2, 3, 4};
    std::array<char, blockSize> m_held{}; // what does not fill a block yet
    qsizetype m_heldSize = 0;
    quint64 m_total = 0;
};

} // namespace ClipboardCore
