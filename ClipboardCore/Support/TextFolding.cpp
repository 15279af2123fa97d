#include "Support/TextFolding.h"

#include "Support/Utf8.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <utility>

namespace ClipboardCore::TextFolding {

namespace {

// As many as the Stream-Safe Text Format allows (UAX #15, section 13), and the starter's own.
constexpr int longestMarkRun = 32;

// The longest code point: a copy of a known size is one instruction.
constexpr qsizetype copiedAtOnce = 4;

enum class Effect : quint8 {
    none,    // stays as it is
    replace, // becomes another text
    drop,    // disappears: becomes an empty text
    join,    // may compose or change places with what is before it
};

bool isDiacritic(char32_t codePoint)
{
    if (QChar::category(codePoint) != QChar::Mark_NonSpacing)
        return false;
    // Names of the classes: Unicode Character Database, PropertyValueAliases.txt.
    const int combiningClass = QChar::combiningClass(codePoint);
    const bool isOverlay = combiningClass == 1;
    const bool isHebrewArabicOrSyriacPoint = combiningClass >= 10 && combiningClass <= 36;
    const bool isThaiOrLaoTone = combiningClass == 107 || combiningClass == 122;
    const bool isAttachedOrNear = combiningClass >= 200;
    return isOverlay || isHebrewArabicOrSyriacPoint || isThaiOrLaoTone || isAttachedOrNear;
}

/// True for all that can be the second part of a canonical composition: marks, and the vowels and finals of Hangul.
bool mayJoin(char32_t codePoint)
{
    return QChar::isMark(codePoint) || (codePoint >= 0x1160 && codePoint <= 0x11FF);
}

QString decomposedWithoutDiacritics(const QString& text)
{
    QString kept;
    for (const uint codePoint : text.normalized(QString::NormalizationForm_D).toUcs4())
        if (!isDiacritic(codePoint))
            kept.append(QChar::fromUcs4(codePoint));
    return kept;
}

/// Full case folding of one code point. Qt's folds one by one; those that become several ("ß") do so as capitals too.
QString caseFolded(const QString& codePoint)
{
    const QString upper = codePoint.toUpper();
    return upper.toUcs4().size() > 1 ? upper.toCaseFolded() : codePoint.toCaseFolded();
}

/// What becomes of each of 256 neighbouring code points. Made when the first of them is met.
class Page
{
public:
    explicit Page(char32_t first)
    {
        for (char32_t i = 0; i < m_effects.size(); ++i)
            add(first + i, i);
        m_texts.append(copiedAtOnce, '\0');
    }

    [[nodiscard]] Effect effect(char32_t codePoint) const { return m_effects[codePoint % m_effects.size()]; }
    /// Followed by `copiedAtOnce` readable bytes.
    [[nodiscard]] QByteArrayView replacement(char32_t codePoint) const
    {
        const size_t index = codePoint % m_effects.size();
        return QByteArrayView(m_texts).sliced(m_ends[index], m_ends[index + 1] - m_ends[index]);
    }

private:
    void add(char32_t codePoint, size_t index);

