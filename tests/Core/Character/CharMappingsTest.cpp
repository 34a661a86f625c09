// The mappings of CT_CharMappings, every unit, against the published character database; strings
// against a unit-by-unit reference.
#include "Foundation/Core/Character/CharMappings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

#include "Core/Character/UnicodeData.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Text.h"

namespace {

using CT = CT_CharMappings;
using Pairs = std::map<char16_t, char16_t>;
using test::UnicodeData;
using zelkor::detail::View;

constexpr unsigned int kUnits = 0x10000;

bool Within(unsigned int code, unsigned int first, unsigned int last) {
    return code >= first && code <= last;
}

// Calls `function` with each assigned unit and its record.
template <typename Function>
void ForEachCharacter(Function function) {
    for (unsigned int code = 0; code < kUnits; ++code) {
        if (UnicodeData()[code].IsAssigned()) function(char16_t(code), UnicodeData()[code]);
    }
}

// The mapping must be just these pairs, `count` of them, and leave all other units alone.
void ExpectPairs(char16_t (*map)(char16_t), const Pairs& pairs, std::size_t count) {
    EXPECT_EQ(pairs.size(), count);
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto pair = pairs.find(char16_t(code));
        EXPECT_EQ(+map(char16_t(code)), pair == pairs.end() ? code : +pair->second) << code;
    }
}

// Title-case letters, U+0130 and the Greek capitals with iota stay; two pairs as Unicode 2.1 has
// them.
TEST(CharMappingsTest, CasePairsAreThoseOfTheDatabaseInBothDirections) {
    Pairs lower;
    ForEachCharacter([&](char16_t unit, const test::UnicodeCharacter& character) {
        const bool with_iota = Within(unit, 0x1F80, 0x1FFF) && !character.parts.empty() &&
                               character.parts.back() == 0x0345;
        if (character.lower != 0 && character.category != "Lt" && unit != 0x0130 && !with_iota) {
            lower[unit] = character.lower;
        }
    });
    lower[0x018E] = 0x01DD;
    lower[0x019F] = 0x0275;
    Pairs upper;
    for (const auto& [capital, small] : lower) upper[small] = capital;
    ExpectPairs(CT::su_ToLower, lower, 673);
    ExpectPairs(CT::su_ToUpper, upper, 673);
    static_assert(CT::su_ToLower(u'\u10A0') == u'\u10D0' && CT::su_ToUpper(u'\u00B5') == u'\u00B5');
}

TEST(CharMappingsTest, DigitsAndTheCompatibilityZoneFoldAsInTheDatabase) {
    Pairs digits, zone;
    ForEachCharacter([&](char16_t unit, const test::UnicodeCharacter& character) {
        if (!character.digit.empty() && unit > 0x7F && !Within(unit, 0x0F20, 0x0F29) &&
            !Within(unit, 0xFF10, 0xFF19)) {
            digits[unit] = static_cast<char16_t>(character.digit[0]);
        }
        if (!Within(unit, 0xFE30, 0xFFEE) || unit == 0xFE68 || unit == 0xFF3C) return;
        const auto& parts = character.parts;
        if (!character.tag.empty() && (parts.size() == 1 || Within(unit, 0xFE70, 0xFE7F))) {
            zone[unit] = parts.back();
        }
    });
    ExpectPairs(CT::su_FoldDigit, digits, 204);
    ExpectPairs(CT::su_FoldCZone, zone, 406);
}

TEST(CharMappingsTest, KanaMappingsWidenAndShiftByTheRule) {
    const Pairs signs = {{0x0020, 0x3000}, {0x00A2, 0xFFE0}, {0x00A3, 0xFFE1}, {0x00A5, 0xFFE5},
                         {0x00A6, 0xFFE4}, {0x00AC, 0xFFE2}, {0x00AF, 0xFFE3}, {0x20A9, 0xFFE6}};
    const auto is_hiragana = [](unsigned int code) {
        return Within(code, 0x3041, 0x3094) || Within(code, 0x309D, 0x309E);
    };
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto unit = char16_t(code);
        unsigned int wide = code;
        if (signs.contains(unit)) wide = signs.at(unit);
        if (Within(code, 0x21, 0x7E) && unit != u'\\') wide = code + 0xFEE0;
        const auto& parts = UnicodeData()[unit].parts;
        if (Within(code, 0xFF61, 0xFFDC) && !parts.empty()) wide = parts[0];
        EXPECT_EQ(CT::su_HiraganaToKatakana(unit), is_hiragana(code) ? code + 0x60 : wide) << code;
        EXPECT_EQ(CT::su_KatakanaToHiragana(unit), is_hiragana(wide - 0x60) ? wide - 0x60 : wide)
            << code;
    }
}

const std::map<char16_t, std::u16string> kStrokes = {
    {0x00D8, u"O\u0338"}, {0x00F8, u"o\u0338"},      {0x0110, u"D\u0335"}, {0x0111, u"d\u0335"},
    {0x0126, u"H\u0335"}, {0x0127, u"h\u0335"},      {0x0141, u"L\u0337"}, {0x0142, u"l\u0337"},
    {0x0166, u"T\u0335"}, {0x0167, u"t\u0335"},      {0x0180, u"b\u0335"}, {0x0197, u"I\u0335"},
    {0x019A, u"l\u0335"}, {0x019B, u"\u03BB\u0335"}, {0x01E4, u"G\u0335"}, {0x01E5, u"g\u0335"}};

