// CT_CharMappings: lower and upper case, base letters, canonical decomposition, folding of digits
// and of the compatibility zone, hiragana and katakana; of single UTF-16 units and of strings.
//
// The tables are those of Unicode 2.0 and know no language. One unit becomes one unit, so a string
// keeps its length. Surrogates stay as they are, and so does the unit after a high surrogate in a
// string. A string without anything to change is not written to and goes on sharing its storage.
// Errors: none recorded. Exhausted memory throws CT_SmartHeapException.
// Threads: any; one string, one thread.
#ifndef FOUNDATION_CORE_CHARACTER_CHARMAPPINGS_H
#define FOUNDATION_CORE_CHARACTER_CHARMAPPINGS_H

#include "Foundation/Core/Character/Tables/CaseTable.h"
#include "Foundation/Platform/Export.h"

class CT_UString;

namespace zelkor::platform {
struct UnitMap;
}

class ZELKOR_API CT_CharMappings {
public:
    // A unit without a mapping is returned unchanged. Case: the 673 pairs of capital and small
    // letters, one to one in both directions; so U+0130, U+0131, U+00B5, U+017F, U+03C2 and the
    // title-case digraphs stay as they are.
    [[nodiscard]] static constexpr char16_t su_ToLower(char16_t unit) {
        using namespace zelkor::detail;
        return Mapped(unit, kLowerStage);
    }
    [[nodiscard]] static constexpr char16_t su_ToUpper(char16_t unit) {
        using namespace zelkor::detail;
        return Mapped(unit, kUpperStage);
    }
    // The first unit of the decomposition.
    [[nodiscard]] static char16_t su_ToBase(char16_t unit);
    // The ASCII digit for superscript, subscript, circled and native digits; Tibetan and full-width
    // ones stay (su_FoldCZone folds the latter).
    [[nodiscard]] static char16_t su_FoldDigit(char16_t unit);
    // Vertical, small, full-width and half-width forms of U+FE30 to U+FFEE to the plain character.
    [[nodiscard]] static char16_t su_FoldCZone(char16_t unit);
    // Both also widen: ASCII but for the backslash, some Latin-1 signs, half-width forms.
    [[nodiscard]] static char16_t su_HiraganaToKatakana(char16_t unit);
    [[nodiscard]] static char16_t su_KatakanaToHiragana(char16_t unit);

    // The mappings of the same names for every character of a string, in place; null is ignored.
    static void sv_ToLower(CT_UString* text);
    static void sv_ToUpper(CT_UString* text);
    static void sv_ToBase(CT_UString* text);
    static void sv_FoldDigit(CT_UString* text);
    static void sv_FoldCZone(CT_UString* text);
    static void sv_HiraganaToKatakana(CT_UString* text);
    static void sv_KatakanaToHiragana(CT_UString* text);

    // Full canonical decomposition, of letters with a stroke or bar too (not of Greek with accents,
    // Hangul, or the Cyrillic letters from U+04D0 on). The number of its units, 2 or 3, which then
    // are `out`'s new text; 1 for any other unit, and `out` keeps its text. `out` may be null.
    static unsigned int sn_Decompose(char16_t unit, CT_UString* out);
    // Replaces `destination` by the decomposed source; the two may be the same string. Of a high
    // surrogate and a zero character, the zero is left out. Null strings are ignored.
    static void sv_Decompose(const CT_UString* source, CT_UString* destination);
    static void sv_Decompose(CT_UString* text);

private:
    [[nodiscard]] static constexpr char16_t Mapped(char16_t unit, const std::uint8_t* stage) {
        using namespace zelkor::detail;
        const unsigned int block = stage[unit >> kCaseShift];
        return static_cast<char16_t>(
            unit + kCaseBlocks[(block << kCaseShift) + (unit & ((1U << kCaseShift) - 1))]);
    }
    static void sv_MapString(CT_UString* text, const zelkor::platform::UnitMap& map);
};

#endif
