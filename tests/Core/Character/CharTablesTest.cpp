// The tables of CT_CharProperties, every unit: against the published character database where they
// follow from it, else by a fingerprint of the published values. Predicates against the tables.
#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "Core/Character/UnicodeData.h"
#include "Foundation/Core/Character/CharProperties.h"

namespace {

using CT = CT_CharProperties;
using Predicate = CT::CharacterTest;
using test::UnicodeData;

constexpr unsigned int kUnits = 0x10000;

constexpr std::string_view kCategories[] = {
    "Mn", "Mc", "Me", "Nd", "Nl", "No", "Zs", "Zl", "Zp", "Cc", "Cf", "Cs", "Co", "Cn", "Lu",
    "Ll", "Lt", "Lm", "Lo", "Pc", "Pd", "Ps", "Pe", "Po", "Sm", "Sc", "Sk", "So", "--"};

TEST(CharTablesTest, CategoriesAreThoseOfTheDatabaseAndSomeGapsAreFilled) {
    int filled = 0;
    for (unsigned int code = 0; code < kUnits; ++code) {
        SCOPED_TRACE(code);
        const CT::et_UnicodeProperty category = CT::seo_GetUnicodeProperty(char16_t(code));
        if (UnicodeData()[code].IsAssigned()) {
            ASSERT_EQ(kCategories[category], UnicodeData()[code].category);
        } else if (category != CT::kUnknown && code != 0xFFFC) {
            ++filled;
            std::size_t before = code, after = code;
            while (!UnicodeData()[before].IsAssigned()) --before;
            while (after < 0xFFFF && !UnicodeData()[after].IsAssigned()) ++after;
            EXPECT_EQ(kCategories[category], UnicodeData()[before].category);
            EXPECT_EQ(kCategories[category], UnicodeData()[after].category);
        }
    }
    EXPECT_EQ(filled, 261);
    for (const char16_t unit : std::u16string_view(
             u"\u038B\u05EB\u098D\u0A43\u1F5A\u242A\u3130\u31E6\uFB07\uFBC3\uFFF0")) {
        EXPECT_NE(CT::seo_GetUnicodeProperty(unit), CT::kUnknown) << +unit;
    }
    EXPECT_EQ(CT::seo_GetUnicodeProperty(0xFFFC), CT::kSymbolOther) << "alone outside any gap";
}

TEST(CharTablesTest, NumericValuesAreThoseOfTheDatabase) {
    int count = 0;
    for (unsigned int code = 0; code < kUnits; ++code) {
        const std::string& number = UnicodeData()[code].number;
        short numerator = -9, denominator = -9;
        CT::sv_NumericValue(char16_t(code), numerator, denominator);
        const auto slash = number.find('/');
        const int below = slash == std::string::npos ? 1 : std::stoi(number.substr(slash + 1));
        EXPECT_EQ(numerator, number.empty() ? 0 : std::stoi(number)) << code;
        EXPECT_EQ(denominator, number.empty() ? 0 : below) << code;
        count += denominator != 0;
    }
    EXPECT_EQ(count, 350);
}

TEST(CharTablesTest, LayoutIsTheDirectionalityOfTheDatabase) {
    constexpr std::string_view kDirections[] = {"",   "L",  "R", "EN", "ES", "ET",
                                                "AN", "CS", "B", "S",  "WS", "ON"};
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto& character = UnicodeData()[code];
        const bool none = code == 0xFEFF || (character.category == "Cc" && character.bidi == "ON");
        const CT::et_LayoutProperty layout = CT::seo_GetLayoutInformation(char16_t(code));
        EXPECT_EQ(kDirections[layout], none ? "" : character.bidi) << code;
    }
}

TEST(CharTablesTest, CharacterTypesAreThePublishedOnes) {
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::sn2_GetCharacterInformation), 0xED79FE1A06DCDA1D);
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::sn2_GetTextProcessingInformation),
              0xCF3DD232CAF50AE5);
}