// All canonical decompositions and those of letters with a stroke, applied until none is left.
std::u16string FullyDecomposed(char16_t unit) {
    const auto stroke = kStrokes.find(unit);
    if (stroke != kStrokes.end()) return stroke->second;
    const test::UnicodeCharacter& character = UnicodeData()[unit];
    if (character.parts.empty() || !character.tag.empty()) return {unit};
    std::u16string units;
    for (const char16_t part : character.parts) units += FullyDecomposed(part);
    return units;
}

bool IsInDecomposedArea(char16_t unit) {
    constexpr std::pair<char16_t, char16_t> kAreas[] = {
        {0x00C0, 0x02FF}, {0x0370, 0x04CF}, {0x0958, 0x095F}, {0x09DC, 0x09DF}, {0x0A59, 0x0A5E},
        {0x0B5C, 0x0B5F}, {0x1E00, 0x1EF9}, {0x304C, 0x3094}, {0x30AC, 0x30F4}};
    return std::ranges::any_of(
        kAreas, [unit](const auto& area) { return Within(unit, area.first, area.second); });
}

TEST(CharMappingsTest, DecompositionsAndBaseLettersAreThoseOfTheDatabase) {
    Pairs bases;
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto unit = char16_t(code);
        std::u16string units = {unit};
        if (IsInDecomposedArea(unit)) units = FullyDecomposed(unit);
        const bool has = units.size() > 1;  // equal to a single character: no decomposition
        if (has) bases[unit] = units[0];
        CT_UString out(u"kept");
        EXPECT_EQ(CT::sn_Decompose(unit, &out), units.size()) << code;
        EXPECT_EQ(CT::sn_Decompose(unit, nullptr), units.size());
        EXPECT_EQ(View(out), has ? units : u"kept") << code;
    }
    ExpectPairs(CT::su_ToBase, bases, 601);
}

struct Mapping {
    void (*string)(CT_UString*);
    char16_t (*unit)(char16_t);
};
constexpr Mapping kMappings[] = {{CT::sv_ToLower, CT::su_ToLower},
                                 {CT::sv_ToUpper, CT::su_ToUpper},
                                 {CT::sv_ToBase, CT::su_ToBase},
                                 {CT::sv_FoldDigit, CT::su_FoldDigit},
                                 {CT::sv_FoldCZone, CT::su_FoldCZone},
                                 {CT::sv_HiraganaToKatakana, CT::su_HiraganaToKatakana},
                                 {CT::sv_KatakanaToHiragana, CT::su_KatakanaToHiragana}};

// Unit by unit, a high surrogate and what follows it left alone.
template <typename Change>
std::u16string Changed(std::u16string_view text, Change change) {
    std::u16string changed;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((text[i] & 0xFC00) != 0xD800) {
            changed += change(text[i]);
        } else {
            changed += text.substr(i++, 2);
        }
    }
    return changed;
}

void ExpectChangedByUnits(const std::u16string& text) {
    SCOPED_TRACE(test::Utf8(text));
    const CT_UString before(text.data(), static_cast<std::uint32_t>(text.size()));
    for (const auto& [map_string, map_unit] : kMappings) {
        const std::u16string expected = Changed(text, map_unit);
        CT_UString mapped(before);
        map_string(&mapped);
        ASSERT_EQ(View(mapped), expected);
        ASSERT_EQ(mapped.qcuz_Get() == before.qcuz_Get(), expected == text) << "shares or not";
        ASSERT_EQ(View(before), text);
    }
    const std::u16string expected = Changed(text, [](char16_t unit) {
        CT_UString units(&unit, 1);
        CT::sn_Decompose(unit, &units);
        return std::u16string(View(units));
    });
    CT_UString decomposed(u"old"), in_place(before);
    CT::sv_Decompose(&before, &decomposed);
    CT::sv_Decompose(&in_place);
    ASSERT_EQ(View(decomposed), expected);
    ASSERT_EQ(View(in_place), expected);
    ASSERT_EQ(View(before), text);
}

TEST(CharMappingsTest, StringsChangeAsTheirUnitsDoButForWhatFollowsAHighSurrogate) {
    std::u16string all;
    for (unsigned int code = 1; code < kUnits; ++code) all += char16_t(code);
    ExpectChangedByUnits(all);
    ExpectChangedByUnits(std::u16string(255, u'x') + u"\xD801\u00C5\u00C5");  // at a piece's end
    // Each kind of unit at each place of the blocks that texts are mapped in, and in their rests.
    constexpr std::u16string_view kKinds =
        u"aZ7 \u00E9\u01D5\u0416\u3042\u30AC\u4E00\uFF21\uFF71\u0663\xDBFF\xDC28";
    std::mt19937 random(20);
    for (int round = 0; round < 4000; ++round) {
        std::u16string text(random() % 40, u'.');
        const std::size_t kinds = 1 + random() % kKinds.size();
        for (char16_t& unit : text) unit = kKinds[random() % kinds];
        ExpectChangedByUnits(text);
    }
    CT::sv_ToUpper(nullptr);
    CT_UString zero;
    zero.vv_Init(u"\xD801\0x", 3);
    CT::sv_Decompose(&zero);
    EXPECT_EQ(View(zero), u"\xD801x") << "a zero ends no pair";
}

}  // namespace
