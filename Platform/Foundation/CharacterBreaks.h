#pragma once

#include <cstdint>

namespace platform {

// What a code point does to the borders between user-perceived characters (Unicode Standard Annex 29, extended grapheme clusters,
// with the conjuncts of the Indic scripts kept whole).
enum class BreakClass : std::uint8_t {
    other,
    cr,
    lf,
    control,
    extend,
    extendReordering, // extends and has a combining class, so it may stand inside a conjunct
    virama, // extends and joins the consonants around it
    zwj,
    spacingMark,
    prepend,
    regionalIndicator,
    pictograph,
    consonant, // of a script that makes conjuncts
    hangulL,
    hangulV,
    hangulT,
    hangulLV,
    hangulLVT,
};

BreakClass breakClass(char32_t codePoint);

// Reads code points one by one and says before which a new character begins.
class CharacterBreaker {
public:
    // True when a character begins with this code point. Always true for the first one.
    bool beginsCharacter(BreakClass next);

private:
    bool joins(BreakClass next) const;

    enum class Conjunct : std::uint8_t { none, consonant, joined };

    bool started = false;
    BreakClass last = BreakClass::other;
    bool oddFlags = false; // an unpaired regional indicator came last
    bool pictographJoined = false; // a pictograph with its extensions and a joiner came last
    bool afterPictograph = false;
    Conjunct conjunct = Conjunct::none;
};

} // namespace platform
