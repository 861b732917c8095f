#include "Platform/Foundation/CharacterBreaks.h"

#include <algorithm>
#include <glib.h>
#include <iterator>

namespace platform {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

template <std::size_t Count> bool contains(const Range (&ranges)[Count], char32_t c)
{
    const Range* const found = std::upper_bound(
        std::begin(ranges), std::end(ranges), c, [](char32_t value, const Range& range) { return value < range.first; });
    return found != std::begin(ranges) && c <= std::prev(found)->last;
}

// Property Extended_Pictographic, Unicode 15.
constexpr Range pictographs[] = { { 0xa9, 0xa9 }, { 0xae, 0xae }, { 0x203c, 0x203c }, { 0x2049, 0x2049 }, { 0x2122, 0x2122 },
    { 0x2139, 0x2139 }, { 0x2194, 0x2199 }, { 0x21a9, 0x21aa }, { 0x231a, 0x231b }, { 0x2328, 0x2328 }, { 0x2388, 0x2388 },
    { 0x23cf, 0x23cf }, { 0x23e9, 0x23f3 }, { 0x23f8, 0x23fa }, { 0x24c2, 0x24c2 }, { 0x25aa, 0x25ab }, { 0x25b6, 0x25b6 },
    { 0x25c0, 0x25c0 }, { 0x25fb, 0x25fe }, { 0x2600, 0x2605 }, { 0x2607, 0x2612 }, { 0x2614, 0x2685 }, { 0x2690, 0x2705 },
    { 0x2708, 0x2712 }, { 0x2714, 0x2714 }, { 0x2716, 0x2716 }, { 0x271d, 0x271d }, { 0x2721, 0x2721 }, { 0x2728, 0x2728 },
    { 0x2733, 0x2734 }, { 0x2744, 0x2744 }, { 0x2747, 0x2747 }, { 0x274c, 0x274c }, { 0x274e, 0x274e }, { 0x2753, 0x2755 },
    { 0x2757, 0x2757 }, { 0x2763, 0x2767 }, { 0x2795, 0x2797 }, { 0x27a1, 0x27a1 }, { 0x27b0, 0x27b0 }, { 0x27bf, 0x27bf },
    { 0x2934, 0x2935 }, { 0x2b05, 0x2b07 }, { 0x2b1b, 0x2b1c }, { 0x2b50, 0x2b50 }, { 0x2b55, 0x2b55 }, { 0x3030, 0x3030 },
    { 0x303d, 0x303d }, { 0x3297, 0x3297 }, { 0x3299, 0x3299 }, { 0x1f000, 0x1f0ff }, { 0x1f10d, 0x1f10f }, { 0x1f12f, 0x1f12f },
    { 0x1f16c, 0x1f171 }, { 0x1f17e, 0x1f17f }, { 0x1f18e, 0x1f18e }, { 0x1f191, 0x1f19a }, { 0x1f1ad, 0x1f1e5 },
    { 0x1f201, 0x1f20f }, { 0x1f21a, 0x1f21a }, { 0x1f22f, 0x1f22f }, { 0x1f232, 0x1f23a }, { 0x1f23c, 0x1f23f },
    { 0x1f249, 0x1f3fa }, { 0x1f400, 0x1f53d }, { 0x1f546, 0x1f64f }, { 0x1f680, 0x1f6ff }, { 0x1f774, 0x1f77f },
    { 0x1f7d5, 0x1f7ff }, { 0x1f80c, 0x1f80f }, { 0x1f848, 0x1f84f }, { 0x1f85a, 0x1f85f }, { 0x1f888, 0x1f88f },
    { 0x1f8ae, 0x1f8ff }, { 0x1f90c, 0x1f93a }, { 0x1f93c, 0x1f945 }, { 0x1f947, 0x1faff }, { 0x1fc00, 0x1fffd } };

// Letters and format characters that stand before the character they belong to.
constexpr Range prepended[] = { { 0x600, 0x605 }, { 0x6dd, 0x6dd }, { 0x70f, 0x70f }, { 0x890, 0x891 }, { 0x8e2, 0x8e2 },
    { 0xd4e, 0xd4e }, { 0x110bd, 0x110bd }, { 0x110cd, 0x110cd }, { 0x111c2, 0x111c3 }, { 0x1193f, 0x1193f },
    { 0x11941, 0x11941 }, { 0x11a3a, 0x11a3a }, { 0x11a84, 0x11a89 }, { 0x11d46, 0x11d46 }, { 0x11f02, 0x11f02 } };

// Spacing marks that extend all the same, since they are halves of vowels or follow other rules.
constexpr Range extendingSpacingMarks[] = { { 0x9be, 0x9be }, { 0x9d7, 0x9d7 }, { 0xb3e, 0xb3e }, { 0xb57, 0xb57 },
    { 0xbbe, 0xbbe }, { 0xbd7, 0xbd7 }, { 0xcc2, 0xcc2 }, { 0xcd5, 0xcd6 }, { 0xd3e, 0xd3e }, { 0xd57, 0xd57 }, { 0xdcf, 0xdcf },
    { 0xddf, 0xddf }, { 0x1b35, 0x1b35 }, { 0x302e, 0x302f }, { 0x1133e, 0x1133e }, { 0x11357, 0x11357 }, { 0x114b0, 0x114b0 },
    { 0x114bd, 0x114bd }, { 0x115af, 0x115af }, { 0x11930, 0x11930 }, { 0x1d165, 0x1d165 }, { 0x1d16e, 0x1d172 } };

// Spacing marks that stand for themselves.
constexpr Range standaloneSpacingMarks[] = { { 0x102b, 0x102c }, { 0x1038, 0x1038 }, { 0x1062, 0x1064 }, { 0x1067, 0x106d },
    { 0x1083, 0x1083 }, { 0x1087, 0x108c }, { 0x108f, 0x108f }, { 0x109a, 0x109c }, { 0x1a61, 0x1a61 }, { 0x1a63, 0x1a64 },
    { 0xaa7b, 0xaa7b }, { 0xaa7d, 0xaa7d }, { 0x11720, 0x11721 } };

// Consonants of Devanagari, Bengali, Gujarati, Oriya, Telugu and Malayalam.
constexpr Range consonants[] = { { 0x915, 0x939 }, { 0x958, 0x95f }, { 0x978, 0x97f }, { 0x995, 0x9a8 }, { 0x9aa, 0x9b0 },
    { 0x9b2, 0x9b2 }, { 0x9b6, 0x9b9 }, { 0x9dc, 0x9dd }, { 0x9df, 0x9df }, { 0x9f0, 0x9f1 }, { 0xa95, 0xaa8 }, { 0xaaa, 0xab0 },
    { 0xab2, 0xab3 }, { 0xab5, 0xab9 }, { 0xaf9, 0xaf9 }, { 0xb15, 0xb28 }, { 0xb2a, 0xb30 }, { 0xb32, 0xb33 }, { 0xb35, 0xb39 },
    { 0xb5c, 0xb5d }, { 0xb5f, 0xb5f }, { 0xb71, 0xb71 }, { 0xc15, 0xc28 }, { 0xc2a, 0xc39 }, { 0xc58, 0xc5a },
    { 0xd15, 0xd3a } };

bool isVirama(char32_t c) // of the same six scripts
{
    return c == 0x94d || c == 0x9cd || c == 0xacd || c == 0xb4d || c == 0xc4d || c == 0xd4d;
}

// Not assigned, but set aside for characters that will not be seen.
bool isReservedInvisible(char32_t c) { return c == 0x2065 || (c >= 0xfff0 && c <= 0xfff8) || (c >= 0xe0000 && c <= 0xe0fff); }

BreakClass hangulClass(char32_t c) // other for what is no Hangul
{
    if ((c >= 0x1100 && c <= 0x115f) || (c >= 0xa960 && c <= 0xa97c))
        return BreakClass::hangulL;
    if ((c >= 0x1160 && c <= 0x11a7) || (c >= 0xd7b0 && c <= 0xd7c6))
        return BreakClass::hangulV;
    if ((c >= 0x11a8 && c <= 0x11ff) || (c >= 0xd7cb && c <= 0xd7fb))
        return BreakClass::hangulT;
    if (c >= 0xac00 && c <= 0xd7a3)
        return (c - 0xac00) % 28 == 0 ? BreakClass::hangulLV
                                      : BreakClass::hangulLVT; // 28 finals to a syllable, the first is none
    return BreakClass::other;
}

BreakClass extendClass(char32_t c)
{
    if (isVirama(c))
        return BreakClass::virama;
    return g_unichar_combining_class(c) != 0 ? BreakClass::extendReordering : BreakClass::extend;
}

BreakClass classOfMarksAndControls(char32_t c)
{
    switch (g_unichar_type(c)) {
    case G_UNICODE_NON_SPACING_MARK:
    case G_UNICODE_ENCLOSING_MARK:
        return extendClass(c);
    case G_UNICODE_SPACING_MARK:
        if (contains(extendingSpacingMarks, c))
            return extendClass(c);
        return contains(standaloneSpacingMarks, c) ? BreakClass::other : BreakClass::spacingMark;
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
    case G_UNICODE_SURROGATE:
        return BreakClass::control;
    case G_UNICODE_UNASSIGNED:
        return isReservedInvisible(c) ? BreakClass::control : BreakClass::other;
    default:
        return BreakClass::other;
    }
}

} // namespace

