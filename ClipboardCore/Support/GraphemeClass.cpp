#include "Support/GraphemeClass.h"

#include <QChar>

#include <algorithm>
#include <span>

namespace ClipboardCore {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

// Facts of the Unicode Character Database, version 14: what the general category does not tell.

// Each is sorted.

/// Extended_Pictographic.
constexpr Range pictures[] = {
    {0x00A9, 0x00A9},   {0x00AE, 0x00AE},   {0x203C, 0x203C},   {0x2049, 0x2049},   {0x2122, 0x2122},
    {0x2139, 0x2139},   {0x2194, 0x2199},   {0x21A9, 0x21AA},   {0x231A, 0x231B},   {0x2328, 0x2328},
    {0x2388, 0x2388},   {0x23CF, 0x23CF},   {0x23E9, 0x23F3},   {0x23F8, 0x23FA},   {0x24C2, 0x24C2},
    {0x25AA, 0x25AB},   {0x25B6, 0x25B6},   {0x25C0, 0x25C0},   {0x25FB, 0x25FE},   {0x2600, 0x2605},
    {0x2607, 0x2612},   {0x2614, 0x2685},   {0x2690, 0x2705},   {0x2708, 0x2712},   {0x2714, 0x2714},
    {0x2716, 0x2716},   {0x271D, 0x271D},   {0x2721, 0x2721},   {0x2728, 0x2728},   {0x2733, 0x2734},
    {0x2744, 0x2744},   {0x2747, 0x2747},   {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},
    {0x2757, 0x2757},   {0x2763, 0x2767},   {0x2795, 0x2797},   {0x27A1, 0x27A1},   {0x27B0, 0x27B0},
    {0x27BF, 0x27BF},   {0x2934, 0x2935},   {0x2B05, 0x2B07},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},
    {0x2B55, 0x2B55},   {0x3030, 0x3030},   {0x303D, 0x303D},   {0x3297, 0x3297},   {0x3299, 0x3299},
    {0x1F000, 0x1F0FF}, {0x1F10D, 0x1F10F}, {0x1F12F, 0x1F12F}, {0x1F16C, 0x1F171}, {0x1F17E, 0x1F17F},
    {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F1AD, 0x1F1E5}, {0x1F201, 0x1F20F}, {0x1F21A, 0x1F21A},
    {0x1F22F, 0x1F22F}, {0x1F232, 0x1F23A}, {0x1F23C, 0x1F23F}, {0x1F249, 0x1F3FA}, {0x1F400, 0x1F53D},
    {0x1F546, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F774, 0x1F77F}, {0x1F7D5, 0x1F7FF}, {0x1F80C, 0x1F80F},
    {0x1F848, 0x1F84F}, {0x1F85A, 0x1F85F}, {0x1F888, 0x1F88F}, {0x1F8AE, 0x1F8FF}, {0x1F90C, 0x1F93A},
    {0x1F93C, 0x1F945}, {0x1F947, 0x1FAFF}, {0x1FC00, 0x1FFFD}};
/// Prepend.
constexpr Range prepended[] = {{0x0600, 0x0605},   {0x06DD, 0x06DD},   {0x070F, 0x070F},   {0x0890, 0x0891},
                               {0x08E2, 0x08E2},   {0x0D4E, 0x0D4E},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD},
                               {0x111C2, 0x111C3}, {0x1193F, 0x1193F}, {0x11941, 0x11941}, {0x11A3A, 0x11A3A},
                               {0x11A84, 0x11A89}, {0x11D46, 0x11D46}};
/// Extend, though no nonspacing or enclosing marks.
constexpr Range extending[] = {{0x09BE, 0x09BE},   {0x09D7, 0x09D7},   {0x0B3E, 0x0B3E},   {0x0B57, 0x0B57},
                               {0x0BBE, 0x0BBE},   {0x0BD7, 0x0BD7},   {0x0CC2, 0x0CC2},   {0x0CD5, 0x0CD6},
                               {0x0D3E, 0x0D3E},   {0x0D57, 0x0D57},   {0x0DCF, 0x0DCF},   {0x0DDF, 0x0DDF},
                               {0x1B35, 0x1B35},   {0x200C, 0x200C},   {0x302E, 0x302F},   {0xFF9E, 0xFF9F},
                               {0x1133E, 0x1133E}, {0x11357, 0x11357}, {0x114B0, 0x114B0}, {0x114BD, 0x114BD},
                               {0x115AF, 0x115AF}, {0x11930, 0x11930}, {0x1D165, 0x1D165}, {0x1D16E, 0x1D172},
                               {0x1F3FB, 0x1F3FF}, {0xE0020, 0xE007F}};
