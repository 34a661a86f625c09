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
    Pairs wide = {{0x0020, 0x3000}, {0x00A2, 0xFFE0}, {0x00A3, 0xFFE1}, {0x00A5, 0xFFE5},
                  {0x00A6, 0xFFE4}, {0x00AC, 0xFFE2}, {0x00AF, 0xFFE3}, {0x20A9, 0xFFE6}};
    for (char16_t unit = 0x21; unit <= 0x7E; ++unit) {
        if (unit != u'\\') wide[unit] = static_cast<char16_t>(unit + 0xFEE0);
    }
    ForEachCharacter([&](char16_t unit, const test::UnicodeCharacter& character) {
        if (Within(unit, 0xFF61, 0xFFDC)) wide[unit] = character.parts.at(0);
    });
    const auto is_hiragana = [](unsigned int code) {
        return Within(code, 0x3041, 0x3094) || Within(code, 0x309D, 0x309E);
    };
    Pairs katakana = wide, hiragana = wide;
    for (auto& [unit, to] : hiragana) {
        if (unit >= 0xFF61 && is_hiragana(to - 0x60U)) to = static_cast<char16_t>(to - 0x60);
    }
    for (unsigned int code = 0x3041; code <= 0x309E; ++code) {
        if (!is_hiragana(code)) continue;
        katakana[char16_t(code)] = char16_t(code + 0x60);
        hiragana[char16_t(code + 0x60)] = char16_t(code);
    }
    ExpectPairs(CT::su_HiraganaToKatakana, katakana, 302);
    ExpectPairs(CT::su_KatakanaToHiragana, hiragana, 302);
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
    CT_UString source, whole;
    std::u16string all;
    for (unsigned int code = 1; code < kUnits; ++code) {
        const auto unit = char16_t(code);
        std::u16string units = {unit};
        if (IsInDecomposedArea(unit)) units = FullyDecomposed(unit);
        const bool has = units.size() > 1;
        if (!has) units[0] = unit;  // equal to another single character, which is no decomposition
        if (has) bases[unit] = units[0];
        CT_UString out(u"kept");
        EXPECT_EQ(CT::sn_Decompose(unit, &out), units.size()) << code;
        EXPECT_EQ(CT::sn_Decompose(unit, nullptr), units.size());
        EXPECT_EQ(std::u16string(out.qcuz_Get()), has ? units : u"kept") << code;
        source.v_Append(unit);
        all += units;
    }
    ExpectPairs(CT::su_ToBase, bases, 601);
    CT::sv_Decompose(&source, &whole);
    EXPECT_TRUE(whole.qcuz_Get() == all);
    CT::sv_Decompose(&source);
    EXPECT_TRUE(source.qcuz_Get() == all);
}

TEST(CharMappingsTest, StringsMapAsTheirUnitsDoButForWhatFollowsAHighSurrogate) {
    struct Mapping {
        void (*string)(CT_UString*);
        char16_t (*unit)(char16_t);
    };
    const Mapping mappings[] = {{CT::sv_ToLower, CT::su_ToLower},
                                {CT::sv_ToUpper, CT::su_ToUpper},
                                {CT::sv_ToBase, CT::su_ToBase},
                                {CT::sv_FoldDigit, CT::su_FoldDigit},
                                {CT::sv_FoldCZone, CT::su_FoldCZone},
                                {CT::sv_HiraganaToKatakana, CT::su_HiraganaToKatakana},
                                {CT::sv_KatakanaToHiragana, CT::su_KatakanaToHiragana}};
    const auto expect_mapped = [&](const std::u16string& text) {
        for (const auto& [map_string, map_unit] : mappings) {
            std::u16string expected = text, decomposed;
            for (std::size_t i = 0; i < text.size(); ++i) {
                if ((text[i] & 0xFC00) == 0xD800) {
                    ++i;
                } else {
                    expected[i] = map_unit(text[i]);
                }
            }
            const CT_UString before(text.data(), static_cast<std::uint32_t>(text.size()));
            CT_UString mapped(before);
            map_string(&mapped);
            ASSERT_EQ(std::u16string(mapped.qcuz_Get()), expected) << test::Utf8(text);
            ASSERT_EQ(mapped.qcuz_Get() == before.qcuz_Get(), expected == text) << "shares or not";
            ASSERT_EQ(std::u16string(before.qcuz_Get()), text);
        }
    };
    std::u16string all;
    for (unsigned int code = 1; code < kUnits; ++code) all += char16_t(code);
    expect_mapped(all);
    // Each kind of unit at each place of the blocks that texts are mapped in, and in their rests.
    constexpr char16_t kKinds[] = {u'a',      u'Z',      u'7',      u' ',      u'\u00E9',
                                   u'\u0416', u'\u3042', u'\u30AC', u'\u4E00', u'\uFF21',
                                   u'\uFF71', u'\u0663', 0xD801,    0xDC28};
    std::mt19937 random(20);
    for (int round = 0; round < 4000; ++round) {
        std::u16string text(random() % 40, u'.');
        const std::size_t kinds = 1 + random() % std::size(kKinds);
        for (char16_t& unit : text) unit = kKinds[random() % kinds];
        expect_mapped(text);
    }
    CT::sv_ToUpper(nullptr);
}

TEST(CharMappingsTest, DecompositionLeavesPairsAloneAndEmptiesTheDestinationFirst) {
    struct Case {
        std::u16string text, decomposed;
    };
    for (const auto& [text, decomposed] :
         {Case{u"\u00C5x", u"A\u030Ax"},
          {u"", u""},
          {u"\xD801\xDC28\u01D5", u"\xD801\xDC28U\u0308\u0304"},
          {u"\xD801\u00C5\u00C5",
           u"\xD801\u00C5"
           u"A\u030A"},
          {u"\u00C5\xD801", u"A\u030A\xD801"},
          {std::u16string(600, u'x') + u"\u00E9", std::u16string(600, u'x') + u"e\u0301"}}) {
        const CT_UString source(text.data(), static_cast<std::uint32_t>(text.size()));
        CT_UString destination(u"old");
        CT::sv_Decompose(&source, &destination);
        EXPECT_EQ(std::u16string(destination.qcuz_Get()), decomposed);
    }
}

}  // namespace
