#include "Support/Fingerprint.h"

#include <QtEndian>

#include <algorithm>
#include <bit>

namespace ClipboardCore {

namespace {

constexpr quint64 factor = 0x9E3779B97F4A7C15U; // 2^64 divided by the golden ratio: odd, with bits all over
constexpr int turn = 29;

quint64 mixed(quint64 lane, quint64 word)
{
    return std::rotl((lane ^ word) * factor, turn);
}

} // namespace

void Fingerprint::addBlock(Lanes& lanes, const char* block)
{
    for (size_t i = 0; i < laneCount; ++i)
        lanes[i] = mixed(lanes[i], qFromLittleEndian<quint64>(block + i * wordSize));
}

void Fingerprint::add(QByteArrayView bytes)
{
    m_total += static_cast<quint64>(bytes.size());
    if (m_heldSize > 0) {
        const qsizetype taken = std::min(bytes.size(), blockSize - m_heldSize);
        std::copy_n(bytes.data(), taken, m_held.data() + m_heldSize);
        m_heldSize += taken;
        bytes = bytes.sliced(taken);
        if (m_heldSize < blockSize)
            return;
        addBlock(m_lanes, m_held.data());
        m_heldSize = 0;
    }
    Lanes lanes = m_lanes; // in registers while it lasts
    for (; bytes.size() >= blockSize; bytes = bytes.sliced(blockSize))
        addBlock(lanes, bytes.data());
    m_lanes = lanes;
    std::copy_n(bytes.data(), bytes.size(), m_held.data());
    m_heldSize = bytes.size();
}

quint64 Fingerprint::value() const
{
    Lanes lanes = m_lanes;
    std::array<char, blockSize> last{}; // filled up with zeros; the total tells them from zeros in the content
    std::copy_n(m_held.data(), m_heldSize, last.data());
    addBlock(lanes, last.data());
    quint64 value = m_total;
    for (const quint64 lane : lanes)
        value = mixed(value, lane);
    return value;
}

} // namespace ClipboardCore
