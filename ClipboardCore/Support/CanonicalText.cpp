#include "Support/CanonicalText.h"

#include "Support/Utf8.h"

#include <QChar>
#include <QList>
#include <QString>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace ClipboardCore::CanonicalText {

namespace {

using CodePoints = std::vector<char32_t>;

// Everything below is a starter (combining class 0) and begins its own decomposition with one.
constexpr char32_t firstCombining = 0x300;

/// Appends the full canonical decomposition of one code point.
void decompose(char32_t codePoint, CodePoints& out)
{
    if (codePoint < 0xC0 || QChar::decompositionTag(codePoint) != QChar::Canonical) {
        out.push_back(codePoint);
        return;
    }
    const QList<uint> parts = QChar::decomposition(codePoint).toUcs4();
    for (const uint part : parts)
        decompose(part, out);
}

bool isStarter(char32_t codePoint)
{
    return codePoint < firstCombining || QChar::combiningClass(codePoint) == 0;
}

/// True when the decomposition of whatever comes before and that of what begins here can simply be joined.
bool isBoundary(char32_t codePoint)
{
    if (codePoint < firstCombining)
        return true;
    if (QChar::combiningClass(codePoint) != 0)
        return false;
    // A few starters (U+0F73 …) decompose into marks only.
    CodePoints decomposed;
    decompose(codePoint, decomposed);
    return isStarter(decomposed.front());
}

/// Sorts each run of marks by combining class (UAX #15, canonical ordering).
void reorder(CodePoints& text)
{
    auto run = text.begin();
    while (run != text.end()) {
        run = std::find_if_not(run, text.end(), isStarter);
        const auto end = std::find_if(run, text.end(), isStarter);
        std::stable_sort(run, end,
                         [](char32_t a, char32_t b) { return QChar::combiningClass(a) < QChar::combiningClass(b); });
        run = end;
    }
}

/// The decomposition of `text`, up to the code point that makes it longer than `limit`.
CodePoints decomposed(QByteArrayView text, size_t limit = std::numeric_limits<size_t>::max())
{
    CodePoints result;
    result.reserve(std::min(static_cast<size_t>(text.size()), limit) + 4);
    for (qsizetype at = 0; at < text.size() && result.size() <= limit;) {
        const auto [codePoint, length] = Utf8::decode(text, at);
        decompose(codePoint, result);
        at += length;
    }
    reorder(result);
    return result;
}

/// The canonical decomposition of a text, piece by piece.
class Decomposer
{
public:
    explicit Decomposer(QByteArrayView text)
        : m_text(text)
    {
    }

    /// The next code point; nothing at the end, as 0xFFFFFFFF, which no text contains.
    char32_t next()
    {
        if (m_at == m_piece.size() && !readPiece())
            return end;
        return m_piece[m_at++];
    }

    static constexpr char32_t end = 0xFFFFFFFF;

private:
    bool readPiece()
    {
        if (m_text.isEmpty())
            return false;
        // Small at first, since most differences show at once.
        m_pieceSize = std::min(m_pieceSize * 2, largestPiece);
        qsizetype length = Utf8::prefix(m_text, m_pieceSize).size();
        while (length < m_text.size()) {
            const auto codePoint = Utf8::decode(m_text, length);
            if (isBoundary(codePoint.value))
                break;
            length += codePoint.length;
        }
        m_piece = decomposed(m_text.first(length));
        m_text = m_text.sliced(length);
        m_at = 0;
        return true;
    }

    static constexpr qsizetype largestPiece = 16 * 1024;
    QByteArrayView m_text;
    CodePoints m_piece;
    size_t m_at = 0;
    qsizetype m_pieceSize = 32;
};

/// The first place at which the texts differ; the length of the shorter one when it is a prefix of the other.
qsizetype firstDifference(QByteArrayView a, QByteArrayView b)
{
    constexpr qsizetype blockSize = 4096;
    const qsizetype shared = std::min(a.size(), b.size());
    qsizetype at = 0;
    while (at + blockSize <= shared && std::memcmp(a.data() + at, b.data() + at, blockSize) == 0)
        at += blockSize;
    while (at < shared && a[at] == b[at])
        ++at;
    return at;
}

/// The last place up to `at` from which both texts, alike before it, can be decomposed on their own.
qsizetype boundaryBefore(QByteArrayView a, QByteArrayView b, qsizetype at)
{
    while (at > 0) {
        const bool insideCodePoint =
            (at < a.size() && Utf8::isContinuation(a[at])) || (at < b.size() && Utf8::isContinuation(b[at]));
        const auto startsPiece = [at](QByteArrayView text) {
            return at == text.size() || isBoundary(Utf8::decode(text, at).value);
        };
        if (!insideCodePoint && startsPiece(a) && startsPiece(b))
            return at;
        --at;
    }
    return 0;
}

size_t hashed(const CodePoints& text, size_t from, size_t to, size_t seed)
{
    return qHashBits(text.data() + from, (to - from) * sizeof(char32_t), seed);
}

/// The last `count` code points.
QByteArrayView lastCodePoints(QByteArrayView text, size_t count)
{
    qsizetype start = text.size();
    for (; count > 0 && start > 0; --count)
        start -= Utf8::decodeBefore(text, start).length;
    return text.sliced(start);
}

/// Hashes the first `keyWindow` code points of the decomposition. Where the text goes on, the last starter among them
/// and its marks are left out: the marks may be incomplete, and how many are there depends on how the text is composed.
size_t headKey(const CodePoints& head, size_t seed)
{
    if (head.size() <= keyWindow)
        return hashed(head, 0, head.size(), seed);
    size_t to = keyWindow;
    while (to > 0 && !isStarter(head[--to])) {
    }
    return hashed(head, 0, to, seed);
}

/// The same for the last ones, from the first starter on.
size_t tailKey(const CodePoints& tail, size_t seed)
{
    size_t from = tail.size() - keyWindow;
    while (from < tail.size() && !isStarter(tail[from]))
        ++from;
    return hashed(tail, from, tail.size(), seed);
}

} // namespace

bool equal(QByteArrayView a, QByteArrayView b)
{
    if (a.size() == b.size() &&
        (a.data() == b.data() || std::memcmp(a.data(), b.data(), static_cast<size_t>(a.size())) == 0))
        return true;
    const qsizetype start = boundaryBefore(a, b, firstDifference(a, b));
    Decomposer fromA(a.sliced(start));
    Decomposer fromB(b.sliced(start));
    while (true) {
        const char32_t codePoint = fromA.next();
        if (codePoint != fromB.next())
            return false;
        if (codePoint == Decomposer::end)
            return true;
    }
}

size_t key(QByteArrayView text, size_t seed)
{
    const CodePoints head = decomposed(text, keyWindow);
    const size_t result = headKey(head, seed);
    if (head.size() <= keyWindow)
        return result;
    // No text has more code points than its decomposition, so these decompose into at least as many.
    return tailKey(decomposed(lastCodePoints(text, keyWindow)), result);
}

} // namespace ClipboardCore::CanonicalText