BreakClass breakClass(char32_t c)
{
    if (c == '\r')
        return BreakClass::cr;
    if (c == '\n')
        return BreakClass::lf;
    if (c < 0x20 || (c >= 0x7f && c < 0xa0) || c == 0xad)
        return BreakClass::control;
    if (c < 0x300)
        return c == 0xa9 || c == 0xae ? BreakClass::pictograph : BreakClass::other;
    if (c == 0x200d)
        return BreakClass::zwj;
    // The non-joiner, halfwidth voicing marks, skin tones and tags.
    if (c == 0x200c || c == 0xff9e || c == 0xff9f || (c >= 0x1f3fb && c <= 0x1f3ff) || (c >= 0xe0020 && c <= 0xe007f))
        return BreakClass::extend;
    if (c >= 0x1f1e6 && c <= 0x1f1ff)
        return BreakClass::regionalIndicator;
    if (c == 0xe33 || c == 0xeb3) // the Thai and Lao vowel am
        return BreakClass::spacingMark;
    if (contains(prepended, c))
        return BreakClass::prepend;
    if (contains(consonants, c))
        return BreakClass::consonant;
    if (const BreakClass hangul = hangulClass(c); hangul != BreakClass::other)
        return hangul;
    if (contains(pictographs, c))
        return BreakClass::pictograph;
    return classOfMarksAndControls(c);
}