/// Spacing marks that stand alone.
constexpr Range standingAlone[] = {{0x102B, 0x102C},  {0x1038, 0x1038}, {0x1062, 0x1064}, {0x1067, 0x106D},
                                   {0x1083, 0x1083},  {0x1087, 0x108C}, {0x108F, 0x108F}, {0x109A, 0x109C},
                                   {0x1A61, 0x1A61},  {0x1A63, 0x1A64}, {0xAA7B, 0xAA7B}, {0xAA7D, 0xAA7D},
                                   {0x11720, 0x11721}};
/// Not assigned, and invisible should they ever be.
constexpr Range ignorable[] = {{0x2065, 0x2065},   {0xFFF0, 0xFFF8},   {0xE0000, 0xE0000},
                               {0xE0002, 0xE001F}, {0xE0080, 0xE00FF}, {0xE01F0, 0xE0FFF}};

bool isIn(std::span<const Range> sorted, char32_t codePoint)
{
    const auto range = std::ranges::lower_bound(sorted, codePoint, {}, &Range::last);
    return range != sorted.end() && range->first <= codePoint;
}

constexpr bool isBetween(char32_t codePoint, char32_t first, char32_t last)
{
    return codePoint >= first && codePoint <= last;
}

/// The class of a letter or syllable of Hangul; `other` for everything else.
GraphemeClass hangulClass(char32_t codePoint)
{
    constexpr char32_t syllables = 0xAC00;
    constexpr char32_t tailsOfASyllable = 28; // none is one of them
    if (isBetween(codePoint, syllables, 0xD7A3))
        return (codePoint - syllables) % tailsOfASyllable == 0 ? GraphemeClass::hangulOpenSyllable
                                                               : GraphemeClass::hangulClosedSyllable;
    if (isBetween(codePoint, 0x1100, 0x115F) || isBetween(codePoint, 0xA960, 0xA97C))
        return GraphemeClass::hangulLead;
    if (isBetween(codePoint, 0x1160, 0x11A7) || isBetween(codePoint, 0xD7B0, 0xD7C6))
        return GraphemeClass::hangulVowel;
    if (isBetween(codePoint, 0x11A8, 0x11FF) || isBetween(codePoint, 0xD7CB, 0xD7FB))
        return GraphemeClass::hangulTail;
    return GraphemeClass::other;
}

/// The class of what is invisible and no mark.
GraphemeClass formatClass(char32_t codePoint)
{
    switch (codePoint) {
    case '\r':
        return GraphemeClass::carriageReturn;
    case '\n':
        return GraphemeClass::lineFeed;
    case 0x200D:
        return GraphemeClass::joiner;
    default:
        if (isIn(prepended, codePoint))
            return GraphemeClass::prepend;
        return isIn(extending, codePoint) ? GraphemeClass::extend : GraphemeClass::control;
    }
}

/// The class of a letter without case.
GraphemeClass letterClass(char32_t codePoint)
{
    const bool isVowelOfThaiOrLao = codePoint == 0x0E33 || codePoint == 0x0EB3;
    if (isVowelOfThaiOrLao)
        return GraphemeClass::spacingMark;
    return isIn(prepended, codePoint) ? GraphemeClass::prepend : hangulClass(codePoint);
}

GraphemeClass spacingMarkClass(char32_t codePoint)
{
    if (isIn(extending, codePoint))
        return GraphemeClass::extend;
    return isIn(standingAlone, codePoint) ? GraphemeClass::other : GraphemeClass::spacingMark;
}

GraphemeClass symbolClass(char32_t codePoint)
{
    constexpr char32_t regionalIndicatorA = 0x1F1E6;
    constexpr char32_t regionalIndicatorZ = 0x1F1FF;
    if (isBetween(codePoint, regionalIndicatorA, regionalIndicatorZ))
        return GraphemeClass::regionalIndicator;
    return isIn(pictures, codePoint) ? GraphemeClass::picture : GraphemeClass::other;
}

} // namespace

GraphemeClass graphemeClass(char32_t codePoint)
{
    if (isBetween(codePoint, ' ', '~'))
        return GraphemeClass::other;
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return GraphemeClass::extend;
    case QChar::Mark_SpacingCombining:
        return spacingMarkClass(codePoint);
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return formatClass(codePoint);
    case QChar::Letter_Other:
        return letterClass(codePoint);
    case QChar::Letter_Modifier:
    case QChar::Symbol_Modifier:
        return isIn(extending, codePoint) ? GraphemeClass::extend : GraphemeClass::other;
    case QChar::Other_NotAssigned:
        return isIn(ignorable, codePoint) ? GraphemeClass::control : symbolClass(codePoint);
    default:
        return symbolClass(codePoint);
    }
}

} // namespace ClipboardCore
