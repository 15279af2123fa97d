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
    const QString parts = QChar::decomposition(codePoint);
    for (qsizetype at = 0; at < parts.size(); ++at) {
        const QChar unit = parts[at];
        if (unit.isHighSurrogate())
            decompose(QChar::surrogateToUcs4(unit, parts[++at]), out);
        else
            decompose(unit.unicode(), out);
    }
}

bool isStarter(char32_t codePoint)
{
    return codePoint < firstCombining || QChar::combiningClass(codePoint) == 0;
}

/// True when the decomposition of whatever comes before and that of what begins here can simply be joined: when the
/// latter begins with a starter.
bool isBoundary(char32_t codePoint)
{
    // The only starters that decompose into marks.
    return isStarter(codePoint) && codePoint != 0x0F73 && codePoint != 0x0F75 && codePoint != 0x0F81;
}

/// Sorts each run of marks by combining class (UAX #15, canonical ordering).
void reorder(CodePoints::iterator begin, CodePoints::iterator end)
{
    const auto byClass = [](char32_t a, char32_t b) { return QChar::combiningClass(a) < QChar::combiningClass(b); };
    while (begin != end) {
        begin = std::find_if_not(begin, end, isStarter);
        const auto runEnd = std::find_if(begin, end, isStarter);
        if (runEnd - begin > 1)
            std::stable_sort(begin, runEnd, byClass);
        begin = runEnd;
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
    reorder(result.begin(), result.end());
    return result;
}

/// The canonical decomposition of a text, piece by piece. A piece is what decomposes on its own: a starter and the
/// marks on it.
class Decomposer
{
public:
    explicit Decomposer(QByteArrayView text)
        : m_rest(text)
    {
    }

    [[nodiscard]] QByteArrayView rest() const { return m_rest; }
    [[nodiscard]] const CodePoints& codePoints() const { return m_codePoints; }
    void clear() { m_codePoints.clear(); }

    /// Appends the next piece; false at the end of the text.
    bool appendPiece()
    {
        if (m_rest.isEmpty())
            return false;
        const auto start = static_cast<std::ptrdiff_t>(m_codePoints.size());
        qsizetype length = 0;
        do {
            const auto codePoint = Utf8::decode(m_rest, length);
            decompose(codePoint.value, m_codePoints);
            length += codePoint.length;
        } while (length < m_rest.size() && !isBoundary(Utf8::decode(m_rest, length).value));
        m_rest = m_rest.sliced(length);
        reorder(m_codePoints.begin() + start, m_codePoints.end());
        return true;
    }

private:
    QByteArrayView m_rest;
    CodePoints m_codePoints;
};

/// Compares the two texts from their beginning to a place where what is left of them can be compared on its own, the
/// `count`th one. False when they differ.
bool advance(QByteArrayView& a, QByteArrayView& b, int count)
{
    Decomposer fromA(a);
    Decomposer fromB(b);
    for (; count > 0 && !(fromA.rest().isEmpty() && fromB.rest().isEmpty()); --count) {
        fromA.clear();
        fromB.clear();
        size_t compared = 0;
        do {
            Decomposer& shorter = fromA.codePoints().size() <= fromB.codePoints().size() ? fromA : fromB;
            if (!shorter.appendPiece())
                return false;
            const size_t shared = std::min(fromA.codePoints().size(), fromB.codePoints().size());
            if (!std::equal(fromA.codePoints().begin() + static_cast<std::ptrdiff_t>(compared),
                            fromA.codePoints().begin() + static_cast<std::ptrdiff_t>(shared),
                            fromB.codePoints().begin() + static_cast<std::ptrdiff_t>(compared)))
                return false;
            compared = shared;
        } while (fromA.codePoints().size() != fromB.codePoints().size());
    }
    a = fromA.rest();
    b = fromB.rest();
    return true;
}

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
    if (a.data() == b.data() && a.size() == b.size())
        return true;
    // What is alike byte by byte is skipped at full speed. How many pieces are decomposed before that is tried again
    // doubles while it gains little: a text may differ in its first letter only, or in every one.
    constexpr qsizetype worthwhile = 1024;
    int pieces = 1;
    while (true) {
        const qsizetype alike = boundaryBefore(a, b, firstDifference(a, b));
        a = a.sliced(alike);
        b = b.sliced(alike);
        if (a.isEmpty() || b.isEmpty())
            return a.isEmpty() && b.isEmpty();
        pieces = alike >= worthwhile ? 1 : std::min(pieces * 2, 4096);
        if (!advance(a, b, pieces))
            return false;
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