TEST(CharTablesTest, BlocksCoverEveryUnitAndHaveNamesAndGroups) {
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::seo_GetUnicodeBlock), 0x0089222811F27BD7U);
    test::Fingerprint names;
    const auto add = [&](const char16_t* name) {
        for (const char16_t unit : std::u16string_view(name)) names.Add(unit);
    };
    for (unsigned int number = 1; number <= CT::kUnassigned; ++number) {
        const auto block = static_cast<CT::et_UnicodeBlock>(number);
        add(CT::sqcuz_UnicodeBlockName(block));
        names.Add(CT::seo_GetScript(block));
    }
    for (unsigned int number = 0; number <= CT::kUnknown; ++number) {
        add(CT::sqcuz_UnicodePropertyName(static_cast<CT::et_UnicodeProperty>(number)));
    }
    EXPECT_EQ(names.Get(), 0x901C9D92B610B851U);
    for (const unsigned int number : {0U, 71U, ~0U}) {
        const auto block = static_cast<CT::et_UnicodeBlock>(number);
        const auto category = static_cast<CT::et_UnicodeProperty>(number);
        EXPECT_EQ(std::u16string_view(CT::sqcuz_UnicodeBlockName(block)), u"Unknown");
        EXPECT_EQ(CT::seo_GetScript(block), CT::kScriptCommon);
        EXPECT_EQ(CT::sqcuz_UnicodePropertyName(category) == std::u16string_view(u"Unknown"),
                  number != CT::kMarkNonSpacing);
    }
    EXPECT_EQ(CT::sqcuz_GetCharacterName(u'A'), nullptr);
}

// Lists of predicates, in the order of the values or bits that they test.
struct Predicates : CT {
    static constexpr Predicate kLayout[] = {
        sb_LayoutNoDirectionality, sb_LayoutLeftToRight,     sb_LayoutRightToLeft,
        sb_LayoutEuropeNumber,     sb_LayoutEuropeSeparator, sb_LayoutEuropeTerminator,
        sb_LayoutArabicNumber,     sb_LayoutCommonSeparator, sb_LayoutBlockSeparator,
        sb_LayoutSegmentSeparator, sb_LayoutWhitespace,      sb_LayoutOtherNeutral};
    static constexpr Predicate kProcessing[] = {
        sb_IsTPNonspacing, sb_IsTPDiacritic, sb_IsTPVowelMark, sb_IsTPSymbol,
        sb_IsTPKatakana,   sb_IsTPHiragana,  sb_IsTPHalfwidth, sb_IsTPFullwidth,
        sb_IsTPIdeograph,  sb_IsTPKashida,   sb_IsTPLexical};
    static constexpr Predicate kPunctuation[] = {sb_IsApostrophe,
                                                 sb_IsColon,
                                                 sb_IsComma,
                                                 sb_IsDot,
                                                 sb_IsExclamation,
                                                 sb_IsHyphen,
                                                 sb_IsQuestion,
                                                 sb_IsSemicolon,
                                                 sb_IsBrace,
                                                 sb_IsTabulator,
                                                 sb_IsParagraph,
                                                 sb_IsPercent,
                                                 sb_IsStop,
                                                 sb_IsVowel,
                                                 sb_IsOpeningBracket,
                                                 sb_IsClosingBracket,
                                                 sb_IsBracket,
                                                 sb_IsOpeningParenthesis,
                                                 sb_IsClosingParenthesis,
                                                 sb_IsParenthesis,
                                                 sb_IsQuote,
                                                 sb_IsSingleQuote,
                                                 sb_IsDoubleQuote,
                                                 sb_IsOpeningQuote,
                                                 sb_IsClosingQuote,
                                                 sb_IsSurrounder};
};