    std::array<Effect, 256> m_effects{};
    std::array<quint16, 257> m_ends{};
    QByteArray m_texts;
};

void Page::add(char32_t codePoint, size_t index)
{
    Effect& effect = m_effects[index];
    if (!QChar::isSurrogate(codePoint)) {
        QString text; // QString::fromUcs4 would take U+FEFF for a byte order mark
        text.append(QChar::fromUcs4(codePoint));
        const QString folded = decomposedWithoutDiacritics(caseFolded(decomposedWithoutDiacritics(text)))
                                   .normalized(QString::NormalizationForm_C);
        if (folded.isEmpty())
            effect = Effect::drop;
        else if (mayJoin(codePoint))
            effect = Effect::join;
        else if (folded != text)
            effect = Effect::replace;
        m_texts += folded.toUtf8();
    }
    m_ends[index + 1] = static_cast<quint16>(m_texts.size());
}

using PageSlot = std::atomic<const Page*>;

const Page& makePage(PageSlot& slot, char32_t codePoint)
{
    // Two threads may make the same page; the second one's is dropped.
    const Page* known = nullptr;
    auto made = std::make_unique<const Page>(codePoint / 256 * 256);
    if (slot.compare_exchange_strong(known, made.get(), std::memory_order_acq_rel))
        return *made.release();
    return *known;
}

inline const Page& page(char32_t codePoint)
{
    static std::array<PageSlot, (QChar::LastValidCodePoint + 1) / 256> pages;
    PageSlot& slot = pages[codePoint / 256];
    const Page* known = slot.load(std::memory_order_acquire);
    return known ? *known : makePage(slot, codePoint);
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

/// The folded text while it grows.
class Output
{
public:
    explicit Output(qsizetype expectedSize)
        : m_bytes(expectedSize + copiedAtOnce, Qt::Uninitialized)
    {
    }

    [[nodiscard]] QByteArrayView view() const { return QByteArrayView(m_bytes).first(m_size); }
    [[nodiscard]] QByteArray take()
    {
        m_bytes.truncate(m_size);
        return std::move(m_bytes);
    }
    void truncate(qsizetype size) { m_size = size; }

    void append(QByteArrayView bytes) { std::copy(bytes.begin(), bytes.end(), end(bytes.size())); }
    void appendLowerCase(QByteArrayView ascii)
    {
        std::transform(ascii.begin(), ascii.end(), end(ascii.size()), lowerCase);
    }
    /// `bytes` are followed by readable ones, up to `copiedAtOnce`.
    void appendPadded(QByteArrayView bytes)
    {
        if (bytes.size() > copiedAtOnce)
            return append(bytes);
        std::memcpy(end(copiedAtOnce), bytes.data(), copiedAtOnce);
        m_size -= copiedAtOnce - bytes.size();
    }

private:
    /// Room for `count` more bytes, which count from now on.
    char* end(qsizetype count)
    {
        if (m_size + count > m_bytes.size())
            m_bytes.resize(m_size + count + m_bytes.size() / 2);
        m_size += count;
        return m_bytes.data() + m_size - count;
    }

    QByteArray m_bytes;
    qsizetype m_size = 0;
};

/// Composes what follows the last starter of `out`, that starter included.
void composeEnd(Output& out)
{
    qsizetype start = out.view().size();
    for (int count = 0; count < 2 * longestMarkRun && start > 0; ++count) {
        const auto last = Utf8::decodeBefore(out.view(), start);
        start -= last.length;
        if (!mayJoin(last.value))
            break;
    }
    const QString piece = Utf8::toString(out.view().sliced(start));
    out.truncate(start);
    out.append(piece.normalized(QString::NormalizationForm_C).toUtf8());
}

/// Folds the marks at the beginning of `text` onto the end of `out`; returns how many bytes they take.
qsizetype appendMarks(Output& out, QByteArrayView text)
{
    qsizetype at = 0;
    for (int count = 0; count < longestMarkRun && at < text.size(); ++count) {
        const auto codePoint = Utf8::decode(text, at);
        const Page& folding = page(codePoint.value);
        const Effect effect = folding.effect(codePoint.value);
        if (effect == Effect::join)
            out.append(folding.replacement(codePoint.value));
        else if (effect != Effect::drop)
            break;
        at += codePoint.length;
    }
    composeEnd(out);
    return at;
}

} // namespace

QByteArray folded(const QByteArray& utf8)
{
    const QByteArrayView text = utf8;
    if (onlyFoldsASCII(text) && std::none_of(text.begin(), text.end(), [](char c) { return c != lowerCase(c); }))
        return utf8;

    Output out(text.size());
    for (qsizetype at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            const qsizetype ascii = Utf8::asciiLength(text.sliced(at));
            out.appendLowerCase(text.sliced(at, ascii));
            at += ascii;
            continue;
        }
        const auto codePoint = Utf8::decode(text, at);
        const Page& folding = page(codePoint.value);
        if (folding.effect(codePoint.value) == Effect::join) {
            at += appendMarks(out, text.sliced(at));
        } else {
            out.appendPadded(folding.replacement(codePoint.value));
            at += codePoint.length;
        }
    }
    return out.take();
}

QString withoutDiacritics(const QString& text)
{
    return decomposedWithoutDiacritics(text).normalized(QString::NormalizationForm_C);
}

bool onlyFoldsASCII(QByteArrayView utf8)
{
    for (qsizetype at = Utf8::asciiLength(utf8); at < utf8.size(); at += Utf8::asciiLength(utf8.sliced(at))) {
        const auto codePoint = Utf8::decode(utf8, at);
        if (page(codePoint.value).effect(codePoint.value) != Effect::none)
            return false;
        at += codePoint.length;
    }
    return true;
}

} // namespace ClipboardCore::TextFolding