bool CharacterBreaker::beginsCharacter(BreakClass next)
{
    const bool begins = !started || !joins(next);
    const bool extends = next == BreakClass::extend || next == BreakClass::extendReordering || next == BreakClass::virama;

    pictographJoined = next == BreakClass::zwj && afterPictograph;
    afterPictograph = next == BreakClass::pictograph || (extends && afterPictograph);
    oddFlags = next == BreakClass::regionalIndicator && !(oddFlags && !begins);
    if (next == BreakClass::consonant)
        conjunct = Conjunct::consonant;
    else if (next == BreakClass::virama && conjunct != Conjunct::none)
        conjunct = Conjunct::joined;
    else if (next != BreakClass::extendReordering && next != BreakClass::zwj)
        conjunct = Conjunct::none;
    started = true;
    last = next;
    return begins;
}

bool CharacterBreaker::joins(BreakClass next) const
{
    using enum BreakClass;
    if (last == cr && next == lf)
        return true;
    if (last == cr || last == lf || last == control || next == cr || next == lf || next == control)
        return false;
    if (last == hangulL && (next == hangulL || next == hangulV || next == hangulLV || next == hangulLVT))
        return true;
    if ((last == hangulLV || last == hangulV) && (next == hangulV || next == hangulT))
        return true;
    if ((last == hangulLVT || last == hangulT) && next == hangulT)
        return true;
    if (next == extend || next == extendReordering || next == virama || next == zwj || next == spacingMark || last == prepend)
        return true;
    if (next == consonant)
        return conjunct == Conjunct::joined;
    if (next == pictograph)
        return pictographJoined;
    return next == regionalIndicator && oddFlags;
}

} // namespace platform