TEST(CharTablesTest, PredicatesTestTheCategoryTypeLayoutOrProcessing) {
    const std::pair<Predicate, std::string_view> by_category[] = {
        {CT::sb_IsUpper, "Lu"},
        {CT::sb_IsLower, "Ll"},
        {CT::sb_IsDigit, "Nd"},
        {CT::sb_IsNumeric, "Nd Nl No"},
        {CT::sb_IsAlpha, "Lu Ll Lt Lm Lo"},
        {CT::sb_IsAlDig, "Nd Lu Ll Lt Lm Lo"},
        {CT::sb_IsAlNum, "Nd Nl No Lu Ll Lt Lm Lo"},
        {CT::sb_IsPunct, "Pc Pd Ps Pe Po"},
        {CT::sb_IsCntrl, "Cc"},
        {CT::sb_IsGraph, "Mn Mc Me Nd Nl No Cs Co Lu Ll Lt Lm Lo Pc Pd Ps Pe Po Sm Sc Sk So"}};
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto unit = char16_t(code);
        SCOPED_TRACE(code);
        const std::string_view category = kCategories[CT::seo_GetUnicodeProperty(unit)];
        for (const auto& [test, names] : by_category) {
            ASSERT_EQ(test(unit) != FALSE, names.find(category) != std::string_view::npos);
        }
        ASSERT_EQ(CT::sb_IsPrint(unit) != FALSE, category != "Cc");
        const unsigned int type = CT::sn2_GetCharacterInformation(unit);
        ASSERT_EQ(CT::sb_IsBlank(unit) != FALSE, (type & 0x40) != 0 || unit == 10 || unit == 32);
        ASSERT_EQ(CT::sb_IsSpace(unit) != FALSE, (type & 0x08) != 0);
        ASSERT_EQ(CT::sb_IsXDigit(unit) != FALSE, (type & 0x80) != 0);
        const unsigned int layout = CT::sn2_GetLayoutInformation(unit);
        for (unsigned int i = 0; i < std::size(Predicates::kLayout); ++i) {
            ASSERT_EQ(Predicates::kLayout[i](unit) != FALSE, layout == i);
        }
        ASSERT_EQ(CT::sb_LayoutStrongDirectionality(unit) != FALSE, layout == 1);
        ASSERT_EQ(CT::sb_LayoutWeakDirectionality(unit) != FALSE, layout >= 3 && layout <= 7);
        ASSERT_EQ(CT::sb_LayoutNeutralDirectionality(unit) != FALSE, layout >= 8);
        const unsigned int processing = CT::sn2_GetTextProcessingInformation(unit);
        for (unsigned int i = 0; i < std::size(Predicates::kProcessing); ++i) {
            ASSERT_EQ(Predicates::kProcessing[i](unit) != FALSE, (processing >> i & 1) != 0);
        }
        ASSERT_EQ(CT::sb_IsTPAlpha(unit) != FALSE, (processing & 0x8000) != 0);
    }
}

TEST(CharTablesTest, PunctuationClassesHoldJustTheirCharacters) {
    EXPECT_EQ(test::FingerprintOfAllUnits([&](char16_t unit) {
                  unsigned int classes = 0;
                  for (const auto is : Predicates::kPunctuation)
                      classes = classes << 1 | (is(unit) != 0);
                  return classes;
              }),
              0x2E7AD8B70EF4A65AU);
}

// Which characters may not begin a line and which may not end one, by fingerprint.
TEST(CharTablesTest, LinesBreakByTheRulesOfTheLanguage) {
    const std::uint64_t none = test::FingerprintOfAllUnits([](char16_t) { return 0; });
    const std::pair<std::uint64_t, std::vector<unsigned int>> fingerprints[] = {
        {0xC7EFEAF527F2D2E9, {0x0404, 0x0004, 0x0C04}},
        {0xD530CC7863C9BCFB, {0x0804, 0x1004}},
        {0x1797395123A07D6F, {0x0411, 0x0011}},
        {0x19551189EB751EE2, {0x0412, 0x0812}},
        {none, {0x0409, 0x0000}}};
    for (const auto& [fingerprint, ids] : fingerprints) {
        for (const unsigned int id : ids) {
            const auto breaks = [id](char16_t unit) {
                return 2 * !CT::sb_CanStartLine(unit, id) + !CT::sb_CanEndLine(unit, id);
            };
            EXPECT_EQ(test::FingerprintOfAllUnits(breaks), fingerprint) << id;
        }
    }
}

}  // namespace
